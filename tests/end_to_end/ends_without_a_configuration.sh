#!/usr/bin/env bash
# A configuration that can be neither read nor written disturbs nobody: no box at the start, a session
# as ever, exit code 0.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

# session HOME
session() {
  export HOME=$1
  start_tool "$PROGRAM" "$BUS"
  press Down
  expect_frame "the input mode" "02 01 00"
  check "no box in $HOME" [ "$(windows)" = 1 ]
  xdotool windowsize "$WINDOW" 520 800 # Something to be kept.
  check "exit code 0 in $HOME" close_tool
}

# Again by itself, where it may mount: a disk of one page, which a file takes up.
if [[ ${3:-} == full ]]; then
  mount -t tmpfs -o size=4k none "$HOME"
  head -c 4096 /dev/zero >"$HOME/filler"
  session "$HOME"
  check "nothing is left of a file that did not fit" [ ! -e "$HOME/.lumadot-tool" ]
  umount "$HOME"
  exit
fi

session "$WORK/nowhere/at/all"
session /proc # Not even root can make a file there.

mkdir -p "$WORK/taken/.lumadot-tool"
session "$WORK/taken"

if unshare --mount true 2>/dev/null; then
  unshare --mount --propagation private "$0" "$@" full
else
  echo "[  SKIPPED ] end_to_end: a home that is full (takes the right to mount)"
fi
