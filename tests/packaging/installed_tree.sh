#!/usr/bin/env bash
# Usage: installed_tree.sh CMAKE BUILD_FOLDER [PROGRAM...]
# Installs under a fresh prefix and compares the tree with what belongs there. PROGRAMs are those that this
# build has besides lumadot-tool.
set -euo pipefail

cmake=$1
build=$(realpath "$2")
shift 2
cd "$(dirname "${BASH_SOURCE[0]}")/../.."
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

"$cmake" --install "$build" --prefix "$prefix" >/dev/null

# files_of PROGRAM
files_of() {
  echo "bin/$1"
  echo "share/man/man1/$1.1.gz"
  case $1 in
    lumadotctl)
      echo share/bash-completion/completions/lumadotctl
      echo share/fish/vendor_completions.d/lumadotctl.fish
      echo share/zsh/site-functions/_lumadotctl
      ;;
    lumadot-simulator)
      echo bin/lumadot-demo
      echo share/man/man1/lumadot-demo.1.gz
      echo lib/lumadot/simulated_bus/libusb-1.0.so.0
      echo lib/lumadot/simulated_bus/libusb-1.0.so.0.0.0
      ;;
    lumadot-viewer)
      echo share/applications/lumadot-viewer.desktop
      ;;
  esac
}

expected() {
  local program
  for program in lumadot-tool "$@"; do
    files_of "$program"
  done
  echo 'lib/udev/rules.d/65-lumadot.rules
share/applications/lumadot-tool.desktop
share/doc/lumadot-tool/changelog.gz
share/doc/lumadot-tool/copyright
share/doc/lumadot-tool/examples/66-lumadot-group.rules
share/icons/hicolor/128x128/apps/lumadot-tool.png
share/icons/hicolor/16x16/apps/lumadot-tool.png
share/icons/hicolor/22x22/apps/lumadot-tool.png
share/icons/hicolor/24x24/apps/lumadot-tool.png
share/icons/hicolor/256x256/apps/lumadot-tool.png
share/icons/hicolor/32x32/apps/lumadot-tool.png
share/icons/hicolor/48x48/apps/lumadot-tool.png
share/icons/hicolor/64x64/apps/lumadot-tool.png
share/icons/hicolor/scalable/apps/lumadot-tool.svg
share/metainfo/io.github.lumadot.lumadot_tool.metainfo.xml
share/mime/packages/lumadot-tool.xml'
  local page
  for page in user-guide recordings troubleshooting lumadotctl simulator windows file-formats protocol; do
    if [[ -e docs/$page.md ]]; then
      echo "share/doc/lumadot-tool/$page.md"
    fi
  done
  find docs/pictures -type f -printf 'share/doc/lumadot-tool/pictures/%P\n'
}

diff <(expected "$@" | LC_ALL=C sort) \
  <(cd "$prefix" && find . ! -type d -printf '%P\n' | LC_ALL=C sort)

test -x "$prefix/bin/lumadot-tool"
test -x "$prefix/bin/lumadotctl"
# The demo finds what it starts where it has been put.
test -x "$prefix/bin/lumadot-demo"
test -e "$prefix/bin/../lib/lumadot/simulated_bus/libusb-1.0.so.0"
# The desktop entry starts what was installed.
grep -qx 'Exec=lumadot-tool %f' "$prefix/share/applications/lumadot-tool.desktop"
