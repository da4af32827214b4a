#!/usr/bin/env bash
# Builds the keyer and packs it as a Debian package, build/vantrel_*.deb,
# whose dependencies dpkg-shlibdeps finds; then shows its control data and
# what lintian says of it. Install it with: apt install ./build/vantrel_*.deb
set -euo pipefail
cd "$(dirname "$0")/.."

bash scripts/install-deps.sh
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo
cmake --build build
(cd build && cpack -G DEB)
deb=$(ls -t build/vantrel_*.deb | head -n 1)
dpkg-deb --info "$deb"
# lintian knows only Debian's own maintainers and licences; what it says is
# shown, not fatal.
lintian --info "$deb" || true
echo "$deb"
