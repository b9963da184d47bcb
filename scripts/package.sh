#!/usr/bin/env bash
# Builds the Debian package and the archive into build/packages: scripts/package.sh [PRESET], release unless
# said otherwise. scripts/package_test.sh tries them.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

preset=${1:-release}
packages=build/packages

need_packages "${BUILD_PACKAGES[@]}" "${PACKAGING_PACKAGES[@]}"
mkdir -p "$packages"
cmake --preset "$preset" >build/configure.log 2>&1 || {
  cat build/configure.log
  exit 1
}
cmake --build --preset "$preset"
rm -rf "${packages:?}"/*
umask 022 # Of the folders in the packages.
cpack --config "build/$preset/CPackConfig.cmake" -B "$packages" >"$packages/cpack.log" 2>&1 || {
  cat "$packages/cpack.log"
  exit 1
}
rm -rf "$packages/_CPack_Packages" "$packages/cpack.log"
echo "To install it: sudo apt install ./$(echo "$packages"/*.deb)"
ls -1 "$packages"/*
