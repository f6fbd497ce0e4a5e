#!/usr/bin/env bash
# Demonstrates the tool: makes the sample images, lists the built-in config, converts a scene-linear image to a view and
# an 8-bit image to scene-linear.
# usage: demo.sh TOOL OUTPUT_DIR
set -euo pipefail

if [ $# -ne 2 ]; then
    echo "usage: demo.sh TOOL OUTPUT_DIR" >&2
    exit 2
fi
tool=$1
make_samples=$(dirname "$tool")/../samples/make_samples
mkdir -p "$2"
folder=$(cd "$2" && pwd)

# Use the built-in config even if the user has set another one.
unset OCIO

say() { printf '\n== %s\n' "$*"; }

"$make_samples" "$folder"

say "The built-in config"
"$tool" list

say "Converting a scene-linear image to a view (without --from: the color space is determined by the extension)"
"$tool" convert "$folder/chart_half.exr" "$folder/chart_for_display.png" --view Tavelion.sRGB

say "Converting an 8-bit sRGB image to scene-linear"
"$tool" convert "$folder/chart_srgb.png" "$folder/chart_linear.exr" --from sRGB --to linear -d half

say "Images"
printf '  %s\n' \
    "$folder/chart_half.exr         scene-linear chart: ramps, negative values, values above 1, alpha" \
    "$folder/chart_for_display.png  the chart converted to the view Tavelion.sRGB" \
    "$folder/chart_srgb.png         8-bit sRGB chart" \
    "$folder/chart_linear.exr       the 8-bit chart converted to scene-linear"
