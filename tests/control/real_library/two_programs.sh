#!/usr/bin/env bash
# Usage: two_programs.sh WINDOW_PROGRAM LUMADOTCTL
# The window and lumadotctl on one bus, with the real USB library: the idle window holds nothing, the one
# that captures is named as the holder.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../end_to_end/common.sh" "$1" ""
CONTROL=$2
ERRORS=$WORK/errors

# Sets OUT, ERR and CODE.
lumadotctl() {
  CODE=0
  OUT=$("$CONTROL" "$@" 2>"$ERRORS") || CODE=$?
  ERR=$(<"$ERRORS")
}

cd "$HOME"
start_tool "$PROGRAM" ""

lumadotctl mode 7
check "a command is done beside the idle window: $ERR" [ "$CODE" = 0 ]
lumadotctl mode
check "the controller has it: $OUT" [ "${OUT%% *}" = 7 ]
press Down
window_has_sent() {
  lumadotctl mode
  [[ $OUT == "1 "* ]]
}
wait_until "the window sends a mode, too" window_has_sent
wait_until "the tool rests" tool_rests

press Tab Tab space
capture_into_home
for arguments in "mode 2" info check "upload $HOME/any" "record $HOME"; do
  touch "$HOME/any"
  # shellcheck disable=SC2086  # Words.
  lumadotctl $arguments
  check "$arguments while the window captures: busy, not $CODE" [ "$CODE" = 5 ]
  check "$arguments names the window: $OUT$ERR" \
    grep -qF "lumadot-tool (process $TOOL) is using the controller." <<<"$OUT$ERR"
done
lumadotctl list
check "list names the window: $OUT" grep -qF "lumadot-tool ($TOOL)" <<<"$OUT"

activate "$WINDOW"
press space
is_free() {
  lumadotctl mode
  [[ $CODE == 0 ]]
}
wait_until "the capture has ended" is_free
check "the mode is the window's: $OUT" [ "${OUT%% *}" = 1 ]
check "exit code 0" close_tool
