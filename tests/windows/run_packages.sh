#!/usr/bin/env bash
# The zip and the installer under Wine: tests/windows/run_packages.sh FOLDER
# FOLDER holds the packages. What is installed is what the zip holds, starts, and is gone after the silent
# uninstallation. Leaves the zip's files in build/windows-zip. Needs a display and a running Wine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/lib/wine.sh
source scripts/lib/wine.sh
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

packages=$1
unzipped=build/windows-zip
installed="$WINEPREFIX/drive_c/Program Files/LUMADOT Tool"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# Every file of the Windows, but what Windows itself writes now and then.
all_files() {
  (cd "$WINEPREFIX" && find drive_c ! -path '*/windows/*' ! -path '*/Temp/*' ! -path '*/Temp' | sort)
}
files_in() { (cd "$1" && find . -type f ! -name Uninstall.exe | sort); }

# As Windows' own shells know the programs: no console but for the command line, version and icon.
subsystem() { x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^Subsystem.*(\(.*\))$/\1/p'; }
names_this_machine() { strings -a "$1" | grep -qF "$PWD"; }

look_at_the_zip() {
  local program
  rm -rf "$unzipped"
  unzip -q -d "$work/zip" "$packages"/lumadot-tool-*-windows.zip
  mv "$work"/zip/* "$unzipped"
  for program in lumadot-tool lumadot-viewer lumadot-simulator lumadot-demo lumadotctl; do
    check "$program is there" [ -f "$unzipped/$program.exe" ]
    if [[ $program == lumadotctl ]]; then
      check "$program has a console" [ "$(subsystem "$unzipped/$program.exe")" = "Windows CUI" ]
    else
      check "$program has no console" [ "$(subsystem "$unzipped/$program.exe")" = "Windows GUI" ]
    fi
    check "$program tells nothing of the machine that built it" eval "! names_this_machine '$unzipped/$program.exe'"
  done
  check "the simulated bus is there" [ -f "$unzipped/simulated_bus/libusb-1.0.dll" ]
  for library in wxwidgets libusb libpng libjpeg-turbo expat giflib libz gcc mingw-w64 libcli11 nlohmann-json libasio; do
    check "the licence of $library is there" compgen -G "$unzipped/licences/$library*.txt" >/dev/null
  done
}

install_silently() {
  all_files >"$work/before"
  windows "$packages"/lumadot-tool-*-windows.exe /S
  # The exit code says nothing.
  wait_until "the tool is installed" [ -f "$installed/Uninstall.exe" ]
  wait_until "the installer has ended" ends_with "$work/files" files_in "$installed"
  check "the installer brings what the zip holds" diff <(files_in "$unzipped") <(files_in "$installed")
  all_files >"$work/installed"
  for entry in Tool Viewer Demo; do
    check "the start menu has the $entry" grep -q "Start Menu/.*/LUMADOT $entry.lnk" "$work/installed"
  done
}

# ends_with FILE COMMAND...: whether the command prints twice the same.
ends_with() {
  local before
  before=$(cat "$1" 2>/dev/null || true)
  "${@:2}" >"$1"
  [[ -n $before && $before == "$(cat "$1")" ]]
}

start_what_was_installed() {
  check "lumadotctl runs" [ "$(windows "$installed/lumadotctl.exe" --version | tr -d '\r')" = "$(version)" ]
  check "nothing is on the bus" says 3 "$installed/lumadotctl.exe" check
  LUMADOT_SIM_BOARD=none opens "LUMADOT Spectra" "$installed/lumadot-tool.exe"
  opens "LUMADOT Viewer" "$installed/lumadot-viewer.exe"
  opens "LUMADOT Spectra" "$installed/lumadot-demo.exe"
  check "the demo's simulator has ended with it" wait_until "the simulator has gone" \
    no_window "^LUMADOT Simulator\$"
}

version() { sed -n 's/^project(.*VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt; }

# says CODE PROGRAM ARGUMENT...
says() {
  local result=0
  windows "${@:2}" >"$work/said" 2>&1 || result=$?
  [[ $result == "$1" ]]
}

no_window() { [[ -z $(xdotool search --onlyvisible --name "$1" 2>/dev/null) ]]; }

# opens TITLE PROGRAM: it starts, its window comes, and it ends when that is closed.
opens() {
  windows "$2" &
  TOOL=$!
  wait_until "\"$1\" is there" titled_window_is_there "$1"
  activate "$WINDOW"
  wait_until "it rests" tool_rests
  check "${2##*/} ends with exit code 0" close_tool
}
titled_window_is_there() {
  WINDOW=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null | head -n 1)
  [[ -n $WINDOW ]]
}

has_no_keys() { ! grep -i lumadot "$1"; }
has_gone() { [[ ! -e $1 ]]; }
is_as_before() { all_files >"$work/after" && cmp -s "$work/before" "$work/after"; }

uninstall_silently() {
  windows "$installed/Uninstall.exe" /S
  wait_until "the files are gone" has_gone "$installed"
  # The entries of the start menu are the last that go.
  wait_until "everything is as before" is_as_before || true
  check "nothing is left" diff "$work/before" "$work/after"
  windows reg query 'HKLM\Software' /s >"$work/registry-after" 2>/dev/null || true
  check "nothing is left in the registry" has_no_keys "$work/registry-after"
}

look_at_the_zip
install_silently
start_what_was_installed
uninstall_silently
echo "packages: $CHECKS checks passed"
