#!/usr/bin/env bash
# tools/build.sh PRESET [TARGET...]: configures when needed and builds. Silent when there is nothing to do;
# everything it says goes to standard error. FX_JOBS sets how many compilers run at once.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
preset=$1
shift
folder=$root/build/$preset
log=$folder/last-build.log
mkdir -p "$folder"

# Two builds of one folder at once would spoil each other.
if command -v flock >/dev/null; then
    exec 9>"$folder/.lock"
    flock 9
fi

show_log_and_stop() {
    cat "$log" >&2
    echo "The $preset build failed; the messages above are also in $log" >&2
    exit 1
}

cd "$root"
if [ ! -f "$folder/build.ninja" ]; then
    echo "Configuring the $preset build" >&2
    cmake --preset "$preset" >"$log" 2>&1 || show_log_and_stop
fi
if ! ninja -C "$folder" -n "$@" 2>/dev/null | grep -q 'no work to do'; then
    echo "Building ($preset)" >&2
    ninja -C "$folder" -j "${FX_JOBS:-$(getconf _NPROCESSORS_ONLN)}" "$@" >"$log" 2>&1 || show_log_and_stop
fi
