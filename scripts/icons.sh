#!/usr/bin/env bash
# Renders the icon's PNG sizes for the hicolor theme from its SVG; run after
# changing data/icons/vantrel.svg and commit the results.
set -euo pipefail
cd "$(dirname "$0")/.."
for size in 16 24 32 48 64 128 256; do
  rsvg-convert -w "$size" -h "$size" data/icons/vantrel.svg -o "data/icons/vantrel-$size.png"
done
