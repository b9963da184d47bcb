#!/usr/bin/env bash
# Builds and runs the benchmarks, each beside its baseline. Quiet machines give steady figures.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
cmake --preset release -DLUMADOT_BENCH=ON >/dev/null
cmake --build --preset release
for program in build/release/bench/*_bench; do
  echo "== ${program##*/}"
  scripts/on_display.sh "$program"
done
