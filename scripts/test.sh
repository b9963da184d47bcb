#!/usr/bin/env bash
# Builds and runs every test: scripts/test.sh [PRESET], dev unless said otherwise (or: asan).
# The results are kept in build/PRESET/junit.xml.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

preset=${1:-dev}
need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
cmake --preset "$preset"
cmake --build --preset "$preset"
ctest --test-dir "build/$preset" --parallel "$(nproc)" --no-tests=error --output-on-failure \
  --output-junit junit.xml
