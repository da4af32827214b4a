#!/usr/bin/env bash
# Builds everything with warnings as errors and runs every test, then does the
# same again under AddressSanitizer and UndefinedBehaviorSanitizer, and fuzzes
# the readers of outside input for a few seconds each (clang's libFuzzer).
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

# Only what the fuzz targets need is built with clang.
if command -v clang++ >/dev/null; then
  cmake -S . -B build-fuzz -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
    -DCMAKE_CXX_COMPILER=clang++ -DVANTREL_FUZZ=ON -DVANTREL_BUILD_TESTS=OFF
  cmake --build build-fuzz --target fuzz_targets -j "$jobs"
  ctest --test-dir build-fuzz --output-on-failure -L fuzz
else
  echo "clang++ is missing: the fuzz tests are skipped"
fi
