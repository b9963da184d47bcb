# shellcheck shell=bash
# Start of every end-to-end test: common.sh PROGRAM BUS_FOLDER. Leaves PROGRAM, BUS, LOG, WORK and the
# functions of a session.
set -euo pipefail
# shellcheck disable=SC2034  # For the tests that source this file.
PROGRAM=$1
# shellcheck disable=SC2034
BUS=$2
WORK=$(mktemp -d)
trap 'stop_simulator; rm -rf "$WORK"' EXIT
export LOG=$WORK/usb-log.txt HOME=$WORK/home LUMADOT_SIM_STORE=$WORK/store
export XDG_CONFIG_HOME=$HOME/config
mkdir -p "$HOME" "$LUMADOT_SIM_STORE"
# shellcheck source=scripts/lib/session.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../scripts/lib/session.sh"

# Windows of the tool on the display, the hidden ones left out.
windows() { xdotool search --onlyvisible --pid "$TOOL" --name . | wc -l; }

# Answers the dialog of a capture that has just been ticked with the home folder, and waits for ten frames.
capture_into_home() {
  wait_until "the folder dialog is there" folder_dialog_is_there
  activate "$DIALOG"
  press alt+Home
  wait_until "the home folder is taken" folder_is_taken
  wait_until "ten frames are in the text file" frames_are_there
}
folder_dialog_is_there() { DIALOG=$(shown 'Choose dump directory'); }
folder_is_taken() {
  folder_dialog_is_there || return 0
  press alt+o # "Open" can be pressed once the folder has been read.
  return 1
}
frames_are_there() { [[ $(cat "$HOME"/*_lumadot_dump.txt 2>/dev/null | grep -c '^0x') -ge 10 ]]; }
