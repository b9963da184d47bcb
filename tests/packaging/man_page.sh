#!/usr/bin/env bash
# Usage: man_page.sh PAGE
# Fails when the formatter has anything to say about the page.
set -euo pipefail

page=$1
if ! command -v groff >/dev/null; then
  echo "SKIPPED: groff is not installed"
  exit 77
fi

complaints=$(groff -man -Tutf8 -ww -rF0 "$page" 2>&1 >/dev/null)
if [[ -n $complaints ]]; then
  echo "$complaints"
  exit 1
fi
