#!/usr/bin/env bash
# Runs every fuzz target: scripts/fuzz.sh SECONDS, for that long each. Prints how many inputs each has
# tried; an input that breaks one is kept in build/fuzz.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

seconds=${1:?usage: scripts/fuzz.sh SECONDS}
need_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}" "${RUN_PACKAGES[@]}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

# The deliberate leaks are many here; the tests count them one by one.
export ASAN_OPTIONS=detect_leaks=0
failed=0
for target in build/fuzz/fuzz/fuzz_*; do
  name=${target##*/fuzz_}
  found=build/fuzz/found/$name
  mkdir -p "$found"
  log=build/fuzz/$name.log
  if scripts/on_display.sh "$target" -max_total_time="$seconds" -timeout=20 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/broken-$name-" "$found" "fuzz/corpus/$name" >"$log" 2>&1; then
    echo "$name: $(sed -n 's/stat::number_of_executed_units: //p' "$log") inputs tried, none broke it"
  else
    echo "$name: BROKEN, see $log"
    tail -n 30 "$log"
    failed=1
  fi
done
rm -f /dev/shm/lumadot-fuzz-*
exit $failed
