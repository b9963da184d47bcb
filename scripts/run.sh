#!/usr/bin/env bash
# Builds the tool and starts it. With a controller on the bus it uses that, and says what to do if it may
# not be opened; with none it starts a simulated one beside it. Without a display it plays a short session
# on a private one instead.
set -euo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
# shellcheck source=scripts/lib/packages.sh
source scripts/lib/packages.sh
# shellcheck source=scripts/lib/controller.sh
source scripts/lib/controller.sh

build=build/release

has_display() {
  [[ -n ${WAYLAND_DISPLAY:-} ]] && return 0
  [[ -n ${DISPLAY:-} ]] && { ! command -v xprop >/dev/null || xprop -root >/dev/null 2>&1; }
}

need_packages "${BUILD_PACKAGES[@]}"
mkdir -p build/demo
cmake --preset release >build/configure.log 2>&1 || {
  cat build/configure.log
  exit 1
}
echo "Building $build/lumadot-tool and $build/lumadotctl"
cmake --build --preset release --target lumadot-tool lumadotctl lumadot-simulator usb_standin

if ! has_display; then
  need_packages "${RUN_PACKAGES[@]}"
  exec scripts/on_display.sh scripts/demo.sh "$build"
fi
if find_controller ""; then
  may_open "$CONTROLLER" ""
  exec "$build/lumadot-tool"
fi
echo "No controller on the bus: starting a simulated one beside the tool."
LUMADOT_DEMO_PROGRAMS=$PWD/$build LUMADOT_DEMO_BUS=$PWD/$build/simulated_bus \
  LUMADOT_DEMO_STATE=$PWD/build/demo/store LUMADOT_SIM_LOG=$PWD/build/demo/usb-log.txt \
  exec packaging/linux/lumadot-demo
