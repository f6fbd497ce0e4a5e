#!/usr/bin/env bash
# Shows what the tool does: makes the sample images, lists the built-in configuration, converts a
# scene-linear image for a display and an 8-bit image to scene-linear.
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

# The demonstration is about the built-in configuration, whatever the user's own is.
unset OCIO

say() { printf '\n== %s\n' "$*"; }

"$make_samples" "$folder"

say "What the built-in configuration offers"
"$tool" list

say "A scene-linear image through the built-in view (no --from: the extension tells the color space)"
"$tool" convert "$folder/chart_half.exr" "$folder/chart_for_display.png" --view Tavelion.sRGB

say "An 8-bit sRGB image to scene-linear (as --from and --to say)"
"$tool" convert "$folder/chart_srgb.png" "$folder/chart_linear.exr" --from sRGB --to linear -d half

say "The images"
printf '  %s\n' \
    "$folder/chart_half.exr         the sample: ramps, negatives, superwhites, saturated colors, alpha" \
    "$folder/chart_for_display.png  the same for a display" \
    "$folder/chart_srgb.png         the sample in 8 bits" \
    "$folder/chart_linear.exr       the same in scene-linear halfs"
