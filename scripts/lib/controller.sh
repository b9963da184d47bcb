# shellcheck shell=bash
# Whether a controller is plugged in, and whether this user may open it. To be sourced.
# shellcheck disable=SC2034  # CONTROLLER is read by the scripts that source this file.

# find_controller ROOT
# Leaves the file that a program has to open in CONTROLLER; fails when none is on the bus. ROOT, which is
# empty but in tests, stands before /sys and /dev.
find_controller() {
  local root=$1 device
  for device in "$root"/sys/bus/usb/devices/*; do
    if [[ $(cat "$device/idVendor" "$device/idProduct" 2>/dev/null) == $'0314\ne457' ]]; then
      CONTROLLER=$(printf '%s/dev/bus/usb/%03d/%03d' "$root" "$(<"$device/busnum")" "$(<"$device/devnum")")
      return 0
    fi
  done
  return 1
}

# may_open FILE ROOT
# Says what to do when this user may not; ROOT stands before the folders of udev's rules.
may_open() {
  local file=$1 root=$2 folder
  [[ -r $file && -w $file ]] && return 0
  echo "error: the controller is there, but $(id -un) may not open it ($file)." >&2
  for folder in /etc /run /usr/local/lib /usr/lib /lib; do
    if [[ -e $root$folder/udev/rules.d/65-lumadot.rules ]]; then
      echo "The udev rule is installed. Plug the controller in again. Over ssh, or where nobody is logged in at" >&2
      echo "the screen, see \"A cabinet or kiosk without a login\" in docs/user-guide.md." >&2
      return 1
    fi
  done
  echo "Install the udev rule, then plug the controller in again:" >&2
  echo "  sudo cp packaging/linux/65-lumadot.rules /etc/udev/rules.d/ && sudo udevadm control --reload" >&2
  return 1
}
