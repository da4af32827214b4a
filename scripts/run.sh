#!/usr/bin/env bash
# Builds the keyer and runs it headless on the example contest exchange,
# printing every key, PTT, text and menu event with its time.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build --target vantrel-sim
./build/tools/sim/vantrel-sim --set "PTT=ON" --set "WPM=25" examples/cq-exchange.vsim
