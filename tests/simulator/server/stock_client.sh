#!/usr/bin/env bash
# Usage: stock_client.sh SIMULATOR
# The stock client of the kernel's tools lists the device. Exit code 77 (skipped) without it.
set -euo pipefail
# shellcheck source=tests/simulator/server/program.sh
source "$(dirname "${BASH_SOURCE[0]}")/program.sh" "$1"

PATH=$PATH:/usr/sbin # Where Debian has it.
if ! command -v usbip >/dev/null; then
  echo "SKIPPED: usbip is not installed (Debian's package usbip)"
  exit 77
fi

start_simulator --uid 3A7
list=$(usbip --tcp-port "$PORT" list --remote=127.0.0.1 2>&1)
echo "$list"
check "the device is listed" grep -Eq '1-1: .*\(0314:e457\)' <<<"$list"
check "its class is the interface's" grep -q '(Defined at Interface level) (00/00/00)' <<<"$list"
check "its interface is the vendor's own" grep -q '0 - Vendor Specific Class .*(ff/00/00)' <<<"$list"
stop_simulator
