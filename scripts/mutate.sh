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
build=build/mutate/build

copy_tree() {
  rm -rf "$tree"
  mkdir -p "$tree"
  git ls-files -z --cached --others --exclude-standard | xargs -0 cp --parents -p -t "$tree"
}

# replace FILE FROM TO: exactly one place, as it stands but for \n.
replace() {
  FROM=${2//\\n/$'\n'} TO=${3//\\n/$'\n'} perl -0pi -e '
    $n = s/\Q$ENV{FROM}\E/$ENV{TO}/g;
    END { exit($n == 1 ? 0 : 1) }' "$1"
}

# The programs, one after the other, until one fails.
caught_by() {
  local program path
  for program in "$@"; do
    if ! cmake --build "$build" --target "$program" >build/mutate/build.log 2>&1; then
      echo "the compiler"
      return
    fi
    path=$(find "$build" -type f -name "$program" -perm -u+x | head -n 1)
    if ! (cd "$tree" && LC_ALL=C.UTF-8 timeout 120 "../../../$path") >build/mutate/test.log 2>&1; then
      echo "$program"
      return
    fi
  done
}

run_all() {
  local number=0 survived=0 file programs from to saved by
  while IFS=$'\t' read -r file programs from to; do
    [[ -z $file || $file == \#* ]] && continue
    number=$((number + 1))
    ((number < first || number > last)) && continue
    saved=$(mktemp)
    cp -p "$tree/$file" "$saved"
    if replace "$tree/$file" "$from" "$to"; then
      # shellcheck disable=SC2086  # A list of programs.
      by=$(caught_by $programs)
    else
      by=''
      from="(not exactly once in the file) $from"
    fi
    cp "$saved" "$tree/$file" # With a new time, so that it is built again.
    rm "$saved"
    if [[ -n $by ]]; then
      echo "$number caught by $by: $file: $from -> $to"
    else
      echo "$number SURVIVED: $file: $from -> $to"
      survived=$((survived + 1))
    fi
  done <"$list"
  echo "$number mutations in the list, $survived not caught"
  return $((survived > 0))
}

if [[ ${LUMADOT_ON_DISPLAY:-} != yes ]]; then
  need_packages "${BUILD_PACKAGES[@]}" "${TEST_PACKAGES[@]}"
  copy_tree
  cmake -S "$tree" -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_FLAGS_DEBUG=-O0 >/dev/null
  cmake --build "$build" >build/mutate/build.log
  LUMADOT_ON_DISPLAY=yes exec scripts/on_display.sh "$0" "$@"
fi
run_all
