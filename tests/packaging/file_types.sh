#!/usr/bin/env bash
# Usage: file_types.sh MIME_DEFINITION
# Asks the desktop for the type of each kind of file that the tool writes, with and without its name.
set -euo pipefail

for tool in update-mime-database gio; do
  if ! command -v "$tool" >/dev/null; then
    echo "SKIPPED: $tool is not installed"
    exit 77
  fi
done

work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir -p "$work/share/mime/packages"
cp "$1" "$work/share/mime/packages/lumadot-tool.xml"
export XDG_DATA_DIRS=$work/share:/usr/share
update-mime-database "$work/share/mime" >/dev/null 2>&1

# expect TYPE NAME BYTES
expect() {
  local type
  printf '%b' "$3" >"$work/$2"
  type=$(gio info -a standard::content-type "$work/$2" | sed -n 's/.*content-type: //p')
  if [[ $type != "$1" ]]; then
    echo "$2 is taken for $type, not for $1"
    exit 1
  fi
}

palette='\x01\x00\x01\x00\x00\x00\x10\x01\x00\x00\x00\x80'
expect application/x-lumadot-palette orange.pal "$palette"
expect application/x-lumadot-palette orange "$palette"
expect application/x-lumadot-settings lumadot.dat '\x05\x05\x0F\x0A\x0F\x0C'
expect application/x-lumadot-recording 050324_140709_lumadot_dump.raw 'RAW\x00\x01\x80\x20\x03'
expect application/x-lumadot-recording dump 'RAW\x00\x01\x80\x20\x03'
expect text/x-lumadot-recording 050324_140709_lumadot_dump.txt '0x0004d2a1\r\n3210\r\n'
