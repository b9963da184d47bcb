#!/usr/bin/env bash
# Usage: bare_root.sh ROOT PACKAGE
# Installs the Debian package in a Debian root that has nothing but apt, uses it there as a user without
# rights, removes it, and compares the files before and after. Needs root and a display.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

root=$1
package=$2
work=$(mktemp -d)
trap 'umount -q "$root/tmp/.X11-unix" 2>/dev/null || true; rm -rf "$work"' EXIT
export LOG=$work/usb-log.txt

# inside COMMAND...
inside() {
  chroot "$root" env -i PATH=/usr/sbin:/usr/bin:/sbin:/bin HOME=/root LC_ALL=C.UTF-8 \
    DEBIAN_FRONTEND=noninteractive "$@"
}

# as_user COMMAND... : replaces the shell, so that its process is the command's.
as_user() {
  exec chroot --userspec=nobody:nogroup "$root" env -i PATH=/usr/bin:/bin HOME=/tmp/home LC_ALL=C.UTF-8 \
    DISPLAY="$DISPLAY" GDK_BACKEND=x11 NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory "$@"
}

apt_in_root() { inside apt-get -qq -o APT::Sandbox::User=root -o DPkg::Use-Pty=0 "$@" >>"$work/apt.log" 2>&1 ||
  {
    tail -n 30 "$work/apt.log"
    return 1
  }; }

# What is there, but for what belongs to the package manager and to running programs.
files() {
  (cd "$root" && find . -xdev \( -path ./proc -o -path ./sys -o -path ./dev -o -path ./run -o -path ./tmp \
    -o -path ./var/lib/dpkg -o -path ./var/lib/apt -o -path ./var/log -o -path ./var/cache \) -prune \
    -o -printf '/%P\n') | LC_ALL=C sort
}

fail() {
  echo "failed: $1"
  exit 1
}

has() { [[ -x $root/usr/bin/$1 ]]; }

# The window comes up and goes, on the simulated controller where the package brings one.
use_window() {
  local program=lumadot-tool
  if has lumadot-demo; then program=lumadot-demo; fi
  (as_user "$program") &
  TOOL=$!
  wait_until "the window of $program is there" window_is_there
  activate "$WINDOW"
  wait_until "the tool rests" tool_rests
  import -window "$WINDOW" build/in-the-bare-root.png
  close_tool || fail "$program ended with $?"
  echo "$program: its window came up and closed"
}

# The command line tells that nothing is plugged in, and that the simulated controller answers.
use_command_line() {
  local code=0
  (as_user lumadotctl check) || code=$?
  ((code == 3)) || fail "lumadotctl check without a controller ended with $code"
  if has lumadot-demo; then
    (as_user LD_LIBRARY_PATH=/usr/lib/lumadot/simulated_bus LUMADOT_SIM_BOARD=standard lumadotctl check) ||
      fail "lumadotctl check on the simulated bus ended with $?"
  fi
}

mkdir -p "$root/tmp/.X11-unix"
mount --bind /tmp/.X11-unix "$root/tmp/.X11-unix"
install -d -o nobody -g nogroup "$root/tmp/home"
cp "$package" "$root/tmp/package.deb"

echo "Installing what the package depends on"
apt_in_root update
apt_in_root satisfy -y "$(dpkg-deb -f "$package" Depends), $(dpkg-deb -f "$package" Recommends)"
files >"$work/before"

apt_in_root install -y /tmp/package.deb
files >"$work/installed"
comm -13 "$work/before" "$work/installed" >"$work/added"
dpkg-deb -c "$package" | sed 's/ -> .*//; s/.* \.\//\//; s/\/$//' | LC_ALL=C sort -u >"$work/packed"
# Whatever else came is an index that the desktop keeps.
unexpected=$(comm -23 "$work/added" "$work/packed" | grep -vE '/(icon-theme|mimeinfo)\.cache$|^/usr/share/mime/' || true)
[[ -z $unexpected ]] || fail "the installation also made: $unexpected"
echo "installed: $(wc -l <"$work/added") files and folders"

use_window
if has lumadotctl; then use_command_line; fi

apt_in_root purge -y lumadot-tool
files >"$work/after"
diff "$work/before" "$work/after" || fail "the root is not as it was (>)"
echo "removed: the root is as it was before"
