#!/usr/bin/env bash
# Builds and runs every test: scripts/test.sh [PRESET [FOLDER]], dev unless said otherwise (or: asan),
# or those of one folder (tests/device/faults). The results are kept in build/PRESET/FOLDER/junit.xml.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

preset=${1:-dev}
folder=${2:-.}
need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
need_packages usbip || true # Not every system has it; its test is skipped then.
cmake --preset "$preset"
if [[ $folder == . ]]; then
  cmake --build --preset "$preset"
else
  cmake --build --preset "$preset" --target "$folder/all"
fi
ctest --test-dir "build/$preset/$folder" --parallel "$(nproc)" --no-tests=error --output-on-failure \
  --output-junit junit.xml

# What the test programs say of themselves, which CTest keeps from the screen.
sed -En '/^fault driver: /p; s/^(\[  SKIPPED \] .*) \(.* ms\)$/\1/p' \
  "build/$preset/$folder/Testing/Temporary/LastTest.log" | sort -u
