#!/usr/bin/env bash
# The tool's window under Wine, with real keys and a real mouse: tests/windows/run_session.sh FOLDER
# FOLDER holds what the zip holds. What the window does is read from the simulated bus's log and the files
# that it leaves. Pictures at 100 % and 200 % are left in build/windows-pictures. Needs a display and a
# running Wine.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
# shellcheck source=scripts/lib/wine.sh
source scripts/lib/wine.sh
# shellcheck source=scripts/lib/session.sh
source scripts/lib/session.sh

program=$1/simulated_bus/lumadot-tool.exe
pictures=build/windows-pictures
work=$(mktemp -d)
trap 'end "$?"' EXIT
end() {
  [[ $1 == 0 ]] || import -window root "$pictures/failed.png"
  rm -rf "$work"
}
LOG=$work/log
foreign="Größe 日本語 🎯"
folder="$work/$foreign"
mkdir -p "$pictures" "$folder" "$work/store"

start() {
  rm -f "$LOG"
  LUMADOT_SIM_BOARD=standard LUMADOT_SIM_FRAME_MS=20 LUMADOT_SIM_STORE=$(windows_name "$work/store") \
  LUMADOT_SIM_TIME=fast LUMADOT_SIM_LOG=$(windows_name "$LOG") /usr/lib/wine/wine64 "$program" &
  TOOL=$!
  wait_until "the window is there" window_is_there
  activate "$WINDOW"
  wait_until "the tool rests" tool_rests
}

dialog_is_there() { DIALOG=$(shown "$1"); }
# Of the same title as the last one.
another_dialog_is_there() {
  local last=$DIALOG
  dialog_is_there "$1" && [[ $DIALOG != "$last" ]] && return 0
  DIALOG=$last
  return 1
}
dialog_has_gone() { ! dialog_is_there "$1"; }

# dialog TITLE: brings it to the front.
dialog() {
  wait_until "the dialog \"$1\" is there" dialog_is_there "$1"
  activate "$DIALOG"
  wait_until "the tool rests" tool_rests
}

# type_into TITLE TEXT: into the text field that has the focus, by the clipboard: no keyboard has all letters.
type_into() {
  dialog "$1"
  printf %s "$2" | xclip -selection clipboard
  press ctrl+a
  press ctrl+v
  press Return
}

# enter TITLE TEXT: the same, and the dialog ends.
enter() {
  type_into "$@"
  wait_until "the dialog \"$1\" has gone" dialog_has_gone "$1"
  activate "$WINDOW"
}

# choose MENU ITEM: their places, from 1 on, as far as separators are passed over.
choose() {
  local keys=(F10) i
  for ((i = 1; i < $1; i++)); do keys+=(Right); done
  for ((i = 0; i < $2; i++)); do keys+=(Down); done
  wait_until "the tool rests" tool_rests
  press "${keys[@]}" Return
}

