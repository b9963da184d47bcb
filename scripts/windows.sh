#!/usr/bin/env bash
# Builds everything for 64-bit Windows, tests it under Wine, and leaves a zip and an installer in
# build/packages: scripts/windows.sh, or scripts/windows.sh build for the programs only.
# The libraries that the programs need are built from Debian's source packages, and kept.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh
# shellcheck source=scripts/lib/windows_libraries.sh
source scripts/lib/windows_libraries.sh
# shellcheck source=scripts/lib/wine.sh
source scripts/lib/wine.sh

build() {
  need_packages "${WINDOWS_LIBRARY_PACKAGES[@]}" librsvg2-bin icoutils
  build_windows_libraries
  cmake --preset windows >build/windows-configure.log || { cat build/windows-configure.log && exit 1; }
  cmake --build --preset windows
}

make_packages() {
  rm -f build/packages/*-windows.*
  cpack --config build/windows/CPackConfig.cmake -B build/packages >build/windows-packages.log ||
    { cat build/windows-packages.log && exit 1; }
  ls -l build/packages/*-windows.*
}

# All that runs under Wine, on a display of its own.
test_under_wine() {
  trap stop_wine EXIT
  start_wine
  tests/windows/run_programs.sh build/windows
  tests/windows/run_packages.sh build/packages
  tests/windows/run_command_line.sh build/windows-zip
  tests/windows/run_session.sh build/windows-zip
}

case ${1:-} in
  '')
    build
    make_packages
    need_packages "${WINE_PACKAGES[@]}" "${RUN_PACKAGES[@]}" unzip xclip binutils mount
    # The window at 200 % is higher than the usual display.
    LUMADOT_SCREEN=1600x1400x24 exec scripts/on_display.sh scripts/windows.sh test
    ;;
  build) build ;;
  test) test_under_wine ;;
  *) echo "usage: scripts/windows.sh [build]" >&2 && exit 2 ;;
esac
