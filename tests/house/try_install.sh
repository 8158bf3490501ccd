#!/usr/bin/env bash
# try_install.sh BUILD_FOLDER: installs into a temporary folder, moves the copy, and uses it there: the installed fxhost
# must find the installed module, and the bundle that it makes must render.
set -euo pipefail

build=$1
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cmake --install "$build" --prefix "$folder/first" >/dev/null
mv "$folder/first" "$folder/moved"
cd "$folder/moved"

bin/fxhost bundle share/shaderfx/effects/blur -o "$folder/Blur.plugin" >/dev/null
system=$([ "$(uname -s)" = Darwin ] && echo macos || echo linux)
cmp lib/shaderfx/$system/shaderfx.so "$folder"/Blur.plugin/Contents/*/Blur
photo=share/shaderfx/samples/photo.png
bin/fxhost render --plugin "$folder/Blur.plugin" -i $photo -o "$folder/bundle.png" --param Radius=9
bin/fxhost render share/shaderfx/effects/blur -i $photo -o "$folder/effect.png" --param Radius=9
cmp "$folder/bundle.png" "$folder/effect.png"

# A bundle for the other system: only its module is exchanged, name and identifier come from config.xml, and the
# property list is there, which only macOS needs.
mkdir -p lib/shaderfx/macos
[ -e lib/shaderfx/macos/shaderfx.so ] || echo "in place of a module" >lib/shaderfx/macos/shaderfx.so
bin/fxhost bundle share/shaderfx/effects/blur -o "$folder/mac/" --target macos >/dev/null
contents="$folder/mac/Soft Blur.plugin/Contents"
cmp lib/shaderfx/macos/shaderfx.so "$contents/MacOS/Soft Blur"
grep -q "<string>org.shaderfx.Shader-Soft-Blur</string>" "$contents/Info.plist"
grep -q "org.shaderfx.Shader-Soft-Blur" "$contents/Resources/Soft Blur.rsrc"

# Without the module the message names the place where it was expected.
rm -r lib/shaderfx
if bin/fxhost bundle share/shaderfx/effects/blur -o "$folder/None.plugin" 2>"$folder/message"; then
    echo "a bundle was made without a module"
    exit 1
fi
grep -q "$PWD/lib/shaderfx/.*/shaderfx.so" "$folder/message"
