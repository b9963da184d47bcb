#!/usr/bin/env bash
# Usage: run_or_skip.sh TOOL ARGUMENTS...
# Runs the tool; exit code 77 (skipped) when it is not installed.
set -euo pipefail

if ! command -v "$1" >/dev/null; then
  echo "SKIPPED: $1 is not installed"
  exit 77
fi
exec "$@"
