#!/usr/bin/env bash
# Builds the keyer and photographs its window as a first start shows it,
# and its Keyer setup dialog, under a virtual X server, into docs/.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --target vantrel

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
# Twice the pixels, so that the window at its design size stays readable.
VANTREL_HOME="$home" QT_SCALE_FACTOR=2 \
  xvfb-run -a -s "-screen 0 1024x768x24" ./build/src/app/vantrel --screenshot docs/screenshot.png
VANTREL_HOME="$home" QT_SCALE_FACTOR=2 \
  xvfb-run -a -s "-screen 0 1600x1600x24" ./build/src/app/vantrel --screenshot-setup docs/keyer-setup.png
echo "docs/screenshot.png docs/keyer-setup.png"
