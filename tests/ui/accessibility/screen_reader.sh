#!/usr/bin/env bash
# The window as a screen reader is told of it: screen_reader.sh PROGRAM BUS_FOLDER PRINT_TREE
# shellcheck source=tests/end_to_end/common.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../end_to_end/common.sh" "$1" "$2"
print_tree=$3
unset NO_AT_BRIDGE

# The lines of the window's controls; the menus' and the list's own are left out.
tree() {
  "$print_tree" lumadot-tool | grep -E '^(radio button|check box|label|push button|combo box|slider) '
}

# expect_tree: compares with standard input.
expect_tree() {
  diff -u --label expected --label told /dev/stdin <(tree)
}

mode_names=("Stern S.A.M." "Stern Whitestar" "Stern Spike" "Data East / Sega" "Premier Gottlieb V1"
  "Premier Gottlieb V2" "Premier Gottlieb V3" "Capcom" "Alvin G" "Spooky" "Data East 128x16" "Inder / SPinball"
  "Sleic / Petaco" "HomePin")

# heads CAPTION: what comes before the modes 2 to 15.
heads() {
  cat <<END
label "PinMame mode with input from :", label-for -> radio button "USB port"
radio button "USB port"
label "Pinball mode with input from :"
radio button "$1"
label "$1", label-for -> radio button "$1"
END
}

# colours PRESET RED GREEN BLUE...: what comes after them.
colours() {
  cat <<END
check box "Signal Enhancer"
check box "Create Dump File"
label "Select Palette", label-for -> combo box "$1"
combo box "$1"
label "Custom Palette"
END
  shift
  local entry
  for ((entry = 0; entry < 16; entry++)); do
    echo "push button \"$entry\" (red $1, green $2, blue $3)"
    shift 3
  done
  echo 'label "Brightness", label-for -> slider ""'
  echo 'slider ""'
}

vga=(0 0 0 128 0 0 255 0 0 255 0 255 0 128 128 0 128 0 0 255 0 0 255 255
  0 0 128 128 0 128 0 0 255 64 64 64 128 128 128 128 128 0 255 255 0 255 255 255)
red=()
for ((shade = 0; shade < 16; shade++)); do
  red+=($((17 * shade)) 0 0)
done

start_tool "$PROGRAM" "$BUS"
{
  heads "Bally/Williams"
  printf 'radio button "%s"\n' "${mode_names[@]}"
  colours "Palette 0 (VGA)" "${vga[@]}"
} | expect_tree
press Tab Tab Tab Down # The next preset: the descriptions follow.
expect_frame "the palette preset" "03 01 00"
{
  heads "Bally/Williams"
  printf 'radio button "%s"\n' "${mode_names[@]}"
  colours "Palette 1 (Red)" "${red[@]}"
} | expect_tree
check "exit code 0" close_tool

# The other board's caption.
LUMADOT_SIM_BOARD=xl LUMADOT_SIM_UID=S1 start_tool "$PROGRAM" "$BUS"
tree >"$WORK/tree"
head -n 5 "$WORK/tree" | diff -u --label expected --label told <(heads "Sega192x64") -
check "exit code 0" close_tool
