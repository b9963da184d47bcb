# shellcheck shell=bash
# Start of every end-to-end test: common.sh PROGRAM BUS_FOLDER. Leaves PROGRAM, BUS, LOG, WORK and the
# functions of a session.
set -euo pipefail
# shellcheck disable=SC2034  # For the tests that source this file.
PROGRAM=$1
# shellcheck disable=SC2034
BUS=$2
WORK=$(mktemp -d)
trap 'rm -rf "$WORK"' EXIT
export LOG=$WORK/usb-log.txt HOME=$WORK/home LUMADOT_SIM_STORE=$WORK/store
export XDG_CONFIG_HOME=$HOME/config
mkdir -p "$HOME" "$LUMADOT_SIM_STORE"
# shellcheck source=scripts/lib/session.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib/session.sh"

# check WHAT CONDITION...
check() {
  local what=$1
  shift
  "$@" || {
    echo "failed: $what"
    exit 1
  }
}

# Windows of the tool on the display, the hidden ones left out.
windows() { xdotool search --onlyvisible --pid "$TOOL" --name . | wc -l; }
