#!/usr/bin/env bash
# tools/macos/build.sh [TARGET...]: cross-builds the plug-in module for macOS on Linux, for Apple's and for Intel's
# processors, and joins both into build/macos/plugin/shaderfx.so. TARGET... names more to compile for Apple's
# processors, for example "tool". `tools/install-deps.sh --cross` must have run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
for arch in arm64 x86_64; do
    "$root/tools/macos/libzip.sh" $arch >"$root/build/cross/libzip-$arch.log" 2>&1 ||
        { cat "$root/build/cross/libzip-$arch.log" >&2; exit 1; }
    "$root/tools/build.sh" macos-$arch shaderfx_module
done
[ $# -eq 0 ] || "$root/tools/build.sh" macos-arm64 "$@"

mkdir -p "$root/build/macos/plugin"
PATH=$PATH:$(ls -d /usr/lib/llvm-*/bin | tail -1)
llvm-lipo -create "$root"/build/macos-{arm64,x86_64}/plugin/shaderfx.so -output "$root/build/macos/plugin/shaderfx.so"
