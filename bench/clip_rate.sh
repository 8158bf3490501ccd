#!/bin/sh
# Compares the rate of a whole clip (video in, effect, video out) with what the render step alone reaches (one
# picture again and again, frames thrown away). The ratio tells what reading and writing cost.
#   clip_rate.sh FXHOST [EFFECT [FRAMES [OUTPUT]]]     OUTPUT: clip.mp4, or f_####.png, ...
set -eu
fxhost=$1
effect=${2:-$(dirname "$0")/../effects/blur}
frames=${3:-300}
output=${4:-clip.mp4}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT

ffmpeg -v error -f lavfi -i testsrc2=size=1920x1080:rate=25 -frames:v "$frames" -c:v libx264 -preset veryfast \
    -pix_fmt yuv420p "$folder/in.mp4"
ffmpeg -v error -i "$folder/in.mp4" -frames:v 1 "$folder/still.png"

# rate ARGUMENT...: frames a second of one run, from its last line.
rate() {
    "$fxhost" render "$effect" --frames "1-$frames" "$@" 2>"$folder/said" || {
        cat "$folder/said" >&2
        exit 1
    }
    sed -n 's/.* frames, \([0-9.]*\) frames\/s in .*/\1/p' "$folder/said"
}

rate -i "$folder/still.png" -o /dev/null >/dev/null # warm up
alone=$(rate -i "$folder/still.png" -o /dev/null)
whole=$(rate -i "$folder/in.mp4" -o "$folder/$output")
awk -v a="$alone" -v w="$whole" -v e="$(basename "$effect")" -v n="$frames" -v o="$output" 'BEGIN {
    printf "clip_rate  %s 1920x1080 x%d to %s   render alone %.1f/s   whole clip %.1f/s   ratio %.2f\n", e, n, o, a, w, w / a }'
