#!/usr/bin/env bash
# A settings read that fails at the start: one message, then the window.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

message_is_there() {
  MESSAGE=$(xdotool search --onlyvisible --name '^Error$' 2>/dev/null | head -n 1)
  [[ -n $MESSAGE ]]
}
answer_message() {
  wait_until "the message is there" message_is_there
  activate "$MESSAGE"
  press Return
}
answer_message &
LUMADOT_SIM_FAULT=libusb_bulk_transfer:2:-7 start_tool "$PROGRAM" "$BUS"
wait %1
check "no second message" [ "$(windows)" = 1 ]
check "exit code 0" close_tool
