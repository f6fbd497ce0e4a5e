#!/usr/bin/env bash
# Renders the images of the documents again: the converted chart, and the chart in the viewer, without a display.
# usage: viewer_images.sh TOOL
set -euo pipefail

if [ $# -ne 1 ]; then
    echo "usage: viewer_images.sh TOOL" >&2
    exit 2
fi
tool=$(realpath "$1")
tests=$(realpath "$(dirname "${BASH_SOURCE[0]}")/../tests")
images=$(realpath "$(dirname "${BASH_SOURCE[0]}")/..")/docs/images
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
unset OCIO
export HOME=$work # shown as "~" in the dialog

mkdir -p "$images" "$work/shows/luts" "$work/shows/previous" "$work/shows/shots"
for show in blue_moon blue_moon_grading harbour harbour_night studio; do
    cp "$tests/configs/tables/config.ocio" "$work/shows/$show.ocio"
done
cp "$tests"/configs/tables/luts/* "$work/shows/luts"

"$(dirname "$tool")/../samples/make_samples" "$work"
cat >"$work/tour.txt" <<TOUR
panels on
cursor 760 300
screenshot $images/viewer.png
panels off
second-view Tavelion.linear
wipe 0.5
screenshot $images/wipe.png
view Tavelion.Cineon
difference-scale 200
compare
screenshot $images/difference.png
panels on
layout single
config shows/studio.ocio
click File
click Open config...
press Down
press Down
press Down
press Down
screenshot $images/dialog.png
quit
TOUR
cd "$work"
"$tool" view chart_half.exr --no-prefs --size 1000x620 --view Tavelion.sRGB --script tour.txt --no-window
"$tool" convert chart_half.exr "$images/chart.png" --no-prefs --view Tavelion.sRGB
