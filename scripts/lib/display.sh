# shellcheck shell=bash
# A private X display for programs with a window. To be sourced.
# shellcheck disable=SC2030,SC2031  # with_display is a subshell, and its helpers run inside it.

# with_display COMMAND...
# Runs the command on a fresh display of 1280x1024 (or LUMADOT_SCREEN) with a window manager, takes both
# down afterwards and returns the exit code of the command.
with_display() (
  logs=$(mktemp -d) || exit 1
  server='' manager=''
  trap 'stop_display' EXIT

  : >"$logs/number"
  # Without -noreset the server starts anew when its last client leaves, and refuses the next one.
  # With -r a key that a busy machine lets go of late is not repeated.
  Xvfb -noreset -r -displayfd 3 -screen 0 "${LUMADOT_SCREEN:-1280x1024x24}" 3>"$logs/number" >"$logs/Xvfb" 2>&1 &
  server=$!
  wait_for Xvfb "$server" has_line "$logs/number" || exit 1
  DISPLAY=":$(<"$logs/number")"
  export DISPLAY GDK_BACKEND=x11 NO_AT_BRIDGE=1 GSETTINGS_BACKEND=memory

  # The first key from xdotool changes the keyboard map under the programs that are running: let it
  # come before they do.
  xdotool key Control_L

  openbox --sm-disable >"$logs/openbox" 2>&1 &
  manager=$!
  wait_for openbox "$manager" has_window_manager || exit 1

  "$@"
)

# What follows belongs to with_display and reads its variables.

stop_display() {
  local process
  for process in $manager $server; do
    kill "$process" 2>/dev/null || true
    wait "$process" 2>/dev/null || true
  done
  rm -rf "$logs"
}

# wait_for PROGRAM PROCESS CONDITION...
# Polls until the condition holds; fails after 30 seconds (or PATIENCE), or when the program has ended.
wait_for() {
  local program=$1 process=$2 deadline=$((SECONDS + ${PATIENCE:-30}))
  shift 2
  until "$@"; do
    if ! kill -0 "$process" 2>/dev/null || ((SECONDS >= deadline)); then
      echo "error: $program did not come up:" >&2
      cat "$logs/$program" >&2
      return 1
    fi
    sleep 0.05
  done
}

# The server writes the display number and a newline: half a number must not be taken for one.
has_line() {
  [[ $(wc -l <"$1") -gt 0 ]]
}

has_window_manager() {
  [[ $(xprop -root _NET_SUPPORTING_WM_CHECK 2>/dev/null) == *'window id'* ]]
}
