#!/usr/bin/env bash
# The zip and the installer under Wine: tests/windows/run_packages.sh FOLDER
# FOLDER holds the packages. What is installed is what the zip holds, starts, keeps what the user had when it is
# installed once more, and is gone after the silent uninstallation. Leaves the zip's files in
# build/windows-zip. Needs a display and a running Wine.
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

# As Windows' own shells know the programs: no console but for the command line, icon, version and manifest.
subsystem() { x86_64-w64-mingw32-objdump -p "$1" | sed -n 's/^Subsystem.*(\(.*\))$/\1/p'; }
# resource PROGRAM TYPE: as text, whatever it is written in.
resource() { wrestool --extract --raw --type="$2" "$1" | tr -d '\0'; }
has_in() { [[ $(resource "$1" "$2" | grep -acF "$3") -gt 0 ]]; }
# Reads to the end: a pipe that is left early is a failure, too.
tells_nothing_of_this_machine() { [[ $(strings -a "$1" | grep -cE "(^|[^[:alnum:]._-])$PWD/") == 0 ]]; }

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
    check "$program has an icon" has_in "$unzipped/$program.exe" 14 ""
    check "$program has its version" has_in "$unzipped/$program.exe" 16 "ProductVersion$(version)"
    check "$program is drawn for each screen" has_in "$unzipped/$program.exe" 24 "PerMonitorV2"
  done
  while read -r file; do
    check "$file tells nothing of the machine that built it" tells_nothing_of_this_machine "$file"
  done < <(find "$unzipped" -name '*.exe' -o -name '*.dll')
  check "the simulated bus is there" [ -f "$unzipped/simulated_bus/libusb-1.0.dll" ]
  for library in wxwidgets libusb libpng libjpeg-turbo expat giflib libz gcc mingw-w64 libcli11 nlohmann-json libasio nsis; do
    check "the licence of $library is there" compgen -G "$unzipped/licences/$library*.txt" >/dev/null
  done
}

install_silently() {
  all_files >"$work/before"
  run_installer
  check "the installer brings what the zip holds" diff <(files_in "$unzipped") <(files_in "$installed")
  all_files >"$work/installed"
  for entry in Tool Viewer Demo; do
    check "the start menu has the $entry" grep -q "Start Menu/.*/LUMADOT $entry.lnk" "$work/installed"
  done
}

run_installer() {
  windows "$packages"/lumadot-tool-*-windows.exe /S
  # The exit code says nothing.
  wait_until "the tool is installed" [ -f "$installed/Uninstall.exe" ]
  wait_until "the installer has ended" ends_with "$work/files" files_in "$installed"
}

# What the demo's controller keeps and where windows were is still there.
install_once_more() {
  rm "$installed/README.txt"
  run_installer
  check "the newer version brings what the zip holds" diff <(files_in "$unzipped") <(files_in "$installed")
  check "the demo's memory is kept" stored_mode_is 1
  check "the places of the windows are kept" has_keys HKCU
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
  LUMADOT_SIM_LOG='' opens "LUMADOT Spectra" "$installed/lumadot-demo.exe" store_a_mode
  check "the demo's simulator has ended with it" wait_until "the simulator has gone" \
    no_window "LUMADOT Simulator"
}

# In the demo: what the tool stores is in the simulated controller's memory.
store_a_mode() {
  wait_until "the simulator's window is there" shown "LUMADOT Simulator" >/dev/null
  press Down
  wait_until "the tool rests" tool_rests
  choose_device_item 2
  check "the demo's controller keeps the input mode" wait_until "it is stored" stored_mode_is 1
  wait_until "the tool rests" tool_rests
}
stored_mode_is() {
  [[ $(od -An -N1 -tu1 "$WINEPREFIX"/drive_c/users/*/AppData/Local/lumadot-demo/settings 2>/dev/null) -eq $1 ]]
}

version() { sed -n 's/^project(.*VERSION \([0-9.]*\).*/\1/p' CMakeLists.txt; }

# says CODE PROGRAM ARGUMENT...
says() {
  local result=0
  windows "${@:2}" >"$work/said" 2>&1 || result=$?
  [[ $result == "$1" ]]
}

no_window() { ! shown "$1" >/dev/null; }

# opens TITLE PROGRAM [COMMAND]: it starts, its window comes, and it ends when that is closed.
opens() {
  windows "$2" &
  TOOL=$!
  wait_until "\"$1\" is there" titled_window_is_there "$1"
  activate "$WINDOW"
  wait_until "it rests" tool_rests
  ${3:-true}
  activate "$WINDOW"
  check "${2##*/} ends with exit code 0" close_tool
}
titled_window_is_there() { WINDOW=$(shown "$1"); }

# has_keys ROOT: whether the registry has any of ours below it.
has_keys() {
  windows reg query "$1\\Software" /s >"$work/registry" 2>/dev/null || true
  [[ $(grep -ic lumadot "$work/registry") -gt 0 ]]
}
has_no_keys() { ! has_keys "$1" && [[ -s $work/registry ]]; }
has_gone() { [[ ! -e $1 ]]; }
is_as_before() { all_files >"$work/after" && cmp -s "$work/before" "$work/after"; }

uninstall_silently() {
  check "the installer has keys in the registry" has_keys HKLM
  windows "$installed/Uninstall.exe" /S
  wait_until "the files are gone" has_gone "$installed"
  # The entries of the start menu are the last that go.
  wait_until "everything is as before" is_as_before || true
  check "nothing is left" diff "$work/before" "$work/after"
  check "nothing is left in the machine's registry" has_no_keys HKLM
  check "nothing is left in the user's registry" has_no_keys HKCU
}

look_at_the_zip
install_silently
start_what_was_installed
install_once_more
uninstall_silently
echo "packages: $CHECKS checks passed"
