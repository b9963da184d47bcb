# shellcheck shell=bash
# Start of the tests of the program: program.sh SIMULATOR. Leaves WORK, a folder, and functions.
set -euo pipefail
SIMULATOR=$1
WORK=$(mktemp -d)
trap end EXIT
end() {
  [[ -z ${PROCESS:-} ]] || kill "$PROCESS" 2>/dev/null
  rm -rf "$WORK"
}

# check WHAT CONDITION...
check() {
  local what=$1
  shift
  "$@" || {
    echo "failed: $what"
    exit 1
  }
}

# wait_until WHAT CONDITION...: polls for 30 seconds at most.
wait_until() {
  local what=$1 deadline=$((SECONDS + 30))
  shift
  until "$@"; do
    ((SECONDS < deadline)) || {
      echo "failed: waited 30 s until $what"
      exit 1
    }
    sleep 0.02
  done
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
