#!/usr/bin/env bash
# lumadotctl under Wine, on the simulated bus: tests/windows/run_command_line.sh FOLDER
# FOLDER holds what the zip holds. What `check` tells, and files with every kind of name, on every kind of
# drive. Needs a display and a running Wine; only root can try drives that are full or read-only.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/lib/wine.sh
source scripts/lib/wine.sh
# shellcheck source=scripts/lib/wait.sh
source scripts/lib/wait.sh

work=$(mktemp -d)
drive=$work/drive
trap 'umount "$drive" 2>/dev/null || true; rm -rf "$work"' EXIT
# A program takes the library in its own folder.
cp "$1/lumadotctl.exe" "$1/simulated_bus/libusb-1.0.dll" "$work"

# ends CODE TEXT ARGUMENT...: what lumadotctl says has the text in it.
ends() {
  local result=0
  LUMADOT_SIM_BOARD=${board:-standard} windows "$work/lumadotctl.exe" "${@:3}" >"$work/said" 2>&1 </dev/null || result=$?
  if [[ $result != "$1" ]] || ! grep -qF "$2" "$work/said"; then
    echo "failed: lumadotctl ${*:3}: exit code $result, not $1, or not \"$2\" in:"
    cat "$work/said"
    exit 1
  fi
  CHECKS=$((CHECKS + 1))
}

is_file() { check "$1 has $2 bytes" [ "$(stat -c %s "$1" 2>/dev/null)" = "$2" ]; }

what_check_tells() {
  ends 0 "The controller answers." check
  board=none ends 3 "There is no controller (0314:e457) on the USB bus." check
  LUMADOT_SIM_FAULT=libusb_open:1:-12 ends 4 "has not bound it to the driver WinUSB" check
  LUMADOT_SIM_FAULT=libusb_open:1:-3 ends 5 "or Windows has bound it to a driver other than WinUSB." check
  LUMADOT_SIM_FAULT=libusb_claim_interface:1:-3 ends 5 "or Windows has bound it to a driver other" check
  LUMADOT_SIM_FAULT=libusb_claim_interface:1:-6 ends 5 "Another program is using the controller." check
}

names() {
  local long name
  for name in Größe 日本語 "🎯 emoji" кириллица; do
    ends 0 "$name.dat" settings save "$(windows_name "$work/$name.dat")"
    is_file "$work/$name.dat" 23
    ends 0 "" settings diff "$(windows_name "$work/$name.dat")"
    ends 0 "" upload "$(windows_name "$work/$name.dat")"
  done
  long=$work/$(printf 'folder-%.0s' {1..25})/$(printf 'ordner-%.0s' {1..25})
  mkdir -p "$long"
  ends 0 "" settings save "$(windows_name "$long/a.dat")"
  is_file "$long/a.dat" 23
  ends 0 "" settings load "$(windows_name "$long/a.dat")"
  ends 0 "" palette --preset vga --write "$(windows_name "$long/a.pal")"
  is_file "$long/a.pal" 56
  ends 0 "" record --frames 3 "$(windows_name "$long")"
  ends 0 "" dump info "$(windows_name "$(compgen -G "$long/*_dump.txt")")"
  ends 0 "" dump export "$(windows_name "$(compgen -G "$long/*_dump.txt")")" --out "$(windows_name "$long/a.gif")"
  ends 0 "" settings save NUL
  check "a device is no file" [ ! -e "$PWD/NUL" ]
  # As the system itself names it.
  ends 0 "" settings save "\\\\?\\$(windows_name "$work/special.dat")"
  is_file "$work/special.dat" 23
  mkdir "$work/special"
  ends 0 "" record --frames 3 "\\\\?\\$(windows_name "$work/special")"
  check "the recording is in the folder" compgen -G "$work/special/*_lumadot_dump.txt" >/dev/null
}

# On a share, which is a folder of this system under a name of Wine's.
shares() {
  local share=$WINEPREFIX/dosdevices/unc/server/share deep
  deep=$(printf 'folder-%.0s' {1..35})
  mkdir -p "$share/$deep"
  ends 0 "größe.dat" settings save '\\server\share\größe.dat'
  is_file "$share/größe.dat" 23
  ends 0 "" settings save "\\\\server\\share\\$deep\\日本.dat"
  ends 0 "" settings load "\\\\server\\share\\$deep\\日本.dat"
  is_file "$share/$deep/日本.dat" 23
  ends 0 "" settings save "//server/share/a.dat"
  is_file "$share/a.dat" 23
  ends 0 "" record --frames 3 '\\server\share'
  check "the recording is on the share" compgen -G "$share/*_lumadot_dump.txt" >/dev/null
  ends 7 "missing" settings load '\\server\share\missing'
}

sizes() {
  truncate -s 3G "$work/huge"
  ends 7 "3221225472 bytes" upload "$(windows_name "$work/huge")"
  ends 7 "is no settings file" settings load "$(windows_name "$work/huge")"
}

drives() {
  mkdir "$drive"
  if ! mount -t tmpfs -o size=64k none "$drive" 2>/dev/null; then
    echo "skipped: full and read-only drives: mounting takes root"
    return
  fi
  printf old >"$drive/a.dat"
  head -c 1M /dev/zero >"$drive/filler" 2>/dev/null || true
  ends 7 "a.dat" settings save "$(windows_name "$drive/a.dat")"
  is_file "$drive/a.dat" 3
  mount -o remount,ro "$drive"
  ends 7 "a.dat" settings save "$(windows_name "$drive/a.dat")"
  is_file "$drive/a.dat" 3
}

# A picture on a console that follows escape sequences. Wine hides the cursor around each letter.
colours() {
  local recording
  LUMADOT_SIM_BOARD=standard windows "$work/lumadotctl.exe" record --frames 1 "$(windows_name "$work")" >/dev/null 2>&1
  recording=$(windows_name "$(compgen -G "$work/*_dump.txt")")
  script -qec "/usr/lib/wine/wine64 '$work/lumadotctl.exe' dump show '$recording'" "$work/console" >/dev/null </dev/null
  check "a picture on a console has 24 bit colours" \
    grep -q $'\e\\[38;2;' <(sed 's/\x1b\[?25[hl]//g' "$work/console")
}

what_check_tells
colours
names
shares
sizes
drives
echo "command line: $CHECKS checks passed"
