#!/usr/bin/env bash
# Usage: no_toolkit.sh PROGRAM
# The program runs where there is no desktop: no window toolkit among its libraries, nor theirs.
set -euo pipefail

libraries=$(ldd "$1")
grep -q libusb-1.0 <<<"$libraries" || {
  echo "no libusb among: $libraries"
  exit 1
}
if grep -iE 'libwx|libgtk|libgdk|libX11|wayland' <<<"$libraries"; then
  echo "a toolkit is linked"
  exit 1
fi
