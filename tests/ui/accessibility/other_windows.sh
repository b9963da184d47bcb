#!/usr/bin/env bash
# Other windows as a screen reader is told of them: other_windows.sh viewer|simulator PROGRAM PRINT_TREE
set -euo pipefail
window=$1
program=$2
print_tree=$3
# shellcheck source=scripts/lib/session.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib/session.sh"
work=$(mktemp -d)
trap 'kill "$PROCESS" 2>/dev/null || true; rm -rf "$work"' EXIT
export HOME=$work XDG_CONFIG_HOME=$work/config
unset NO_AT_BRIDGE

# Menus, what only holds other things, and the lists of the choices are left out; so is the port.
tree() {
  "$print_tree" "${program##*/}" | sed 's/port [0-9]*/port N/' |
    grep -Ev '^([a-z]* ?menu|(application|filler|panel|scroll pane|scroll bar|separator) ""|application )'
}

# Compares with standard input, until it is as expected.
expect_tree() {
  cat >"$work/expected"
  wait_until "the tree is as expected" is_as_expected || {
    cat "$work/difference"
    exit 1
  }
}
is_as_expected() {
  diff -u --label expected --label told "$work/expected" <(tree) >"$work/difference"
}

# Tab leads from one to the next of what standard input names. The focus of a choice is on a button inside
# it, which GTK keeps out of the tree: "nothing".
expect_focus() {
  local wanted
  while read -r wanted; do
    press Tab
    wait_until "the focus is on $wanted" has_focus "$wanted"
  done
}
has_focus() {
  local focused
  focused=$("$print_tree" "${program##*/}" --focused)
  [[ ${focused:-nothing} == "$1"* ]]
}

# start ARGUMENT...
start() {
  "$program" "$@" &
  PROCESS=$!
  wait_until "the window is there" window_of "$PROCESS"
  activate "$WINDOW"
}

# A frame of 128 x 32 dots: frame TIME DIGIT
frame() {
  printf '0x%08x\r\n' "$1"
  for _ in {1..32}; do
    printf "%s\r\n" "$(printf "$2%.0s" {1..128})"
  done
  printf '\r\n'
}

viewer() {
  cd "$work"
  { frame 100 1 && frame 200 2; } >"a_lumadot_dump.txt"
  start a_lumadot_dump.txt
  viewer_tree | expect_tree
  expect_focus <<END
slider "Position"
push button "First"
push button "Back"
push button "Play"
push button "Next"
push button "Last"
spin button "Frame"
nothing
check box "Loop"
push button "Mark In"
push button "Mark Out"
push button "Export..."
nothing
push button "Palette File..."
nothing
nothing
nothing
nothing
table "Damaged places and gaps"
panel "Display"
END
  press ctrl+e
  wait_until "the dialog is there" dialog_is_there
  activate "$WINDOW"
  { viewer_tree && export_tree; } | expect_tree
  expect_focus <<END
nothing
spin button "From frame"
spin button "To frame"
spin button "Pixels from dot to dot"
text "File"
push button "Browse..."
END
}

dialog_is_there() {
  WINDOW=$(xdotool search --onlyvisible --name '^Export$' 2>/dev/null | tail -n 1)
  [[ -n $WINDOW ]]
}

viewer_tree() {
  cat <<END
frame "a_lumadot_dump.txt - LUMADOT Viewer"
panel "Display" (Frame 0 at 0:00:00.000)
slider "Position" (0:00:00.000)
push button "First" (The first frame (Home))
push button "Back" (The frame before (Left))
push button "Play" (Play or pause (Space))
push button "Next" (The frame behind (Right))
push button "Last" (The last frame (End))
label "0:00:00.000 of 0:00:00.100"
label "Frame", label-for -> spin button "Frame"
spin button "Frame"
label "of 2"
label "Speed", label-for -> combo box "Speed"
combo box "Speed"
check box "Loop"
push button "Mark In" (The part starts here (I))
push button "Mark Out" (The part ends here (O))
push button "No Marks" (The part is all of it (Backspace))
push button "Export..." (Write pictures, a GIF or a dump (Ctrl+E))
label "All frames"
combo box "Palette"
push button "Palette File..."
combo box "Input mode" (What the recording was made in, if its frames do not tell)
combo box "Shades"
combo box "Scale" (Pixels of the screen from dot to dot)
combo box "Dots"
label "Palette", label-for -> combo box "Palette"
label "Input mode", label-for -> combo box "Input mode"
label "Shades", label-for -> combo box "Shades"
label "Scale", label-for -> combo box "Scale"
label "Dots", label-for -> combo box "Dots"
table "Damaged places and gaps"
table column header "Kind"
table column header "Where"
table column header "What"
panel "Status" (128 x 32 dots; Time stamp 0x00000064; 0 damaged places, 0 gaps)
END
}

export_tree() {
  cat <<END
frame "Export"
combo box "What"
spin button "From frame"
spin button "To frame"
spin button "Pixels from dot to dot"
spin button "Pictures side by side"
combo box "Input mode"
text "File"
push button "Browse..."
push button "Export"
push button "Cancel"
label "What", label-for -> combo box "What"
label "From frame", label-for -> spin button "From frame"
label "To frame", label-for -> spin button "To frame"
label "Pixels from dot to dot", label-for -> spin button "Pixels from dot to dot"
label "Pictures side by side", label-for -> spin button "Pictures side by side"
label "Input mode", label-for -> combo box "Input mode"
label "File", label-for -> text "File"
END
}

simulator() {
  start --port 0 >"$work/port"
  expect_tree <<END
frame "LUMADOT Simulator"
panel "Display"
table "Settings"
table column header "Setting"
table column header "In use"
table column header "After a restart"
$(printf 'table cell "%s"\n' \
    "Input mode" "USB port" "USB port" "Palette" "Palette 0 (VGA)" "Palette 0 (VGA)" "Brightness" 30 30 \
    "Signal Enhancer" On On "Other settings" \
    "15 10 15 12 15 0 15 15 0 0 0 0 0 0 0 0 0 0 1" "15 10 15 12 15 0 15 15 0 0 0 0 0 0 0 0 0 0 1")
table "Files received"
table column header "Name"
table column header "Size"
table "Last commands"
table column header "Command"
table column header "In a row"
label "Settings", label-for -> table "Settings"
label "Files received", label-for -> table "Files received"
label "Last commands", label-for -> table "Last commands"
panel "Status" (LUMADOT, 128 x 32 dots; USB over IP at 127.0.0.1, port N; Nobody attached)
END
  expect_focus <<END
table "Settings"
table "Files received"
table "Last commands"
panel "Display"
table "Settings"
END
}

"$window"
