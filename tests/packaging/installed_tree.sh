#!/usr/bin/env bash
# Usage: installed_tree.sh CMAKE BUILD_FOLDER
# Installs under a fresh prefix and compares the tree with what belongs there.
set -euo pipefail

cmake=$1
build=$2
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT

"$cmake" --install "$build" --prefix "$prefix" >/dev/null

expected='bin/lumadot-tool
lib/udev/rules.d/65-lumadot.rules
share/applications/lumadot-tool.desktop
share/doc/lumadot-tool/CHANGELOG.md
share/doc/lumadot-tool/LICENSE
share/icons/hicolor/scalable/apps/lumadot-tool.svg
share/man/man1/lumadot-tool.1
share/metainfo/io.github.lumadot.lumadot_tool.metainfo.xml'
diff <(echo "$expected") <(cd "$prefix" && find . -type f -printf '%P\n' | LC_ALL=C sort)

test -x "$prefix/bin/lumadot-tool"
# The desktop entry starts what was installed.
grep -qx 'Exec=lumadot-tool' "$prefix/share/applications/lumadot-tool.desktop"
