#!/usr/bin/env bash
# Arguments are ignored; each action of the user reaches the controller; closing sends nothing.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

start_tool "$PROGRAM" "$BUS" --no-such-option -x file.dat
press Down
expect_frame "the input mode" "02 01 00"
press Tab Tab Tab Down
expect_frame "the palette preset" "03 01 00"
press Tab Tab Tab Tab Tab Right
expect_frame "the brightness" "08 00\*12 1F 00"
choose_device_item 3
expect_frame "the end of the palette" "12 00"
transfers=$(grep -c bulk "$LOG")
check "exit code 0" close_tool
check "closing sends nothing" [ "$(grep -c bulk "$LOG")" = "$transfers" ]
