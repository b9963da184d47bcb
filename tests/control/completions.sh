#!/usr/bin/env bash
# Usage: completions.sh PROGRAM
# The completion scripts in the shells themselves: each shell is asked what it would offer.
set -euo pipefail

program=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
ln -s "$program" "$work/lumadotctl"
export PATH=$work:$PATH
cd "$work"
touch a.pal
mkdir dumps

# expect SHELL TYPED OFFERED...: each of them is among what is offered; "!X": X is not.
expect() {
  local shell=$1 typed=$2 found wanted holds
  shift 2
  found=$("offered_by_$shell" "$typed")
  for wanted in "$@"; do
    holds=false
    grep -qxF -- "${wanted#!}" <<<"$found" && holds=true
    if [[ $wanted == !* ]]; then
      if $holds; then holds=false; else holds=true; fi
    fi
    $holds || {
      printf '%s, "%s": %s; offered:\n%s\n' "$shell" "$typed" "$wanted" "$found"
      exit 1
    }
  done
}

offered_by_bash() {
  # shellcheck disable=SC2016  # For the other shell.
  bash -c '
    compopt() { :; } # Needs a line that is being typed.
    source <(lumadotctl completion bash)
    [[ $(complete -p lumadotctl) == "complete -F _lumadotctl lumadotctl" ]] || exit 1
    IFS=" " read -ra COMP_WORDS <<<"$1"
    [[ $1 == *" " ]] && COMP_WORDS+=("")
    COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
    _lumadotctl
    printf "%s\n" "${COMPREPLY[@]}"' bash "$1"
}

# The completion system takes part as far as it goes without a line that is being typed.
offered_by_zsh() {
  # shellcheck disable=SC2016
  zsh -fc '
    autoload -U compinit && compinit -u -D
    source <(lumadotctl completion zsh)
    [[ ${_comps[lumadotctl]} == _lumadotctl ]] || exit 1
    compadd() {
      local -a offered=("${@[2,-1]}")
      [[ ${@[-2]} == -a ]] && offered=("${(@P)@[-1]}")
      print -rl -- $offered
    }
    _describe() { print -rl -- "${(@)${(@P)@[-1]}%%:*}"; }
    _files() { [[ $1 == -/ ]] && print -rl -- *(/) || print -rl -- *; }
    words=("${(@s. .)1}")
    CURRENT=$#words
    _lumadotctl' zsh "$1"
}

# Some versions of fish put backslashes in front of blanks here, some when the word is taken.
offered_by_fish() {
  # shellcheck disable=SC2016
  fish -c 'source (lumadotctl completion fish | psub); complete -C "$argv[1]"' "$1" | cut -f 1 |
    sed 's,/$,,; s,\\,,g'
}

for shell in bash zsh fish; do
  if ! command -v "$shell" >/dev/null; then
    echo "[  SKIPPED ] control.completions: $shell is not installed"
    continue
  fi
  expect "$shell" 'lumadotctl ' list check info mode settings record completion
  expect "$shell" 'lumadotctl --' --json --device --dry-run --version
  expect "$shell" 'lumadotctl settings ' save load show diff '!list'
  expect "$shell" 'lumadotctl settings load --' --store --json '!--wait' '!--version'
  expect "$shell" 'lumadotctl palette --' --write --preset --store
  expect "$shell" 'lumadotctl palette ' a.pal
  expect "$shell" 'lumadotctl enhancer ' on off
  expect "$shell" 'lumadotctl completion ' bash zsh fish
  expect "$shell" 'lumadotctl record ' dumps '!a.pal'
  expect "$shell" 'lumadotctl dump ' info show export '!play'
  expect "$shell" 'lumadotctl dump export --' --out --from --sheet --preset '!--colours' '!--loop'
  expect "$shell" 'lumadotctl dump show --colours ' full 256 none
  expect "$shell" 'lumadotctl play --' --loop --speed --mode '!--seconds'
  expect "$shell" 'lumadotctl show ' a.pal
done

expect bash 'lumadotctl mode ' Stern\\\ S.A.M. Capcom Data\\\ East\\\ /\\\ Sega
expect bash 'lumadotctl mode st' Stern\\\ S.A.M. Stern\\\ Whitestar '!Capcom'
expect bash 'lumadotctl mode spik' Stern\\\ Spike '!Capcom'
expect bash 'lumadotctl mode "St' 'Stern Spike'
expect bash 'lumadotctl record --mode capc' Capcom
expect bash 'lumadotctl palette --preset cya' 'Palette\ 5\ \(Cyan\)'
expect bash 'lumadotctl palette --write ' a.pal
if command -v zsh >/dev/null; then
  expect zsh 'lumadotctl mode ' 'Stern S.A.M.' Capcom
  expect zsh 'lumadotctl record --mode ' 'Data East / Sega'
  expect zsh 'lumadotctl palette --preset ' 'Palette 5 (Cyan)'
fi
if command -v fish >/dev/null; then
  expect fish 'lumadotctl mode Ster' 'Stern S.A.M.' 'Stern Spike' '!Capcom'
  expect fish 'lumadotctl record --mode Cap' Capcom
  expect fish 'lumadotctl palette --preset Pal' 'Palette 5 (Cyan)'
fi
