#!/usr/bin/env bash
# Builds the packages and tries the Debian package: scripts/package_test.sh [--no-root] [PRESET], release
# unless said otherwise. lintian, how the programs are hardened, and, unless --no-root is given, a bare Debian
# root in which it is installed, used on a display, and removed without a trace. Exit code 77: all that could
# be tried went well, but a bare root cannot be made here; it says why.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

skip() {
  echo "SKIPPED: the bare root: $1"
  exit 77
}

# Control flow protection takes a C library that has it, which Debian 12 does not.
check_hardening() {
  local program work
  work=$(mktemp -d)
  dpkg -x "$1" "$work"
  for program in "$work"/usr/bin/*; do
    if [[ $(head -c 4 "$program" | tail -c 3) == ELF ]]; then
      hardening-check --quiet --nocfprotection "$program" || {
        echo "error: ${program##*/} lacks some hardening" >&2
        return 1
      }
    fi
  done
  rm -rf "$work"
}

with_root=yes
if [[ ${1-} == --no-root ]]; then
  with_root=no
  shift
fi
scripts/package.sh "${1:-release}"
need_packages "${PACKAGE_TEST_PACKAGES[@]}" "${RUN_PACKAGES[@]}"
package=$(echo build/packages/*.deb)
lintian --allow-root --fail-on error,warning "$package"
echo "lintian: no error, no warning"
check_hardening "$package"
echo "hardening: complete"
[[ $with_root == yes ]] || exit 0

((EUID == 0)) || skip "changing into it needs root"
root=$(mktemp -d)
trap 'umount -q "$root/tmp/.X11-unix" "$root/proc" 2>/dev/null || true; rm -rf --one-file-system "$root"' EXIT
# shellcheck source=/dev/null
release=$(. /etc/os-release && echo "${VERSION_CODENAME:-stable}")
echo "Making a bare Debian root ($release)"
mmdebstrap --quiet --variant=apt "$release" "$root" >build/bare_root.log 2>&1 ||
  skip "mmdebstrap: $(tail -n 1 build/bare_root.log)"
mkdir -p "$root/tmp/.X11-unix"
mount -t proc proc "$root/proc" 2>/dev/null || skip "nothing can be mounted"
scripts/on_display.sh tests/packaging/bare_root.sh "$root" "$package"
