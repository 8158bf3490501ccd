#!/bin/sh
# Compares the frame rate of a whole clip (video in, effect, video out) with that of the render step alone (the same
# picture in every frame, no output). The ratio shows the cost of reading and writing.
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

# rate FRAMES ARGUMENT...: prints the frames per second of one run, from its last line.
rate() {
    last=$1
    shift
    "$fxhost" render "$effect" --frames "1-$last" "$@" 2>"$folder/messages" || {
        cat "$folder/messages" >&2
        exit 1
    }
    sed -n 's/.* frames, \([0-9.]*\) frames\/s in .*/\1/p' "$folder/messages"
}

# Measures the render step before and after the clip, because the speed of the machine may change.
half=$(((frames + 1) / 2))
before=$(rate $half -i "$folder/still.png" -o /dev/null)
whole=$(rate "$frames" -i "$folder/in.mp4" -o "$folder/$output")
after=$(rate $half -i "$folder/still.png" -o /dev/null)
awk -v b="$before" -v a="$after" -v w="$whole" -v e="$(basename "$effect")" -v n="$frames" -v o="$output" 'BEGIN {
    alone = 2 / (1 / a + 1 / b)
    printf "clip_rate  %s 1920x1080 x%d to %s   render alone %.2f/s (%.2f before, %.2f after)   whole clip %.2f/s   ratio %.2f\n",
        e, n, o, alone, b, a, w, w / alone }'
