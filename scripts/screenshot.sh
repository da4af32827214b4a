#!/usr/bin/env bash
# Builds the keyer and photographs its window as a first start shows it,
# and the dialog that Config, Keyer setup opens for each keyer, under a
# virtual X server, into docs/.
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
# Each dialog on a settings file of its own that chooses the keyer; a chip
# on no port starts without looking for it.
shoot() {
  local keyer=$1 file=$2
  rm -rf "${home:?}"/*
  printf '[frmVantrel Settings]\r\nKeyer to Use=%s\r\n' "$keyer" >"$home/Vantrel.INI"
  VANTREL_HOME="$home" QT_SCALE_FACTOR=2 \
    xvfb-run -a -s "-screen 0 1600x1600x24" ./build/src/app/vantrel --screenshot-setup "$file"
}
shoot Software docs/keyer-setup.png
shoot WinKey docs/winkey-config.png
shoot WinKey2 docs/winkey2-config.png
echo "docs/screenshot.png docs/keyer-setup.png docs/winkey-config.png docs/winkey2-config.png"
