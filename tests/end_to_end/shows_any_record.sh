#!/usr/bin/env bash
# A record full of values that nothing stands for: no message, no assertion box.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$@"

head -c 23 /dev/zero | tr '\0' '\310' >"$LUMADOT_SIM_STORE/settings"
start_tool "$PROGRAM" "$BUS"
check "the record is what was sent" grep -Eq "0x81.* 62( C8){23} " "$LOG"
check "one window" [ "$(windows)" = 1 ]
check "exit code 0" close_tool
