#!/usr/bin/env bash
# run_docs.sh FXHOST PAGE...: tries the pages. Each page gets a separate folder, with effects/ and samples/ in
# it. Blocks marked "LANGUAGE PATH" are written to that path, blocks marked "sh" are run there, in order.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
fxhost=$(readlink -f "$1")
shift
tools=$(mktemp -d)
trap 'rm -rf "$tools"' EXIT
ln -s "$fxhost" "$tools/fxhost"

try_page() {
    local page=$1 folder=$tools/$(basename "$1" .md)
    mkdir "$folder"
    ln -s "$root/effects" "$root/samples" "$root/docs" "$folder/"
    awk -v folder="$folder" '
        /^```/ && !inside {
            info = substr($0, 4); n = split(info, word, " "); inside = 1; target = ""
            if (word[1] == "sh" && n == 1) { target = folder "/block-" sprintf("%03d", ++count) ".sh"; line = NR }
            else if (n == 2) { target = folder "/" word[2]; dir = target; sub(/\/[^\/]*$/, "", dir); system("mkdir -p \"" dir "\""); }
            if (target != "") printf "" > target
            if (word[1] == "sh" && n == 1) print "# line " line >> target
            next
        }
        /^```/ { inside = 0; if (target != "") close(target); next }
        inside && target != "" { print >> target }' "$page"
    local block
    for block in "$folder"/block-*.sh; do
        [ -e "$block" ] || continue
        if ! (cd "$folder" && PATH="$tools:$PATH" bash -euo pipefail "$block") >"$block.log" 2>&1; then
            echo "$page, $(head -1 "$block" | cut -c3-): this failed:"
            sed 's/^/    /' "$block" "$block.log"
            return 1
        fi
    done
    echo "$page: $(ls "$folder"/block-*.sh 2>/dev/null | wc -l) blocks"
}

for page in "$@"; do
    try_page "$page"
done
