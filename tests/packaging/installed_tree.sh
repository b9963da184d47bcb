#!/usr/bin/env bash
# Usage: installed_tree.sh CMAKE BUILD_FOLDER
# Installs under a fresh prefix and compares the tree with what belongs there.
set -euo pipefail

cmake=$1
build=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

"$cmake" --install "$build" --prefix "$prefix" >/dev/null

expected='bin/lumadot-demo
bin/lumadot-simulator
bin/lumadot-tool
bin/lumadotctl
lib/lumadot/simulated_bus/libusb-1.0.so.0.0.0
lib/udev/rules.d/65-lumadot.rules
share/applications/lumadot-tool.desktop
share/bash-completion/completions/lumadotctl
share/doc/lumadot-tool/CHANGELOG.md
share/doc/lumadot-tool/LICENSE
share/fish/vendor_completions.d/lumadotctl.fish
share/icons/hicolor/scalable/apps/lumadot-tool.svg
share/man/man1/lumadot-simulator.1
share/man/man1/lumadot-tool.1
share/man/man1/lumadotctl.1
share/metainfo/io.github.lumadot.lumadot_tool.metainfo.xml
share/zsh/site-functions/_lumadotctl'
diff <(echo "$expected") <(cd "$prefix" && find . -type f -printf '%P\n' | LC_ALL=C sort)

test -x "$prefix/bin/lumadot-tool"
test -x "$prefix/bin/lumadotctl"
# The demo finds what it starts where it has been put.
test -x "$prefix/bin/lumadot-demo"
test -e "$prefix/bin/../lib/lumadot/simulated_bus/libusb-1.0.so.0"
# The desktop entry starts what was installed.
grep -qx 'Exec=lumadot-tool' "$prefix/share/applications/lumadot-tool.desktop"
