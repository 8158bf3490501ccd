#!/bin/sh
# Kills a run at some frame, continues with --resume, and compares the files with those of an uninterrupted run.
#   kill_and_resume.sh FXHOST [OPTION]     OPTION: for each run, such as --no-fork
set -eu
fxhost=$1
option=${2-}
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cd "$folder"

mkdir effect
echo '<FXNAME>fade</FXNAME>' >effect/config.xml
cat >effect/fx.js <<'END'
var amount, fade;
function setup() {
    amount = SV_initParam("amount", SV_Type.FLOAT, "Amount");
    SV_setParamMinMax(amount, 0, 1);
    fade = SV_initShader("fade");
}
function draw() {
    SV_renderShader(fade, SV_getSequenceRT(), 0, 1);
}
END
cat >effect/fade.frag <<'END'
uniform float amount;
void main() {
    gl_FragColor = vec4(gl_FragCoord.xy / 512.0, amount, 1.0);
}
END

fail() {
    echo "$*" >&2
    exit 1
}

clip="render $option effect --size 480x270 --frames 1-150 --fps 25 --param amount=0:0,6s:1 --quiet -o"

# kill_when PATH OUTPUT: starts a run and kills it as soon as the file exists.
kill_when() {
    "$fxhost" $clip "$2" &
    tool=$!
    until ls $1 >/dev/null 2>&1; do
        kill -0 $tool 2>/dev/null || fail "the run ended before $1 existed"
        sleep 0.01
    done
    kill -9 $tool
    wait $tool || true
}

frame=$(($(date +%s) % 100 + 10)) # a different frame in each test run
echo "killing at frame $frame"
mkdir whole cut
"$fxhost" $clip whole/f_####.png
kill_when "cut/f_$(printf %04d $frame).png" cut/f_####.png
[ "$(ls cut | wc -l)" -lt 150 ] || fail "no frame was left to render"
"$fxhost" $clip cut/f_####.png --resume
diff -r -x '.*.record' whole cut

"$fxhost" $clip whole/clip.mp4
kill_when "cut/.clip.mp4.parts/part000000-*.mov" cut/clip.mp4
[ ! -e cut/clip.mp4 ] || fail "the killed run finished"
"$fxhost" $clip cut/clip.mp4 --resume
diff -r -x '.*.record' whole cut
echo "same files"
