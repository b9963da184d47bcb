#!/usr/bin/env bash
# The unmodified tool on the real libusb, the real usbfs, the real udev rule and a real kernel: boots
# Debian in QEMU, attaches the simulator through USB/IP, and works with it as a user does. It
# takes four minutes on a quiet machine, a quarter of an hour on a busy one. Exit code 77: skipped, and why. Needs 4 GiB of disk in
# build/system_test, where the guest is kept for the next time.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

folder=$PWD/build/system_test
guest=$folder/guest
limit=3600 # seconds
SECONDS=0

skip() {
  echo "SKIPPED: $1"
  exit 77
}

need_packages "${BUILD_PACKAGES[@]}"
need_packages "${SYSTEM_TEST_PACKAGES[@]}" || skip "QEMU, or what makes its guest, cannot be had"

mkdir -p "$folder"
if [[ ! -f $guest/root.ext2 || tests/system/make_guest.sh -nt $guest/root.ext2 ]]; then
  echo "Making the guest (once)"
  rm -rf "$guest"
  tests/system/make_guest.sh "$guest" || skip "Debian's packages for the guest cannot be had"
  echo "made in $SECONDS s"
fi

cmake --preset release >"$folder/configure.log"
cmake --build --preset release --target lumadot-tool lumadot-simulator

# The second disk: what is tested.
payload=$(mktemp -d)
trap 'rm -rf "$payload"' EXIT
cp build/release/lumadot-tool build/release/lumadot-simulator packaging/linux/65-lumadot.rules \
  tests/system/guest_test.sh tests/system/guest_session.sh "$payload"
strip "$payload/lumadot-tool" "$payload/lumadot-simulator"
cp --parents scripts/on_display.sh scripts/lib/display.sh scripts/lib/session.sh scripts/lib/wait.sh "$payload"
chmod -R a+rX "$payload"
rm -f "$folder/payload.ext4"
mke2fs -q -t ext4 -d "$payload" "$folder/payload.ext4" 64M

# Software emulation everywhere: a /dev/kvm that is there need not work.
echo "Booting the guest; its console goes to $folder/console.txt"
started=$SECONDS
timeout "$limit" qemu-system-x86_64 -accel tcg,thread=multi -smp 2 -m 2048 -nodefaults -no-reboot \
  -vga std -display none -serial "file:$folder/console.txt" \
  -serial "file:$folder/screen.png" -monitor none \
  -kernel "$guest/vmlinuz" -initrd "$guest/initrd.img" \
  -append "root=/dev/vda rw console=ttyS0 quiet systemd.show_status=0" \
  -drive "file=$guest/root.ext2,format=raw,if=virtio,snapshot=on" \
  -drive "file=$folder/payload.ext4,format=raw,if=virtio,snapshot=on" || echo "QEMU ended with $?"
tr -d '\r' <"$folder/console.txt" | grep -E '^\[|^error|^failed' || true
echo "The guest ran for $((SECONDS - started)) s, everything took $SECONDS s."
if ! grep -q 'PASSED' "$folder/console.txt"; then
  echo "FAILED: see $folder/console.txt"
  exit 1
fi
