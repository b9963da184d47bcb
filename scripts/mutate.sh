#!/usr/bin/env bash
# Breaks the product one line at a time and says which test program notices:
# scripts/mutate.sh [FIRST [LAST]], all of tests/mutations.txt unless numbers are given.
# Works on a copy in build/mutate; fails when a mutation is caught by none of its programs.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

list=build/mutate/tree/tests/mutations.txt # The copy, which nobody edits meanwhile.
first=${1:-1}
last=${2:-9999}
tree=build/mutate/tree

# build_of PROGRAM: the folder that it is built in; with the sanitizers if it stands behind asan/.
build_of() {
  if [[ $1 == asan/* ]]; then echo build/mutate/asan; else echo build/mutate/build; fi
}

copy_tree() {
  rm -rf "$tree"
  mkdir -p "$tree"
  git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -p -t "$tree"
  # The last run may have left any of them built with a mutation.
  grep -v '^#' "$list" | cut -f 1 | sort -u | (cd "$tree" && xargs touch)
}

# replace FILE FROM TO: exactly one place, as it stands but for \n.
replace() {
  FROM=${2//\\n/$'\n'} TO=${3//\\n/$'\n'} perl -0pi -e '
    $n = s/\Q$ENV{FROM}\E/$ENV{TO}/g;
    END { exit($n == 1 ? 0 : 1) }' "$1"
}

limit=300 # seconds for a test program

# build PROGRAM
build() {
  cmake --build "$(build_of "$1")" --target "${1#asan/}" >build/mutate/build.log 2>&1
}

# passes PROGRAM: runs it as it was built last. 124: it took too long.
passes() {
  local path
  path=$(find "$(build_of "$1")" -type f -name "${1#asan/}" -perm -u+x | head -n 1)
  [[ -n $path ]] || { echo "no test program $1" >&2 && exit 1; }
  (cd "$tree" && GTEST_FAIL_FAST=1 LC_ALL=C.UTF-8 LSAN_OPTIONS=suppressions=tests/support/leaks.supp \
    timeout "$limit" "../../../$path") >build/mutate/test.log 2>&1
}

# caught_by PROGRAM...: the first that fails.
caught_by() {
  local program result
  for program in "$@"; do
    build "$program" || return 1
    result=0
    passes "$program" || result=$?
    case $result in
      0) ;;
      124) echo "the time limit of $program" && return ;;
      *) echo "$program" && return ;;
    esac
  done
}

# The list's lines FIRST to LAST, behind their numbers.
chosen() {
  grep -v -e '^#' -e '^$' "$list" | awk -v first="$first" -v last="$last" \
    'NR >= first && NR <= last { print NR "\t" $0 }'
}

# What fails without a mutation catches nothing.
check_programs() {
  local program
  for program in $(chosen | cut -f 3 | tr ' ' '\n' | sort -u); do
    build "$program" || { echo "$program does not build; see build/mutate/build.log" && exit 1; }
    passes "$program" || { echo "$program fails as it is; see build/mutate/test.log" && exit 1; }
  done
}

run_all() {
  local number file programs from to saved by survived=0
  while IFS=$'\t' read -r number file programs from to; do
    saved=$(mktemp)
    cp -p "$tree/$file" "$saved"
    by=''
    if ! replace "$tree/$file" "$from" "$to"; then
      from="(not exactly once in the file) $from"
    else
      # shellcheck disable=SC2086  # A list of programs.
      by=$(caught_by $programs) || from="(does not build) $from"
    fi
    cp "$saved" "$tree/$file" # With a new time, so that it is built again.
    rm "$saved"
    if [[ -n $by ]]; then
      echo "$number caught by $by: $file: $from -> $to"
    else
      echo "$number SURVIVED: $file: $from -> $to"
      survived=$((survived + 1))
    fi
  done < <(chosen)
  echo "$(chosen | wc -l) mutations, $survived not caught, $((SECONDS / 60)) minutes"
  return $((survived > 0))
}

if [[ ${LUMADOT_ON_DISPLAY:-} != yes ]]; then
  need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
  copy_tree
  cmake -S "$tree" -B "$(build_of plain)" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 >/dev/null
  if chosen | cut -f 3 | grep -q asan/; then
    cmake -S "$tree" -B "$(build_of asan/)" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DLUMADOT_SANITIZE=ON >/dev/null
  fi
  LUMADOT_ON_DISPLAY=yes exec scripts/on_display.sh "$0" "$@"
fi
check_programs
run_all
