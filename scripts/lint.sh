#!/usr/bin/env bash
# Formatting and static analysis of everything in the repository; all checks run, then it fails if one of
# them did. scripts/lint.sh MINUTES ends clang-tidy after that time: the files that were changed last come
# first, and it says how many it has left out.
set -euo pipefail

cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
. scripts/lib/packages.sh

deadline=${1:+$(($(date +%s) + $1 * 60))}
sources=(accessibility app control device display pictures platform recording ui simulator viewer)

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

# newest_first PATTERN... : the files, those that are not committed or were changed last first.
newest_first() {
  {
    git ls-files --modified --others --exclude-standard -- "$@"
    git log --format= --name-only -- "$@" 2>/dev/null
    git ls-files -- "$@"
  } | awk '!seen[$0]++' | while read -r file; do [[ ! -e $file ]] || echo "$file"; done
}

# tidy FILE: the compiler flags are those of the preset lint, for which nothing needs to be built.
tidy() {
  local configuration=.clang-tidy
  if [[ -n $deadline ]] && (($(date +%s) >= deadline)); then
    echo "$1" >>build/lint/left_out
    return
  fi
  [[ $1 =~ ^(tests|fuzz|bench)/ ]] && configuration=tests/.clang-tidy
  clang-tidy -p build/lint --quiet --config-file="$configuration" "$1"
}

check_clang_tidy() {
  local result=0
  cmake --preset lint >/dev/null || return
  rm -f build/lint/left_out
  # shellcheck disable=SC2016  # The inner shell's $1.
  newest_first "${sources[@]/%//*.cpp}" 'tests/*.cpp' 'fuzz/*.cpp' 'bench/*.cpp' |
    xargs -n 1 -P "$(nproc)" bash -c 'tidy "$1"' tidy || result=1
  if [[ -e build/lint/left_out ]]; then
    echo "clang-tidy: time is up, $(wc -l <build/lint/left_out) files left out, see build/lint/left_out"
  fi
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

export deadline
export -f tidy
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
