#!/usr/bin/env bash
# Builds everything with warnings as errors and runs every test, then does the
# same again under AddressSanitizer and UndefinedBehaviorSanitizer.
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
jobs=$(nproc)

cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build -j "$jobs"
ctest --test-dir build --output-on-failure -j "$jobs"

cmake -S . -B build-sanitize -G Ninja -DCMAKE_BUILD_TYPE=Debug -DVANTREL_SANITIZE=ON
cmake --build build-sanitize -j "$jobs"
ctest --test-dir build-sanitize --output-on-failure -j "$jobs"
