#!/usr/bin/env bash
# Prepares a developer's machine: installs what building, tests and lint need. scripts/setup.sh all: what
# the other scripts need, too (fuzzing, coverage, packages), which they install by themselves otherwise.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

case ${1:-} in
  '') lists=(BUILD_PACKAGES TEST_PACKAGES LINT_PACKAGES) ;;
  all) mapfile -t lists < <(compgen -A variable | grep '_PACKAGES$') ;;
  *)
    echo "usage: scripts/setup.sh [all]" >&2
    exit 2
    ;;
esac
packages=()
for list in "${lists[@]}"; do
  declare -n names=$list
  packages+=("${names[@]}")
done
need_packages "${packages[@]}"
echo "Everything is installed. Next: cmake --preset dev && cmake --build --preset dev, or scripts/test.sh"
