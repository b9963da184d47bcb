#!/usr/bin/env bash
# Usage: man_page_options.sh PAGE PROGRAM
# The page has every command and every option that the program's help has, and no others.
set -euo pipefail

page=$1
program=$2

# The options in a text; \- is the page's hyphen.
options() { sed 's/\\-/-/g' | grep -oE -- '--[a-z][a-z-]*' | LC_ALL=C sort -u; }

# The commands that a help text lists.
commands() { sed -n '/^Commands:/,/^$/s/^  \([a-z]*\) .*/\1/p'; }

all_help() {
  local command below
  "$program" --help
  for command in $("$program" --help | commands); do
    "$program" "$command" --help
    for below in $("$program" "$command" --help | commands); do
      "$program" "$command" "$below" --help
    done
  done
}

diff <(all_help | options) <(options <"$page") || {
  echo "the page's options differ from the help's"
  exit 1
}
for command in $(all_help | commands); do
  sed 's/\\f[BIR]//g' "$page" | grep -w -- "$command" >/dev/null || {
    echo "the page lacks the command $command"
    exit 1
  }
done
