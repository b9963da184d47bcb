#!/usr/bin/env bash
# Formatting and static analysis of everything in the repository; all checks run, then it fails if
# one of them did.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
. scripts/lib/packages.sh

sources=(app control device display pictures recording ui simulator)

# files PATTERN... : tracked and new files, ended by zero bytes.
files() {
  git ls-files -z --cached --others --exclude-standard -- "$@"
}

check_format() {
  files '*.cpp' '*.h' | xargs -0 -r clang-format --dry-run -Werror
}

check_layers() {
  scripts/check_layers.sh
}

# tidy CONFIGURATION PATTERN... : clang-tidy over the files; the compiler flags are those of the preset lint,
# for which nothing needs to be built.
tidy() {
  files "${@:2}" | xargs -0 -r -n 1 -P "$(nproc)" clang-tidy -p build/lint --quiet --config-file="$1"
}

check_clang_tidy() {
  local result=0
  cmake --preset lint >/dev/null || return
  tidy .clang-tidy "${sources[@]/%//*.cpp}" || result=1
  tidy tests/.clang-tidy 'tests/*.cpp' 'fuzz/*.cpp' 'bench/*.cpp' || result=1
  return $result
}

check_cppcheck() {
  cppcheck --quiet --std=c++20 --language=c++ --library=wxwidgets -I . \
    --enable=warning,performance,portability --inline-suppr --error-exitcode=1 \
    "${sources[@]}" fuzz bench
}

check_shell() {
  local indentation=(-i 2 -ci)
  files '*.sh' '.ci/run' | xargs -0 -r shfmt "${indentation[@]}" -d &&
    files '*.sh' '.ci/run' | xargs -0 -r shellcheck -x
}

need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}" "${LINT_PACKAGES[@]}"

failed=()
for check in format layers clang_tidy cppcheck shell; do
  echo "== $check"
  "check_$check" || failed+=("$check")
done
if ((${#failed[@]} > 0)); then
  echo "lint failed: ${failed[*]}" >&2
  exit 1
fi
