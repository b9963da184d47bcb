#!/usr/bin/env bash
# What "Save Config" stored comes back from the controller in the next run.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

start_tool "$PROGRAM" "$BUS"
press Down Down
expect_frame "the input mode" "02 02 00"
choose_device_item 2
expect_frame "the store command" "01 00"
check "exit code 0" close_tool

start_tool "$PROGRAM" "$BUS"
stored_mode_comes_back() { grep -q '0x81.* 56 34 2E 30 32 62 02 00 ' "$LOG"; }
wait_until "the stored mode is read" stored_mode_comes_back
check "exit code 0" close_tool
