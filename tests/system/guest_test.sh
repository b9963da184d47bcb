#!/usr/bin/env bash
# Runs as root inside the guest of scripts/system_test.sh: attaches the simulator to the kernel, lets
# the ordinary user work with the tool, and reads the kernel's log. Prints "PASSED" at the end.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
export PATIENCE=300
# shellcheck source=scripts/lib/session.sh
source "$here/scripts/lib/session.sh"

work=/run/lumadot
say() { echo "[$((SECONDS))s] $*"; }
trap 'say "FAILED in line $LINENO"; dmesg | tail -n 40' ERR
# The host takes the last picture of the screen from the second serial line.
trap 'stty -F /dev/ttyS1 raw; cat "$work/screen.png" >/dev/ttyS1' EXIT

mkdir -p "$work"
chmod 777 "$work"
install -D -m 644 "$here/65-lumadot.rules" /lib/udev/rules.d/65-lumadot.rules
udevadm control --reload
modprobe vhci-hcd

user_is_on_the_seat() { [[ $(loginctl show-seat seat0 --value -p ActiveSession) != '' ]]; }
wait_until "the user is logged in" user_is_on_the_seat
say "the user is logged in on $(loginctl show-seat seat0 --value -p ActiveSession)"

# serve NAME OPTION...: a simulator that is attached to the kernel.
serve() {
  local name=$1
  shift
  "$here/lumadot-simulator" --headless --log "$work/$name.json" --state "$work/$name" "$@" \
    >"$work/$name.out" 2>&1 &
  simulator=$!
  wait_until "the simulator listens" grep -q '^port ' "$work/$name.out"
  chmod 644 "$work/$name.json"
  usbip list --remote=127.0.0.1
  usbip attach --remote=127.0.0.1 --busid=1-1
  wait_until "the device is there" find_node
  udevadm settle
  say "attached as $node: $(getfacl --omit-header --absolute-names "$node" | tr '\n' ' ')"
  getfacl --omit-header --absolute-names "$node" | grep -q '^user:player:rw-$'
}

find_node() {
  local device
  for device in /sys/bus/usb/devices/*; do
    if [[ $(cat "$device/idVendor" "$device/idProduct" 2>/dev/null) == $'0314\ne457' ]]; then
      node=$(printf '/dev/bus/usb/%03d/%03d' "$(<"$device/busnum")" "$(<"$device/devnum")")
      say "found in $device: $(<"$device/product"), $(<"$device/speed") Mb/s"
      return 0
    fi
  done
  return 1
}

as_user() { runuser -u player -- env HOME=/home/player PATIENCE="$PATIENCE" "$@"; }

# session NAME: the user's part of it.
session() { as_user "$here/scripts/on_display.sh" "$here/guest_session.sh" "$1" "$work/$1.json"; }

# detach: pulls the device out of the kernel and ends its simulator.
detach() {
  usbip detach --port=0
  kill "$simulator"
  wait "$simulator"
  wait_until "the device has gone" device_is_gone
  say "detached, and the simulator ended cleanly"
}
device_is_gone() { ! find_node >/dev/null; }

serve everything
session everything
cmp /home/player/upload.bin "$work/everything/files/upload.bin"
say "the file arrived byte for byte"
detach

serve silent --fault in:1:timeout
session silent
detach

serve unplug --fault in:30:unplug
session unplug
wait_until "the device has gone" device_is_gone
kill "$simulator"
wait "$simulator"

# The kernel says what it dislikes about descriptors when it reads them. Being unplugged is no fault.
dmesg | grep -E 'usb 1-1|vhci' >"$work/kernel.txt"
say "what the kernel says of usb:"
grep -v 'Host Controller' "$work/kernel.txt"
if grep -iE 'invalid|unable|error|warning|BUG|config .* has|descriptor|too (small|short|long)' \
  "$work/kernel.txt" | grep -v 'vhci_hcd: connection closed'; then
  say "FAILED: the kernel complains"
  exit 1
fi
say "PASSED"
