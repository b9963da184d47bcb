#!/usr/bin/env bash
# Compiles the sources that have no window for Windows and throws the result away: what does not build there
# shows at once. scripts/windows.sh builds everything.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh

need_packages "${WINDOWS_COMPILER_PACKAGES[@]}" "${BUILD_PACKAGES[@]}"

# Headers that are the same on every system, in a folder of their own: /usr/include is this system's.
headers=build/headers-for-windows
mkdir -p "$headers"
ln -sfn /usr/include/libusb-1.0/libusb.h "$headers/libusb.h"
for name in CLI nlohmann asio asio.hpp png.h pngconf.h pnglibconf.h gif_lib.h; do
  ln -sfn "/usr/include/$name" "$headers/$name"
done

# Those that include nothing of the toolkit or of Linux' desktop, not even through one of our headers.
without_window() {
  git ls-files --cached --others --exclude-standard -- '*.cpp' ':!tests' ':!fuzz' ':!bench' |
    while read -r source; do
      mapfile -t included < <(sed -n 's/^#include "\(.*\)"$/\1/p' "$source")
      grep -qsE '#include <(wx|gtk)/' "$source" "${included[@]}" || echo "$source"
    done
}

compiler=(x86_64-w64-mingw32-g++-posix -std=c++20 -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror
  -DASIO_STANDALONE -DLUMADOT_VERSION='""' -I . -isystem "$headers")

# What takes most of the time is read once.
cat >"$headers/read_once.h" <<'END'
#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <nlohmann/json.hpp>
#include <optional>
#include <span>
END
"${compiler[@]}" -x c++-header "$headers/read_once.h" -o "$headers/read_once.h.gch"

without_window >build/without-window.txt
xargs -n 1 -P "$(nproc)" "${compiler[@]}" -include "$headers/read_once.h" -fsyntax-only <build/without-window.txt
echo "$(wc -l <build/without-window.txt) sources compile for Windows"
