#!/usr/bin/env bash
# Builds the tests and runs those that are named so: scripts/one_test.sh NAME [PRESET], dev unless said
# otherwise. NAME is part of a test's name, as an extended regular expression: SUITE.TEST in a test
# program, or what CTest lists (a whole program, a script). Fails when no test has it in its name.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

name=${1:?NAME, a part of the name of a test}
preset=${2:-dev}
need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset"

# tests_of PROGRAM: its tests, as SUITE.TEST.
tests_of() {
  ASAN_OPTIONS=detect_leaks=0 "$1" --gtest_list_tests |
    awk '/^[^ ]/ { suite = $1 } /^  / { print suite $1 }'
}

found=no
failed=no
run() {
  found=yes
  echo "+ $*"
  "$@" || failed=yes
}

while IFS=$'\t' read -r -a command; do
  tests=$(tests_of "${command[-1]}" | grep -E -- "$name" | paste -sd :) || true
  if [[ -n $tests ]]; then
    run "${command[@]}" --gtest_filter="$tests" </dev/null
  fi
done <"build/$preset/test_programs"

if ! ctest --test-dir "build/$preset" -N -R "$name" | grep -q '^Total Tests: 0$'; then
  run ctest --test-dir "build/$preset" -R "$name" --output-on-failure
fi

if [[ $found == no ]]; then
  echo "error: no test is named like $name; try a part of the name, in its own case" >&2
  exit 1
fi
[[ $failed == no ]]
