#!/usr/bin/env bash
# Runs a command on an X server of its own: scripts/on_display.sh COMMAND [ARGUMENT...]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
# shellcheck source=scripts/lib/display.sh
source "$here/lib/display.sh"
with_display "$@"
