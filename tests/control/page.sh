#!/usr/bin/env bash
# Usage: page.sh PAGE LUMADOTCTL BUS_FOLDER
# Runs the examples of a page, "```console [NAME=VALUE...]", each on a simulated controller and in a folder
# of its own: the lines that start with "$ " are commands, the others what they print. Times and the names
# of dump files count as equal. Then the recipes, "```sh NAME".
set -euo pipefail

page=$1
program=$2
bus=$3
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
mkdir "$work/bin"
ln -s "$program" "$work/bin/lumadotctl"
export PATH=$work/bin:$PATH LD_LIBRARY_PATH=$bus

fail() {
  echo "failed: $1"
  exit 1
}

# use_board NAME=VALUE...: the bus as a block wants it, and an empty folder with what the examples need.
use_board() {
  export LUMADOT_SIM_BOARD=standard LUMADOT_SIM_FAULT='' LUMADOT_SIM_LOG=''
  local setting
  for setting in "$@"; do
    case $setting in
      board=*) LUMADOT_SIM_BOARD=${setting#*=} ;;
      fault=*) LUMADOT_SIM_FAULT=${setting#*=} ;;
      *) fail "unknown setting $setting" ;;
    esac
  done
  rm -rf "$work/here"
  mkdir -p "$work/here/dumps"
  cd "$work/here"
  printf '\5\5\17\12\17\14\17\0\17\17\0\0\0\0\0\0\0\0\0\0\1\0\310' >cyan.dat
  head -c 1100 /dev/zero >intro.txt
  ball >ball.txt
}

# A recording of 40 frames, 40 ms apart: a dot that crosses the display.
ball() {
  awk 'BEGIN {
    row = sprintf("%128s", ""); gsub(/ /, "0", row)
    for (frame = 0; frame < 40; frame++) {
      printf "0x%08x\r\n", 100000 + 40 * frame
      for (y = 0; y < 32; y++)
        printf "%s\r\n", y == 16 ? substr(row, 1, 3 * frame) "3" substr(row, 3 * frame + 2) : row
      printf "\r\n"
    }
  }'
}

# What differs from run to run.
without_times() {
  sed -E 's/[0-9]+\.[0-9]+ (s|a second)/TIME \1/g; s/\([0-9.]+ ([kMG]B|bytes)\/s\)/(RATE)/g
    s/[0-9]{6}_[0-9]{6}_/STAMP_/g'
}

# run_block NUMBER SETTING...: the block's lines come on standard input.
run_block() {
  local number=$1 line
  shift
  use_board "$@"
  : >"$work/expected"
  : >"$work/found"
  while IFS= read -r line; do
    echo "$line" >>"$work/expected"
    if [[ $line == '$ '* ]]; then
      echo "$line" >>"$work/found"
      bash -c "${line#\$ }" >>"$work/found" 2>&1 </dev/null || true
    fi
  done
  diff <(without_times <"$work/expected") <(without_times <"$work/found") ||
    fail "block $number of $page"
}

# block KIND NUMBER: the lines of the page's block with this number among those of its kind.
block() {
  awk -v start="\`\`\`$1" -v wanted="$2" '
    /^```/ && inside { exit }
    index($0, start) == 1 && ++count == wanted { inside = 1; next }
    inside' "$page"
}

count=0
while IFS= read -r header; do
  count=$((count + 1))
  read -r -a words <<<"$header"
  run_block "$count" "${words[@]:1}" < <(block console "$count")
done < <(grep '^```console' "$page")
[[ $count -ge 20 ]] || fail "only $count examples"

# recipe NAME: the script, ready to run.
recipe() {
  awk -v start="\`\`\`sh $1" '/^```/ { inside = $0 == start; next } inside' "$page" >"$work/bin/$1"
  chmod +x "$work/bin/$1"
  [[ -s $work/bin/$1 ]] || fail "no recipe $1"
  if command -v shellcheck >/dev/null; then
    shellcheck "$work/bin/$1"
  fi
}

frames() { grep -o '81 C3 E7 FF 0[0-9A-F] [0-9A-F][0-9A-F]' "$LUMADOT_SIM_LOG" | cut -d ' ' -f 5-; }

recipe start-table
use_board board=standard
export HOME=$work/here LUMADOT_SIM_LOG=$work/log
mkdir palettes
lumadotctl --quiet palette --write palettes/mars.pal --preset red
[[ $(start-table mars echo started) == started ]] || fail "start-table"
[[ $(frames) == $'02 00\n04 00' ]] || fail "start-table: palette"
rm "$work/log"
start-table venus true
[[ $(frames) == $'02 00\n03 08' ]] || fail "start-table: preset"
[[ $(LUMADOT_SIM_BOARD=none start-table mars echo started 2>/dev/null) == started ]] ||
  fail "start-table without controller"

recipe backup-settings
use_board board=standard
today=$(date +%Y-%m-%d).dat
backup-settings
cmp "lumadot-backup/$today" lumadot-backup/latest.dat
rm "lumadot-backup/$today"
backup-settings
[[ ! -e lumadot-backup/$today ]] || fail "backup-settings: nothing had changed"

# The profile's two commands, as the service runs them.
use_board board=standard
mkdir -p etc
cp cyan.dat etc/profile.dat
lumadotctl --quiet palette --write etc/profile.pal --preset red
sed -n 's/^ExecStart=\/usr\/bin\///p' "$page" | sed "s,/etc/lumadot,$PWD/etc," >profile
[[ $(wc -l <profile) == 2 ]] || fail "the profile's commands"
bash -e profile 2>/dev/null
