#!/usr/bin/env bash
# legacy_gl.sh FXHOST NAME=VALUE...: every sample effect must give the same picture in a legacy GL context, which has no
# texture swizzle, as in the newest one. The variables make Mesa create legacy contexts. Run from the source folder.
set -eu

fxhost=$1
legacy=("${@:2}")
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
failed=0
for effect in effects/*/; do
    "$fxhost" render "$effect" -i samples/photo.png --time 1.5 -o "$folder/newest.png"
    env "${legacy[@]}" "$fxhost" render "$effect" -i samples/photo.png --time 1.5 -o "$folder/legacy.png"
    cmp "$folder/newest.png" "$folder/legacy.png" || failed=1
    rm "$folder"/*.png
done
exit $failed
