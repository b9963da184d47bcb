#!/usr/bin/env bash
# Runs fuzz targets:
#   scripts/fuzz.sh SECONDS [TARGET...]         for that long each
#   scripts/fuzz.sh --runs NUMBER [TARGET...]   until each has tried that many inputs
# All of them unless some are named (settings_reply: fuzz/settings_reply.cpp). Prints how many inputs each
# has tried and how fast; an input that breaks one is kept in build/fuzz.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

usage='usage: scripts/fuzz.sh SECONDS [TARGET...], or scripts/fuzz.sh --runs NUMBER [TARGET...]'
by_time=1
if [[ ${1-} == --runs ]]; then
  by_time=0
  shift
fi
goal=${1:?$usage}
shift
[[ $goal =~ ^[0-9]+$ ]] || { echo "$usage" >&2 && exit 2; }
targets=("$@")
if ((${#targets[@]} == 0)); then
  mapfile -t targets < <(sed -n 's/^lumadot_fuzz(\([a-z_]*\).*/\1/p' fuzz/CMakeLists.txt)
fi

need_packages "${BUILD_PACKAGES[@]}" "${FUZZ_PACKAGES[@]}" "${RUN_PACKAGES[@]}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz --target "${targets[@]/#/fuzz_}"

# The deliberate leaks are many here; the tests count them one by one. So that they do not fill the
# memory, a target starts anew after each round. Freed blocks are kept from use for a while, which finds
# who still uses them; more than this costs as much time as the rest, as long traces and filling do.
export ASAN_OPTIONS=detect_leaks=0:quarantine_size_mb=8:malloc_context_size=4:max_malloc_fill_size=0
round=20 # seconds

# run_round NAME LIMIT...: sets `used` to the processor time that it took, in ms.
run_round() {
  local name=$1 on=() TIMEFORMAT='%3U %3S' used_file=build/fuzz/time user system status=0
  shift
  [[ $name == window_* ]] && on=(scripts/on_display.sh)
  { time "${on[@]}" "build/fuzz/fuzz/fuzz_$name" "$@" -timeout=20 -print_final_stats=1 \
    -artifact_prefix="build/fuzz/broken-$name-" "$found" "$seeds" >"$log" 2>&1; } 2>"$used_file" || status=$?
  read -r user system <"$used_file"
  used=$((10#${user/./} + 10#${system/./}))
  return $status
}

# fuzz NAME: rounds until the goal is reached; prints the number of inputs.
fuzz() {
  local name=$1 left used tried=0 time=1
  local found=build/fuzz/found/$name log=build/fuzz/$name.log seeds=fuzz/corpus/$name
  [[ -d $seeds ]] || seeds=fuzz/corpus/${name#window_} # The window's are those of the code beneath it.
  mkdir -p "$found"
  for ((left = goal; left > 0; left = by_time ? left - round : goal - tried)); do
    local limits=(-max_total_time=$((by_time && left < round ? left : round)))
    ((by_time)) || limits+=(-runs="$left")
    if ! run_round "$name" "${limits[@]}"; then
      echo "$name: BROKEN, see $log"
      tail -n 30 "$log"
      return 1
    fi
    tried=$((tried + $(sed -n 's/stat::number_of_executed_units: //p' "$log")))
    time=$((time + used))
  done
  echo "$name: $tried inputs tried, none broke it; $((tried * 1000 / time)) a second of processor time"
}

failed=0
for name in "${targets[@]}"; do
  fuzz "$name" || failed=1
done
rm -rf /dev/shm/lumadot-fuzz-*
exit $failed
