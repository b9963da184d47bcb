# shellcheck shell=bash
# Start of the tests of the program: program.sh SIMULATOR. Leaves WORK, a folder, and functions.
set -euo pipefail
SIMULATOR=$1
# shellcheck source=scripts/lib/wait.sh
source "$(dirname "${BASH_SOURCE[0]}")/../../../scripts/lib/wait.sh"
WORK=$(mktemp -d)
trap end EXIT
end() {
  [[ -z ${PROCESS:-} ]] || kill "$PROCESS" 2>/dev/null
  rm -rf "$WORK"
}

# start_simulator OPTION...: on a port of its own, headless unless MODE says otherwise; leaves PROCESS and PORT.
start_simulator() {
  rm -f "$WORK/out" # What the one before has said.
  # shellcheck disable=SC2086  # Empty: no argument.
  "$SIMULATOR" ${MODE---headless} --port 0 "$@" >"$WORK/out" 2>"$WORK/errors" &
  PROCESS=$!
  wait_until "it listens" grep -qs '^port ' "$WORK/out"
  PORT=$(sed -n '1s/^port //p' "$WORK/out")
  check "the first line is the port" [ -n "$PORT" ]
}

# Ends it as a system does, and expects that it ends well.
stop_simulator() {
  kill "$PROCESS"
  local result=0
  wait "$PROCESS" || result=$?
  PROCESS=''
  check "exit code 0 on SIGTERM, not $result" [ "$result" = 0 ]
}
