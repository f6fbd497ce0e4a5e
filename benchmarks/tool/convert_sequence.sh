#!/usr/bin/env bash
# Times the conversion of a sequence of uncompressed 4K frames of halfs: this tool against oiiotool with all cores and
# ocioconvert in a loop. Whole processes, wall time, medians of interleaved rounds.
# usage: convert_sequence.sh TOOL [FOLDER]
#   WORK (exr) is "exr": from sRGB to linear, as half OpenEXR; or "dpx" or "png": from linear through a view with a 3D LUT,
#   as 10-bit DPX or 16-bit PNG. ocioconvert writes DPX as floats: it has no option for the depth.
#   FRAMES (20), ROUNDS (5), WIDTH (3840), HEIGHT (2160) and CHANNELS (R,G,B,A) may be set in the environment;
#   SEQUENCE_JSON names a file for the medians.
set -euo pipefail

if [ $# -lt 1 ]; then
    echo "usage: convert_sequence.sh TOOL [FOLDER]" >&2
    exit 2
fi
tool=$(realpath "$1")
json=${SEQUENCE_JSON:+$(realpath -m "$SEQUENCE_JSON")}
frames=${FRAMES:-20}
rounds=${ROUNDS:-5}
width=${WIDTH:-3840}
height=${HEIGHT:-2160}
channels=${CHANNELS:-R,G,B,A}
work=${WORK:-exr}
case "$work" in
exr) depth=half ;;
dpx) depth=uint10 ;;
png) depth=uint16 ;;
*) echo "convert_sequence.sh: WORK is exr, dpx or png, not '$work'" >&2; exit 2 ;;
esac
for program in oiiotool ocioconvert; do
    command -v "$program" >/dev/null || { echo "convert_sequence.sh: $program is not installed" >&2; exit 1; }
done

folder=${2:-$(mktemp -d)}
mkdir -p "$folder"
[ $# -ge 2 ] || trap 'rm -rf "$folder"' EXIT
cd "$folder"
export XDG_CACHE_HOME=$folder/cache
unset OCIO

# A configuration that all three read, with the table that the built-in one makes.
"$tool" list >/dev/null
cp "$XDG_CACHE_HOME/qb_colorio/luts/srgb.spi1d" .
cat >bench.ocio <<'TEXT'
ocio_profile_version: 1
search_path: .
strictparsing: true
roles: {scene_linear: linear, default: linear}
displays:
  screen:
    - !<View> {name: sRGB, colorspace: sRGB}
    - !<View> {name: Film, colorspace: film}
colorspaces:
  - !<ColorSpace>
    name: linear
    bitdepth: 32f
  - !<ColorSpace>
    name: sRGB
    bitdepth: 32f
    to_reference: !<FileTransform> {src: srgb.spi1d, interpolation: linear}
  - !<ColorSpace>
    name: film
    bitdepth: 32f
    from_reference: !<FileTransform> {src: film.cube, interpolation: tetrahedral}
TEXT
awk 'function curve(v) { return 1.2 * v / (v + 0.2) }
BEGIN {
    print "LUT_3D_SIZE 33"
    for (b = 0; b < 33; b++) for (g = 0; g < 33; g++) for (r = 0; r < 33; r++)
        print curve((r + 0.1 * g) / 35.2), curve((g + 0.1 * b) / 35.2), curve((b + 0.1 * r) / 35.2)
}' >film.cube
export OCIO=$folder/bench.ocio

echo "making $frames frames of $width x $height, channels $channels" >&2
alpha=$(tr -cd , <<<"$channels" | wc -c)
if [ "$alpha" -ge 3 ]; then count=4 low=0,0,0,1 high=1,1,1,1 other=1,0,0.5,1 last=0,1,0.5,1; else count=3 low=0,0,0 high=1,1,1 other=1,0,0.5 last=0,1,0.5; fi
oiiotool --pattern "fill:topleft=$low:topright=$high:bottomleft=$other:bottomright=$last" \
    "${width}x$height" "$count" --noise:type=uniform:min=-0.02:max=0.02:mono=0 -d half --compression none \
    -o in.0001.exr
for ((frame = 2; frame <= frames; frame++)); do
    cp in.0001.exr "$(printf 'in.%04d.exr' "$frame")"
done

tool_color=(--from linear --view screen.Film)
oiio_color=(--ociodisplay:from=linear:unpremult=0 screen Film)
oiio_compression=()
if [ "$work" = exr ]; then
    tool_color=(--from sRGB --to linear)
    oiio_color=(--colorconvert:unpremult=0 sRGB linear)
    oiio_compression=(--compression none)
fi

run_tool() {
    "$tool" convert in.####.exr "tool.####.$work" --frames "1-$frames" "${tool_color[@]}" -d "$depth" \
        --config bench.ocio --no-unpremult >/dev/null
}
run_oiiotool() {
    oiiotool --colorconfig bench.ocio --frames "1-$frames" in.%04d.exr "${oiio_color[@]}" \
        -d "$depth" "${oiio_compression[@]}" -o "oiio.%04d.$work" >/dev/null
}
run_ocioconvert() {
    local frame number
    for ((frame = 1; frame <= frames; frame++)); do
        number=$(printf '%04d' "$frame")
        if [ "$work" = exr ]; then
            ocioconvert "in.$number.exr" sRGB "ocio.$number.exr" linear >/dev/null
        else
            ocioconvert --view "in.$number.exr" linear "ocio.$number.$work" screen Film >/dev/null
        fi
    done
}

# measure NAME: runs it and appends its wall time in seconds to NAME.times.
measure() {
    local start=$EPOCHREALTIME
    "run_$1"
    awk -v start="$start" -v end="$EPOCHREALTIME" 'BEGIN { printf "%.3f\n", end - start }' >>"$1.times"
    rm -f "${2:?}".*."$work"
}
median() { sort -n "$1.times" | awk '{ value[NR] = $1 } END { print value[int((NR + 1) / 2)] }'; }

rm -f ./*.times
for ((round = 1; round <= rounds; round++)); do
    echo "round $round of $rounds" >&2
    measure tool tool
    measure oiiotool oiio
    measure ocioconvert ocio
done

if [ -n "$json" ]; then
    load=$(cut -d' ' -f1-3 /proc/loadavg | tr ' ' ',')
    printf '{"work": "%s", "frames": %d, "rounds": %d, "width": %d, "height": %d, "channels": "%s", "load_avg": [%s],\n "seconds": {"tool": %s, "oiiotool": %s, "ocioconvert": %s}}\n' \
        "$work" "$frames" "$rounds" "$width" "$height" "$channels" "$load" \
        "$(median tool)" "$(median oiiotool)" "$(median ocioconvert)" >"$json"
fi

ours=$(median tool)
printf '%-12s %8s %8s   rounds\n' program median ratio
for program in tool oiiotool ocioconvert; do
    time=$(median "$program")
    printf '%-12s %8.2f %8.2f   %s\n' "$program" "$time" \
        "$(awk -v a="$time" -v b="$ours" 'BEGIN { print a / b }')" "$(paste -sd' ' "$program.times")"
done
