#!/usr/bin/env bash
# Runs every test program that opens no window under Wine: tests/windows/run_programs.sh BUILD_FOLDER
# Prints a line for each, beside the figures of the same program on this system if scripts/test.sh has
# built it, and the reasons of what was skipped. Needs a display and a running Wine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/lib/wine.sh
source scripts/lib/wine.sh

build=$1
logs=$build/test-logs
mkdir -p "$logs"
result=0

fail() {
  echo "  failed: $1"
  result=1
}

# left_out PROGRAM: the tests that are not run there, a line each of GoogleTest's pattern and the reason.
left_out() { awk -v program="$1" '$1 == program { $1 = ""; print substr($0, 2) }' tests/windows/left_out; }

# figures LOG [TESTS]: what GoogleTest says at its end, of so many tests if not of those that it has run.
figures() {
  awk -v tests="${2:-0}" '
    / tests? from .* ran\./ { ran = $2 }
    /^\[  SKIPPED \] [0-9]+ test/ { skipped = $4 }
    /^\[  FAILED  \] [0-9]+ test/ { failed = $4 }
    END {
      if (tests < ran) tests = ran
      if (ran == "") print "did not end"
      else printf "%d passed, %d failed, %d skipped\n", ran - failed - skipped, failed, tests - ran + skipped
    }' "$1"
}

# run PROGRAM: one of the build for Windows.
run() {
  local name=${1##*/} here=build/dev/${1#"$build"/} beside='not built' log pattern reason filter='*-'
  name=${name%.exe}
  here=${here%.exe}
  log=$logs/$name.txt
  windows "$1" --gtest_list_tests 2>/dev/null | tr -d '\r' >"$logs/$name.tests"
  while read -r pattern _; do filter+=:$pattern; done < <(left_out "$name")
  windows "$1" "--gtest_filter=$filter" 2>"$logs/$name.err" </dev/null | tr -d '\r' >"$log" || result=1
  if [[ -x $here ]]; then
    "$here" >"$logs/$name.linux" 2>&1 </dev/null || true
    beside=$(figures "$logs/$name.linux")
  fi
  echo "$name: $(figures "$log" "$(count_tests "$logs/$name.tests")") (on Linux: $beside)"
  reasons "$log"
  while read -r pattern reason; do
    windows "$1" --gtest_list_tests "--gtest_filter=$pattern" 2>/dev/null | tr -d '\r' >"$logs/$name.tests"
    echo "  skipped $(count_tests "$logs/$name.tests"): $pattern: $reason"
    [[ $(count_tests "$logs/$name.tests") != 0 ]] || fail "there is no $pattern in $name"
  done < <(left_out "$name")
  sed -n 's/^\[  FAILED  \] \([^ ,]*\).* ([0-9]* ms)$/  failed: \1/p' "$log"
}

count_tests() { grep -c '^  ' "$1" || true; }

# reasons LOG: why tests were skipped, each reason once with how often.
reasons() {
  grep -A 1 '^.*: Skipped$' "$1" | grep -v -e ': Skipped$' -e '^--$' | sort | uniq -c |
    sed -E 's/^ *([0-9]+) (.*)$/  skipped \1: \2/' || true
}

# Those of the project that are not built for Windows.
not_built() {
  local program
  find tests -name CMakeLists.txt -exec sed -nE \
    's/^ *(lumadot_test|lumadot_window_test|add_executable)\(([a-z_]+_test)\>.*/\2/p' {} + | sort |
    while read -r program; do
      [[ -n $(find "$build/tests" -name "$program.exe") ]] || echo "$program"
    done
}

while read -r program; do
  run "$program"
done < <(find "$build/tests" -name '*_test.exe' | sort)
while read -r program; do
  reason=$(left_out "$program")
  echo "$program: not built: ${reason#\* }"
  [[ -n $reason ]] || fail "nothing says why $program is not built"
done < <(not_built)
exit "$result"
