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

# The deliberate leaks are many here; the tests count them one by one. So that they do not fill the
# memory, a target starts anew after each round.
export ASAN_OPTIONS=detect_leaks=0
round=20 # seconds

# fuzz TARGET NAME: rounds until the time is over; prints the number of inputs.
fuzz() {
  local target=$1 name=$2 left length tried=0
  local found=build/fuzz/found/$name log=build/fuzz/$name.log
  mkdir -p "$found"
  for ((left = seconds; left > 0; left -= round)); do
    length=$((left < round ? left : round))
    if ! scripts/on_display.sh "$target" -max_total_time="$length" -timeout=20 -print_final_stats=1 \
      -artifact_prefix="build/fuzz/broken-$name-" "$found" "fuzz/corpus/$name" >"$log" 2>&1; then
      echo "$name: BROKEN, see $log"
      tail -n 30 "$log"
      return 1
    fi
    tried=$((tried + $(sed -n 's/stat::number_of_executed_units: //p' "$log")))
  done
  echo "$name: $tried inputs tried, none broke it"
}

failed=0
for target in build/fuzz/fuzz/fuzz_*; do
  fuzz "$target" "${target##*/fuzz_}" || failed=1
done
rm -f /dev/shm/lumadot-fuzz-*
exit $failed
