#!/usr/bin/env bash
# tools/ship.sh EFFECT_FOLDER FOLDER: builds what is missing and makes the plug-in bundles of an effect, for Linux in
# FOLDER/linux and for macOS in FOLDER/macos. Runs on Debian and its relatives and installs what it needs.
set -euo pipefail

[ $# -eq 2 ] || { echo "usage: tools/ship.sh EFFECT_FOLDER FOLDER" >&2; exit 2; }
root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
"$root/tools/install-deps.sh" --cross
"$root/tools/build.sh" release fxhost shaderfx_module
"$root/tools/macos/build.sh"
for target in linux macos; do
    "$root/build/release/tool/fxhost" bundle "$1" -o "$2/$target/" --target $target --force
done
