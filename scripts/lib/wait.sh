# shellcheck shell=bash
# Waiting for what must come, and checking what must be. To be sourced.

# wait_until WHAT CONDITION...
# Polls until the condition holds; fails after 30 seconds, or PATIENCE, as on a slow machine.
wait_until() {
  local what=$1 deadline=$((SECONDS + ${PATIENCE:-30}))
  shift
  until "$@"; do
    if ((SECONDS >= deadline)); then
      echo "error: waited ${PATIENCE:-30} s until $what" >&2
      return 1
    fi
    sleep 0.02
  done
}

# check WHAT CONDITION...
# Ends the script unless the condition holds. CHECKS counts those that held.
CHECKS=0
check() {
  local what=$1
  shift
  "$@" || {
    echo "failed: $what" >&2
    exit 1
  }
  CHECKS=$((CHECKS + 1))
}
