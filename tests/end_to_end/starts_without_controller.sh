#!/usr/bin/env bash
# Without a controller the window opens, shows no message, and works.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

LUMADOT_SIM_BOARD=none start_tool "$PROGRAM" "$BUS"
check "one window" [ "$(windows)" = 1 ]
enumerations=$(grep -c libusb_get_device_list "$LOG")
press Down
more_enumerations() { [[ $(grep -c libusb_get_device_list "$LOG") -gt $enumerations ]]; }
wait_until "the controller is looked for again" more_enumerations
check "nothing is transferred" [ "$(grep -c bulk "$LOG")" = 0 ]
check "exit code 0" close_tool
