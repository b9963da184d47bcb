#!/usr/bin/env bash
# What scripts/run.sh says of a controller that may be opened, may not, and is not there: on a made-up /sys
# and /dev, as a user without rights.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."

# Whoever is root may open everything.
if ((EUID == 0)); then
  as_nobody=(setpriv --reuid=65534 --regid=65534 --clear-groups)
  if ! "${as_nobody[@]}" test -r scripts/lib/controller.sh; then
    echo "SKIPPED: root may open everything, and nobody else may read $PWD"
    exit 77
  fi
  exec "${as_nobody[@]}" bash tests/packaging/controller_access.sh
fi
# shellcheck source=scripts/lib/controller.sh
source scripts/lib/controller.sh

root=$(mktemp -d)
trap 'rm -rf "$root"' EXIT
device=$root/sys/bus/usb/devices/1-1
file=$root/dev/bus/usb/001/007
mkdir -p "$device" "$root/dev/bus/usb/001" "$root/usr/lib/udev/rules.d"
echo 0314 >"$device/idVendor"
echo ffff >"$device/idProduct"
echo 1 >"$device/busnum"
echo 7 >"$device/devnum"

fail() {
  echo "failed: $1"
  exit 1
}

! find_controller "$root" || fail "another device is taken for a controller"
echo e457 >"$device/idProduct"
find_controller "$root" || fail "the controller is not found"
[[ $CONTROLLER == "$file" ]] || fail "the controller's file is $CONTROLLER"

: >"$file"
said=$(may_open "$file" "$root" 2>&1) || fail "a file that may be opened is refused: $said"
[[ -z $said ]] || fail "said of a file that may be opened: $said"

chmod 444 "$file"
said=$(may_open "$file" "$root" 2>&1) && fail "a file that may only be read is taken"
[[ $said == *"may not open it ($file)"*"sudo cp packaging/linux/65-lumadot.rules /etc/udev/rules.d/"* ]] ||
  fail "without a rule it says: $said"

: >"$root/usr/lib/udev/rules.d/65-lumadot.rules"
said=$(may_open "$file" "$root" 2>&1) && fail "a file that may only be read is taken, with a rule"
[[ $said == *"The udev rule is installed. Plug the controller in again."* ]] || fail "with a rule it says: $said"
[[ $said != *"sudo cp"* ]] || fail "it wants a rule that is there"
