#!/bin/bash
# Times the palette reduction of other programs on the benchmark's own picture and prints it next to ours: processor time
# on one thread, without reading and writing files. The Debian packages are imagemagick, libimagequant-dev, python3-pil
# and ffmpeg; a program that is not installed is skipped.
#
# bench/imagelib/peers.sh PATH/TO/quantize_bench
set -euo pipefail
PATH=/usr/bin:$PATH # prefers the packages to programs that were built by hand

bench=${1:?usage: peers.sh PATH/TO/quantize_bench}
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

has() { command -v "$1" >/dev/null || { echo "peer  $1 is not installed: skipped"; return 1; }; }

# Prints the processor time of a command in milliseconds, the median of three runs.
cpu_ms() {
    local TIMEFORMAT='%U %S'
    for _ in 1 2 3; do
        { time "$@" >/dev/null 2>&1; } 2>&1 | awk '{ printf "%.1f\n", ($1 + $2) * 1000 }'
    done | sort -n | sed -n 2p
}

report() { printf 'peer  %-22s  %-31s %8.2f ms\n' "$1" "$2" "$3"; }

minus() { awk -v a="$1" -v b="$2" -v n="${3:-1}" 'BEGIN { print (a - b) / n }'; }

"$bench" --write-picture "$work/photo.ppm"
# The sixteen colours of our fixed palette, as pictures of 16x1 and 16x16 pixels.
colours=(000000 FFFFFF 883932 67B6BD 8B3F96 55A049 40318D BFCE72
    8B5429 574200 B86962 505050 787878 94E089 7869C4 9F9F9F)
ppm() { # width, height: the colours in order, the last one repeated
    echo "P3 $1 $2 255"
    for ((i = 0; i < $1 * $2; ++i)); do
        c=${colours[i < ${#colours[@]} ? i : ${#colours[@]} - 1]}
        echo "$((16#${c:0:2})) $((16#${c:2:2})) $((16#${c:4:2}))"
    done
}
ppm 16 1 >"$work/palette.ppm"
ppm 16 16 >"$work/palette256.ppm"

"$bench" --only calls

if has convert; then
    export MAGICK_THREAD_LIMIT=1
    in="$work/photo.ppm"
    base=$(cpu_ms convert "$in" null:)
    magick() { report ImageMagick "$1" "$(minus "$(cpu_ms convert "$in" "${@:2}" null:)" "$base")"; }
    magick "16 fixed, none" -dither None -remap "$work/palette.ppm"
    magick "16 fixed, Floyd-Steinberg" -dither FloydSteinberg -remap "$work/palette.ppm"
    magick "ordered 8x8, 3 levels" -ordered-dither o8x8,3
    magick "256 adaptive, none" -dither None -colors 256
    magick "256 adaptive, Floyd-Steinberg" -dither FloydSteinberg -colors 256
fi

if has cc && cc -O2 "$here/LiqPeer.c" -limagequant -o "$work/liq_peer" 2>/dev/null; then
    OMP_NUM_THREADS=1 "$work/liq_peer" "$work/photo.ppm"
else
    echo "peer  libimagequant is not installed: skipped"
fi

if /usr/bin/python3 -c 'import PIL' 2>/dev/null; then
    /usr/bin/python3 "$here/pillow_peer.py" "$work/photo.ppm" "$work/palette.ppm"
else
    echo "peer  Pillow is not installed: skipped"
fi

if has ffmpeg; then
    frames=8
    run() {
        ffmpeg -v error -threads 1 -filter_threads 1 -filter_complex_threads 1 -loop 1 -i "$work/photo.ppm" \
            -i "$work/palette256.ppm" -frames:v $frames -lavfi "$1" -f null -
    }
    base=$(cpu_ms run "[0:v]format=bgra[a];[a][1:v]overlay=eof_action=repeat:x=5000")
    for dither in none floyd_steinberg bayer; do
        total=$(cpu_ms run "[0:v]format=bgra[a];[a][1:v]paletteuse=dither=$dither")
        report "ffmpeg paletteuse" "16 fixed, $dither" "$(minus "$total" "$base" $frames)"
    done
fi
