#!/usr/bin/env bash
# Builds the keyer and starts its window. Without a display it says so and
# starts it on a virtual X server instead, where it runs until stopped.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --target vantrel vantrel-sim

if [[ -n "${DISPLAY:-}" || -n "${WAYLAND_DISPLAY:-}" ]]; then
  exec ./build/src/app/vantrel "$@"
fi
echo "No display here: starting vantrel under Xvfb (stop it with Ctrl-C)." >&2
echo "To watch the keyer without a window: build/tools/sim/vantrel-sim examples/cq-exchange.vsim" >&2
exec xvfb-run -a ./build/src/app/vantrel "$@"