has_bytes() { [[ $(stat -c %s "$1" 2>/dev/null) == "$2" ]]; }
has_text() { od -An -v -tx1 "$1" | tr -d '\n' | grep -q "$2"; }
has_frames() { [[ $(cat "$folder"/*_lumadot_dump.txt 2>/dev/null | grep -c '^0x') -ge 10 ]]; }
count() { grep -c "$1" "$LOG" || true; }

# has_grown: whether picture 200 is larger than picture 100, nearly twice; fonts come in whole pixels.
has_grown() {
  local small large
  small=$(identify -format '%w %h' "$pictures/100.png")
  large=$(identify -format '%w %h' "$pictures/200.png")
  ((10 * ${large% *} >= 18 * ${small% *} && 10 * ${large#* } >= 18 * ${small#* }))
}

# picture NAME: of the window.
picture() {
  wait_until "the tool rests" tool_rests
  import -window "$WINDOW" "$pictures/$1.png"
}

keys_and_mouse() {
  start
  picture 100
  press Down
  check "the arrow selects the input mode" expect_frame "the input mode" "02 01 00"
  press Tab Tab Tab Down
  check "Tab leads to the palettes" expect_frame "the palette preset" "03 01 00"
  press Tab Tab Tab Tab Tab Right
  check "Tab leads to the brightness" expect_frame "the brightness" "08 00\*12 1F 00"
  # Stern Whitestar, by the mouse.
  xdotool mousemove --window "$WINDOW" 60 158 click 1
  check "a click selects the input mode" expect_frame "the input mode by the mouse" "02 03 00"
}

colours() {
  # The second of the colours, by the mouse; in the dialog the first of the basic ones, a light red.
  xdotool mousemove --window "$WINDOW" 267 180 click 1
  dialog Color
  xdotool mousemove --window "$DIALOG" 20 33 click 1
  press Return
  wait_until "the colour dialog has gone" dialog_has_gone Color
  check "the colour is sent" expect_frame "the colour from the dialog" "04 00 01 00 00 00 FF 80 80"
  activate "$WINDOW"
}

# What was loaded is seen by what the controller then is told to keep.
files() {
  choose 1 4
  enter "Save PAL file" "$(windows_name "$folder/🎯.pal")"
  check "the palette is written" wait_until "the palette is there" has_bytes "$folder/🎯.pal" 56
  check "the palette has the colour" has_text "$folder/🎯.pal" "00 00 00 ff 80 80"
  choose 1 2
  enter "Save Config file" "$(windows_name "$folder/a ä 日.dat")"
  check "the settings are written" wait_until "the settings are there" has_bytes "$folder/a ä 日.dat" 23
  choose 1 1
  enter "Open Config file" "$(windows_name "$folder/a ä 日.dat")" # Which brings the preset back.
  choose 1 3
  enter "Open PAL file" "$(windows_name "$folder/🎯.pal")"
  choose 2 3
  check "the palette is kept" expect_frame "the end of the palette" "12 00"
  check "the palette was the one from the file" \
    [ "$(count 'data=81 C3 E7 FF 04 00 01 00 00 00 FF 80 80')" = 2 ]
}

device() {
  choose 2 1
  dialog "Configuration Loaded"
  check "the settings are read" expect_frame "the request for the settings" "10 00"
  check "the unique id is read" expect_frame "the request for the unique id" "11 00"
  press Return
  wait_until "the box has gone" dialog_has_gone "Configuration Loaded"
  activate "$WINDOW"
  choose 2 2
  check "the settings are kept" expect_frame "the end of the settings" "01 00"
  printf 'x%.0s' {1..600} >"$folder/ü 日.bin"
  choose 2 4
  type_into "Upload File" "$(windows_name "$folder/ü 日.bin")"
  wait_until "the name is asked for" another_dialog_is_there "Upload File"
  activate "$DIALOG"
  press Return
  # In UTF-8: the name that the dialog has offered.
  check "the file is sent under its name" wait_until "the upload is there" \
    sent '0x01.*81 C3 E7 FF .*C3 BC 20 E6 97 A5 2E 62 69 6E'
  dialog Message
  press Return
  wait_until "the box has gone" dialog_has_gone Message
  activate "$WINDOW"
  choose 2 5
  check "the controller is restarted" wait_until "the reset is sent" sent '0x01.*81 C3 E7 FF 00\*2048'
  wait_until "the tool rests" tool_rests
}

about() {
  choose 3 1
  dialog "About LUMADOT Tool"
  press Return
  wait_until "the box has gone" dialog_has_gone "About LUMADOT Tool"
  activate "$WINDOW"
}

# In the last mode, so that there are raw frames, too; it is closed while it goes on.
capture() {
  xdotool mousemove --window "$WINDOW" 60 504 click 1
  # What Wine calls the dialog.
  enter "Select Folder" "$(windows_name "$folder")"
  check "frames are recorded" wait_until "ten frames are in the text file" has_frames
}

close() {
  check "exit code 0" close_tool
  check "every claim was given back" [ "$(count libusb_claim_interface)" = "$(count libusb_release_interface)" ]
}

# As at the first start.
windows reg delete 'HKCU\Software\lumadot-tool' /f >/dev/null 2>&1 || true
keys_and_mouse
colours
files
device
about
capture
close
check "the device was in use" [ "$(count libusb_claim_interface)" -gt 10 ]

set_scale 200
# With the geometry that the session at 100 % has kept.
start
picture 200
check "the window has grown with its contents" has_grown
close_tool
set_scale 100
echo "window: $CHECKS checks passed; pictures: $pictures"
