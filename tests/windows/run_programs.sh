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
failed=0

# figures LOG: what GoogleTest says at its end.
figures() {
  awk '
    / tests? from .* ran\./ { all = $2 }
    /^\[  SKIPPED \] [0-9]+ test/ { skipped = $4 }
    /^\[  FAILED  \] [0-9]+ test/ { failed = $4 }
    END {
      if (all == "") print "did not end"
      else printf "%d passed, %d failed, %d skipped\n", all - failed - skipped, failed, skipped
    }' "$1"
}

# filter PROGRAM: GoogleTest's filter without what is left out.
filter() {
  awk -v program="$1" '$1 == program { list = list ":" $2 } END { print "*-" substr(list, 2) }' tests/windows/left_out
}

# run PROGRAM: one of the build for Windows.
run() {
  local name=${1##*/} here=build/dev/${1#"$build"/} beside=' (on Linux: not built)'
  name=${name%.exe}
  here=${here%.exe}
  windows "$1" "--gtest_filter=$(filter "$name")" >"$logs/$name" 2>"$logs/$name.err" </dev/null || failed=1
  tr -d '\r' <"$logs/$name" >"$logs/$name.txt"
  if [[ -x $here ]]; then
    "$here" >"$logs/$name.linux" 2>&1 </dev/null || true
    beside=" (on Linux: $(figures "$logs/$name.linux"))"
  fi
  echo "$name: $(figures "$logs/$name.txt")$beside"
  reasons "$logs/$name.txt"
  awk -v program="$name" '$1 == program { $1 = ""; sub(/^ /, "  left out: "); print }' tests/windows/left_out
  sed -n 's/^\[  FAILED  \] \([^ ]*\) (.*/  failed: \1/p' "$logs/$name.txt"
}

# reasons LOG: why tests were skipped, each reason once with how often.
reasons() {
  grep -A 1 '^.*: Skipped$' "$1" | grep -v -e ': Skipped$' -e '^--$' | sort | uniq -c |
    sed -E 's/^ *([0-9]+) (.*)$/  skipped \1: \2/' || true
}

while read -r program; do
  run "$program"
done < <(find "$build/tests" -name '*_test.exe' | sort)
sed 's/$/: left out, it is the window that run_session.sh drives/' "$build/tests/not_on_windows"
exit "$failed"
