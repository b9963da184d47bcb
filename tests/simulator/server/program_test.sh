#!/usr/bin/env bash
# Usage: program_test.sh SIMULATOR VERSION MAN_PAGE
# The program: its exit codes and messages, its log, its state, and its rest.
# shellcheck source=tests/simulator/server/program.sh
source "$(dirname "${BASH_SOURCE[0]}")/program.sh" "$1"
version=$2
page=$3

# ends CODE OPTION...: what it prints is left in TEXT.
ends() {
  local wanted=$1 result=0
  shift
  TEXT=$("$SIMULATOR" "$@" 2>&1) || result=$?
  check "exit code $wanted, not $result: $*" [ "$result" = "$wanted" ]
}
ends 0 --version
check "the version" [ "$TEXT" = "lumadot-simulator $version" ]
ends 0 --help
options=$(grep -o -- '--[a-z-]*' <<<"$TEXT" | sort -u)
for option in headless listen port board layout windows-descriptors uid state log fault; do
  check "--$option is in the help" grep -qx -- "--$option" <<<"$options"
done
check "the man page has the same options" diff <(echo "$options") \
  <(sed 's/\\-/-/g' "$page" | grep -oE -- '^\.B.* --[a-z-]*' | grep -o -- '--[a-z-]*' | sort -u)
ends 2 --headless --fault out:1:explode
check "the message names what it does not understand" grep -q 'out:1:explode' <<<"$TEXT"
ends 1 --headless --port 0 --log "$WORK/no/such/folder/log"
check "the message names the log" grep -q 'no/such/folder/log; give another --log' <<<"$TEXT"
touch "$WORK/file"
ends 1 --headless --port 0 --state "$WORK/file/folder"
check "the message names the folder" grep -q 'file/folder: .*; give another --state' <<<"$TEXT"

# ask BYTES...: sends them to the simulator and reads what it answers, as hexadecimal digits, until
# there are COUNT bytes.
ask() {
  local count=$1
  shift
  printf '%b' "$@" >&3
  head -c "$count" <&3 | od -An -v -tx1 | tr -d ' \n'
}
import='\x01\x11\x80\x03\0\0\0\x001-1\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0\0'
write='\0\0\0\x01\0\0\0\x05\0\x01\0\x02\0\0\0\0\0\0\0\x01\0\0\0\0\0\0\x08\x04\0\0\0\0\xff\xff\xff\xff\0\0\0\0\0\0\0\0\0\0\0\0'
zeros() { printf '%*s' "$1" '' | sed 's/ /\\0/g'; }

start_simulator --log "$WORK/log" --state "$WORK/state/deep" --fault out:3:stall
ends 1 --headless --port "$PORT"
check "the message says that the port is taken" grep -q "port $PORT: .*; give another --port" <<<"$TEXT"

exec 3<>"/dev/tcp/127.0.0.1/$PORT"
check "the import is granted" [ "$(ask 320 "$import" | head -c 16)" = 0111000300000000 ]
for frame in '\x02\x09' '\x01\0' '\x02\x04'; do
  ask 48 "$write" '\x81\xc3\xe7\xff' "$frame" "$(zeros 2046)" >/dev/null
done
exec 3<&-
cat >"$WORK/expected" <<'END'
{"ep":1,"len":2052,"data":"81c3e7ff0209","zeros":2046}
{"ep":1,"len":2052,"data":"81c3e7ff01","zeros":2047}
{"ep":1,"len":0,"data":"","zeros":0,"error":"stall"}
END
check "the log has a line for each transfer" diff "$WORK/expected" "$WORK/log"
check "the settings are kept" [ "$(od -An -N1 -tu1 "$WORK/state/deep/settings")" -eq 9 ]

exec 3<>"/dev/tcp/127.0.0.1/$PORT"
ask 1 'GET / HTTP/1.0\r\n' >/dev/null
exec 3<&-
check "what clients do wrong is said" grep -q '127.0.0.1:[0-9]*: unknown protocol version' "$WORK/errors"

# At rest it does nothing: the clock ticks that it has used in two seconds, at 100 a second.
ticks() { awk '{ print $14 + $15 }' "/proc/$PROCESS/stat"; }
exec 3<>"/dev/tcp/127.0.0.1/$PORT"
ask 320 "$import" >/dev/null
before=$(ticks)
sleep 2 # The measure, not a wait.
used=$(($(ticks) - before))
echo "idle with a client attached: $used ticks in 2 s"
check "under 1 % of a core at rest" [ "$used" -le 2 ]
exec 3<&-
stop_simulator

start_simulator
kill -INT "$PROCESS"
wait "$PROCESS"
PROCESS=''
