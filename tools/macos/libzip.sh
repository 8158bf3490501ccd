#!/usr/bin/env bash
# tools/macos/libzip.sh ARCH: builds libzip from its Debian sources, as a static library for macOS, into
# build/cross/ARCH. `tools/install-deps.sh --cross` has fetched the sources. zlib is the system's own there.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
arch=$1
cross=$root/build/cross
prefix=$cross/$arch
[ ! -f "$prefix/lib/libzip.a" ] || exit 0

mkdir -p "$cross/libzip" "$prefix/include" "$prefix/lib"
tar -xf "$cross"/libzip_*.orig.tar.* -C "$cross/libzip" --strip-components 1
# Headers that are the same on every system; links, so that nothing else of /usr/include is seen.
multiarch=$(dpkg-architecture -qDEB_HOST_MULTIARCH 2>/dev/null || gcc -print-multiarch)
for header in zlib.h zconf.h rapidxml stb CLI nlohmann fast_float OpenImageIO Imath; do
    for place in /usr/include/$header /usr/include/$multiarch/$header; do
        [ ! -e "$place" ] || ln -sfn "$place" "$prefix/include/$header"
    done
done
ln -sfn "$root/tools/macos/lib/libz.tbd" "$prefix/lib/libz.tbd"

off=()
for option in COMMONCRYPTO GNUTLS MBEDTLS OPENSSL BZIP2 LZMA ZSTD; do off+=("-DENABLE_$option=OFF"); done
for part in TOOLS REGRESS EXAMPLES DOC; do off+=("-DBUILD_$part=OFF"); done
cmake -S "$cross/libzip" -B "$cross/libzip-$arch" -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_SHARED_LIBS=OFF \
    -DCMAKE_TOOLCHAIN_FILE="$root/cmake/toolchains/macos.cmake" -DFX_MACOS_ARCH="$arch" "${off[@]}" \
    -DZLIB_INCLUDE_DIR="$prefix/include" -DZLIB_LIBRARY="$prefix/lib/libz.tbd" -DCMAKE_INSTALL_PREFIX="$prefix"
ninja -C "$cross/libzip-$arch" install
