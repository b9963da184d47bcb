#!/usr/bin/env bash
# A capture into a folder picked in the real dialog; closing the window ends it cleanly.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

cd "$HOME"
export LUMADOT_SIM_TIME=real LUMADOT_SIM_FRAME_MS=20
start_tool "$PROGRAM" "$BUS"
press Down
expect_frame "the input mode" "02 01 00"
press Tab Tab space
capture_into_home
check "exit code 0" close_tool

text=("$HOME"/*_lumadot_dump.txt)
raw=("$HOME"/*_lumadot_dump.raw)
frames=$(grep -c '^0x' "${text[0]}")
check "every frame of the text is whole" [ "$(stat -c %s "${text[0]}")" = $((frames * 4174)) ]
check "every frame of the raw file is whole" [ "$(stat -c %s "${raw[0]}")" = $((8 + frames * 1540)) ]
check "the controller was released" [ "$(grep -c libusb_claim_interface "$LOG")" = \
  "$(grep -c libusb_release_interface "$LOG")" ]
