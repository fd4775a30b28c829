#!/usr/bin/env bash
# Renders the icon's PNG sizes from its SVG (needs rsvg-convert, package librsvg2-bin).
# Run after changing dist/icons/org.vexorin.Vexorin.svg; the PNGs are kept in the repository.
set -euo pipefail
cd "$(dirname "$0")/../dist/icons"
for size in 48 128 256; do
  mkdir -p "$size"
  rsvg-convert -w "$size" -h "$size" org.vexorin.Vexorin.svg -o "$size/org.vexorin.Vexorin.png"
done
