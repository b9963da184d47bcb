#!/usr/bin/env bash
# Usage: make_guest.sh FOLDER
# Makes a small Debian in FOLDER: root.ext2, vmlinuz, initrd.img. A user "player" is logged in on its
# first terminal, as on a desktop; what the second disk holds is run as a service, and then it is
# switched off.
# shellcheck disable=SC2016  # The hooks get the guest's root as their own $1.
set -euo pipefail

folder=$1
packages=linux-image-amd64,systemd-sysv,libpam-systemd,dbus,udev,kmod,usbip,procps,acl,zstd
packages+=,libusb-1.0-0,libwxgtk3.2-1,xvfb,xauth,xdotool,openbox,x11-utils,imagemagick,fonts-dejavu-core,librsvg2-common

mkdir -p "$folder"
mmdebstrap --quiet --format=ext2 --variant=minbase --include="$packages" \
  --aptopt='Apt::Install-Recommends "false"' \
  --dpkgopt='path-exclude=/usr/share/doc/*' --dpkgopt='path-exclude=/usr/share/man/*' \
  --dpkgopt='path-exclude=/usr/share/locale/*' \
  --customize-hook='chroot "$1" useradd --create-home --shell /bin/bash player' \
  --customize-hook='mkdir -p "$1/opt/test" "$1/etc/systemd/system/getty@tty1.service.d"' \
  --customize-hook='cat >"$1/etc/systemd/system/getty@tty1.service.d/login.conf" <<END
[Service]
ExecStart=
ExecStart=-/sbin/agetty --autologin player --noclear %I linux
END' \
  --customize-hook='cat >"$1/etc/systemd/system/lumadot-test.service" <<END
[Unit]
After=multi-user.target systemd-logind.service
[Service]
Type=oneshot
StandardOutput=tty
StandardError=tty
TTYPath=/dev/ttyS0
ExecStartPre=/bin/mount -o ro /dev/vdb /opt/test
ExecStart=-/opt/test/guest_test.sh
ExecStopPost=/bin/systemctl --no-block poweroff
TimeoutStartSec=infinity
[Install]
WantedBy=multi-user.target
END' \
  --customize-hook='chroot "$1" systemctl --quiet enable lumadot-test.service' \
  --customize-hook='chroot "$1" systemctl --quiet mask serial-getty@ttyS0.service systemd-networkd-wait-online.service' \
  --customize-hook='echo "/dev/vda / ext4 rw,noatime 0 0" >"$1/etc/fstab"' \
  --customize-hook='echo lumadot >"$1/etc/hostname"' \
  --customize-hook="cp \"\$1\"/boot/vmlinuz-* '$folder/vmlinuz'" \
  --customize-hook="cp \"\$1\"/boot/initrd.img-* '$folder/initrd.img'" \
  bookworm "$folder/root.ext2.new"
mv "$folder/root.ext2.new" "$folder/root.ext2"
