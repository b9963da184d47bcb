#!/usr/bin/env bash
# Usage: terminal.sh PROGRAM BUS_FOLDER
# What a person sees on a terminal, and does not in a file: the bar of an upload, the counts of a recording.
set -euo pipefail

program=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LD_LIBRARY_PATH=$2 LUMADOT_SIM_BOARD=standard LUMADOT_SIM_TIME=real
cd "$work"
head -c 60000000 /dev/zero >table.bin

# on_terminal COMMAND...: what it writes to one, its carriage returns as line ends.
on_terminal() { script -qec "$*" /dev/null </dev/null | tr '\r' '\n'; }

if ! command -v script >/dev/null; then
  echo "SKIPPED: script is not installed"
  exit 77
fi

expect() {
  grep -Eq -- "$1" <<<"$2" || {
    printf 'not found: %s\n%s\n' "$1" "$2"
    exit 1
  }
}

shown=$(on_terminal "$program" upload table.bin)
expect '^table.bin  \[-{20}\]  0 %  .*/s  -:-- left' "$shown"
expect '^table.bin  \[#+-*\]  [0-9]+ %  .*/s  [0-9]+:[0-9]{2} left' "$shown"
expect '^Uploaded "table.bin" as "table.bin": 60000000 bytes in ' "$shown"
[[ $(on_terminal "$program" --quiet upload table.bin) == '' ]]
[[ $("$program" upload table.bin 2>&1 | wc -l) == 1 ]]

shown=$(on_terminal "$program" record --seconds 1.2)
expect '^Recording; Ctrl-C ends it' "$shown"
expect '^[0-9]+ frames in 0\.[0-9] s .* 0 refused, 0 lost *$' "$shown"
expect '^[0-9]+ frames in 1\.[0-9] s .* 0 lost: \./[0-9_]+_lumadot_dump.txt' "$shown"
