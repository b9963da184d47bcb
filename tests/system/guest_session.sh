#!/usr/bin/env bash
# Runs as the ordinary user inside the guest, on a display: guest_session.sh everything|silent|unplug LOG
# The unmodified tool with the real libusb; LOG is the simulator's.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
part=$1
LOG=$2
# shellcheck source=scripts/lib/session.sh
source "$here/scripts/lib/session.sh"
cd "$HOME"
trap 'import -window root "${LOG%/*}/screen.png"' EXIT
say() { echo "[user $((SECONDS))s] $*"; }

logged() { grep -q "$1" "$LOG"; }
# expect_message WHAT HEX: a frame that starts 81 C3 E7 FF and goes on like that has arrived. A
# quotation mark stands for zeros to its end.
expect_message() {
  wait_until "$1 arrives" logged "\"data\":\"81c3e7ff$2"
  say "$1"
  wait_until "the tool rests" tool_rests
}

# dialog TITLE: waits for it and makes it the active one.
dialog() {
  wanted=$1
  wait_until "the dialog \"$1\" is there" dialog_is_there
  activate "$DIALOG"
}
dialog_is_there() {
  DIALOG=$(xdotool search --onlyvisible --name "^$wanted\$" 2>/dev/null | grep -vx "${LAST:-}" | head -n 1)
  [[ -n $DIALOG ]]
}

# A message box has no title to look for.
message_is_there() {
  local active
  active=$(xdotool getactivewindow 2>/dev/null) && [[ $active != "$WINDOW" ]]
}

start() {
  "$here/lumadot-tool" &
  TOOL=$!
  wait_until "the window is there" window_is_there
  activate "$WINDOW"
  wait_until "the settings and the unique id are read" logged '"data":"81c3e7ff11"'
  wait_until "the tool rests" tool_rests
  say "the tool has found the controller and read its settings"
}

start_capture() {
  press Down
  expect_message "the input mode" '0201"'
  press Tab Tab space
  dialog 'Choose dump directory'
  press alt+Home
  wait_until "the home folder is taken" folder_is_taken
}
folder_is_taken() {
  dialog_is_there || return 0
  press alt+o
  sleep 1
  return 1
}
frames() { cat "$HOME"/*_lumadot_dump.txt 2>/dev/null | grep -c '^0x'; }
frames_reach() { [[ $(frames) -ge $1 ]]; }

everything() {
  head -c 65536 /dev/urandom >"$HOME/upload.bin"
  start
  choose_device_item 3
  expect_message "the palette preset" '03"'
  expect_message "the palette" 0400010000008000
  expect_message "the palette's store command" '12"'

  choose_device_item 4
  dialog 'Upload File'
  press ctrl+l
  xdotool type --delay 100 "$HOME/upload.bin"
  press Return
  LAST=$DIALOG
  dialog 'Upload File'
  press Return
  LAST=''
  wait_until "the end of the upload arrives" logged '"data":"81c3e7ff0aff"'
  wait_until "the tool says so" message_is_there
  press Return
  wait_until "the message has gone" is_active "$WINDOW"
  say "the upload"

  start_capture
  wait_until "50 frames are in the text file" frames_reach 50
  say "$(frames) frames"
  close_tool
}

# The first reply never comes: the real library gives up, and the kernel takes the request back.
silent() {
  "$here/lumadot-tool" &
  TOOL=$!
  dialog 'Error'
  press Return
  wait_until "the window is there" window_is_there
  wait_until "the kernel takes the request back" logged '"error":"unlinked"'
  activate "$WINDOW"
  press Down
  expect_message "the input mode" '0201"'
  close_tool
}

# The controller is pulled out in the middle of a capture. The tool goes on looking for it, and
# closes as ever.
unplug() {
  rm -f "$HOME"/*_lumadot_dump.*
  start
  start_capture
  wait_until "the controller is pulled out" logged '"error":"unplugged"'
  say "pulled out after $(frames) frames"
  frames_reach 1
  close_tool
  say "the tool has ended with exit code 0"
}

"$part"
