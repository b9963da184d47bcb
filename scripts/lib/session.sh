# shellcheck shell=bash
# A user's session with the tool on the simulated bus: real keys, and waiting for what they cause.
# To be sourced. The caller sets LOG (the bus log) and is on a display with a window manager.
# shellcheck source=scripts/lib/wait.sh
source "$(dirname "${BASH_SOURCE[0]}")/wait.sh"

# start_tool PROGRAM BUS_FOLDER [ARGUMENT...]
# Starts the program with the simulated bus in place of libusb and waits for its window. When SIMULATOR
# is set, the board is in that program, which is started, too.
start_tool() {
  local program=$1 bus=$2
  shift 2
  rm -f "$LOG"
  if [[ -n ${SIMULATOR:-} ]]; then
    start_simulator
  fi
  LD_LIBRARY_PATH="$bus" LUMADOT_SIM_BOARD="${LUMADOT_SIM_BOARD:-standard}" \
    LUMADOT_SIM_LOG="$LOG" "$program" "$@" &
  TOOL=$!
  wait_until "the window is there" window_is_there
  activate "$WINDOW"
  wait_until "the tool rests" tool_rests
}

# The board's options are those of the simulated bus; without a board nobody listens in the end. It has
# no window, unless SIMULATOR_MODE is empty.
start_simulator() {
  local out board=${LUMADOT_SIM_BOARD:-standard}
  stop_simulator
  out=$(mktemp)
  # shellcheck disable=SC2086  # Empty: no argument.
  "$SIMULATOR" ${SIMULATOR_MODE---headless} --port 0 --board "${board/none/standard}" --state "$LUMADOT_SIM_STORE" \
    --frame-interval "${LUMADOT_SIM_FRAME_MS:-0}" >"$out" &
  SIMULATOR_PROCESS=$!
  wait_until "the simulator listens" grep -q '^port ' "$out"
  LUMADOT_SIM_CONNECT=127.0.0.1:$(sed -n 's/^port //p' "$out")
  export LUMADOT_SIM_CONNECT
  rm "$out"
  if [[ -z ${SIMULATOR_MODE---headless} ]]; then
    # Not later: it would take the keys from the tool.
    wait_until "the simulator's window is there" simulator_is_there
  fi
  if [[ ${LUMADOT_SIM_BOARD:-} == none ]]; then
    stop_simulator
  fi
}

# window_of PROCESS: leaves its window in WINDOW, if it has one yet.
window_of() {
  WINDOW=$(xdotool search --onlyvisible --pid "$1" 2>/dev/null | tail -n 1)
  [[ -n $WINDOW ]]
}

# Brings the simulator's window to the front; it is WINDOW then.
show_simulator() {
  wait_until "the simulator's window is there" simulator_is_there
  activate "$WINDOW"
}

# shown TITLE: the window whose whole title this is; fails if none is shown.
shown() {
  local windows
  windows=$(xdotool search --onlyvisible --name "^$1\$" 2>/dev/null) || true
  echo "${windows%%$'\n'*}"
  [[ -n $windows ]]
}

simulator_is_there() { WINDOW=$(shown 'LUMADOT Simulator'); }

stop_simulator() {
  if [[ -n ${SIMULATOR_PROCESS:-} ]]; then
    kill "$SIMULATOR_PROCESS" 2>/dev/null || true
    wait "$SIMULATOR_PROCESS" || return 1
    SIMULATOR_PROCESS=''
  fi
}

# Not with xdotool's --sync, which waits for ever when the window manager has missed the request.
activate() { wait_until "window $1 is active" is_active "$1"; }

is_active() {
  xdotool windowactivate "$1" 2>/dev/null || return 1
  [[ $(xdotool getactivewindow 2>/dev/null) == "$1" ]]
}

window_is_there() { WINDOW=$(shown 'LUMADOT Spectra'); }

press() { xdotool key --clearmodifiers "$@"; }

sent() { grep -Eq "$1" "$LOG"; }

# expect_frame WHAT BYTES
# Waits until a frame that starts with 81 C3 E7 FF and these bytes has gone to the controller, and
# until the tool has done what it does afterwards: Tab goes astray while controls move.
expect_frame() {
  wait_until "$1 is sent" sent "0x01.*81 C3 E7 FF $2" &&
    wait_until "the tool rests" tool_rests
}

# Whether the tool waits for events: looked at several times, for it may just have been woken.
tool_rests() {
  local state
  for _ in 1 2 3 4 5; do
    read -r _ _ state _ <"/proc/$TOOL/stat"
    [[ $state == S ]] || return 1
    sleep 0.02
  done
}

# Chooses the item at POSITION (1, 2, ...) of the menu "Device" with the keyboard.
choose_device_item() {
  local downs=()
  for ((i = 0; i < $1; i++)); do
    downs+=(Down)
  done
  press F10 Right "${downs[@]}" Return
}

# Closes the window as a user does, and returns the tool's exit code, or that of its simulator.
close_tool() {
  local asked=-1
  wait_until "the tool has ended" ask_to_close || return 1
  wait "$TOOL" && stop_simulator
}

# Once a second: while the window manager takes its keys anew, as it does when the keyboard map
# changes, it misses what is pressed.
ask_to_close() {
  kill -0 "$TOOL" 2>/dev/null || return 0
  if ((SECONDS > asked)); then
    press alt+F4
    asked=$SECONDS
  fi
  return 1
}
