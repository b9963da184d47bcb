#!/usr/bin/env bash
# The real USB library, kept from watching for devices as some sandboxes do: its initialisation fails,
# and the window opens as without a controller.
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/common.sh" "$1" "$2"
preloaded=$3

# What is preloaded comes before a sanitizer's library, which works all the same.
export ASAN_OPTIONS=verify_asan_link_order=0
LD_PRELOAD="$preloaded" start_tool "$PROGRAM" /nonexistent
check "one window" [ "$(windows)" = 1 ]
press Down # An operation more.
wait_until "the tool rests" tool_rests
check "exit code 0" close_tool
