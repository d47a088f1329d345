#!/usr/bin/env bash
# Builds the static third-party libraries for Windows x86-64 (MinGW) from the distribution's own
# source packages and prints the folder that holds them.
#
# Usage: cmake/windows/build-deps.sh [CACHE_FOLDER]
# The folder is keyed by what decides its content, so a complete one is used again at once. Needs the
# packages of TARSEL_WINDOWS_PACKAGES (scripts/packages.sh) and takes about ten minutes on two cores.
# Words for people go to the standard error, the folder's path to the standard output.
set -euo pipefail

here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
cache=${1:-${XDG_CACHE_HOME:-$HOME/.cache}/tarsel-windows}
triplet=x86_64-w64-mingw32
jobs=${TARSEL_JOBS:-$(nproc)}

say() { printf '== %s\n' "$*" >&2; }
die() {
    say "$*"
    exit 1
}

for tool in "$triplet-g++-posix" cmake ninja make perl dpkg-source xz; do
    command -v "$tool" >/dev/null 2>&1 ||
        die "$tool is missing; install TARSEL_WINDOWS_PACKAGES of scripts/packages.sh first"
done

key=$({
    cat "$here/build-deps.sh" "$here/mingw-w64-x86_64.cmake"
    "$triplet-g++-posix" --version
    dpkg-query -W -f='${Version}\n' libboost1.81-dev libspdlog-dev libfmt-dev libcli11-dev
} | sha256sum | cut -c1-16)
prefix=$cache/$key
[ -e "$prefix/complete" ] && { printf '%s\n' "$prefix" && exit 0; }

mkdir -p "$cache"
exec 8>"$cache/lock"
flock 8
[ -e "$prefix/complete" ] && { printf '%s\n' "$prefix" && exit 0; }
rm -rf "$prefix"
mkdir -p "$prefix/include" "$prefix/lib" "$prefix/licences"
work=$(mktemp -d "$cache/work.XXXXXX")
trap 'rm -rf "$work"' EXIT

# The machine's own package sources, as source packages, without touching its settings.
private_apt() {
    local folder=$work/apt sources=() list
    mkdir -p "$folder/lists/partial" "$folder/cache/archives/partial" "$folder/parts"
    for list in /etc/apt/sources.list.d/*.sources; do
        [ -e "$list" ] && sed 's/^Types:.*/Types: deb-src/' "$list" >"$folder/parts/$(basename "$list")"
    done
    for list in /etc/apt/sources.list /etc/apt/sources.list.d/*.list; do
        [ -e "$list" ] && sed -n 's/^deb\( \|\t\)/deb-src /p' "$list" >>"$folder/parts/classic.list"
    done
    sources=("$folder"/parts/*)
    [ -e "${sources[0]}" ] || die "no package sources are configured on this machine"
    cat >"$folder/apt.conf" <<CONF
Dir::Etc::sourcelist "/dev/null";
Dir::Etc::sourceparts "$folder/parts";
Dir::State::lists "$folder/lists";
Dir::Cache "$folder/cache";
APT::Sandbox::User "root";
APT::Get::List-Cleanup "false";
Acquire::Retries "3";
CONF
    export APT_CONFIG=$folder/apt.conf
    apt-get update -q >&2 || die "apt-get update for source packages failed"
}

# source_of PACKAGE [apt-get source option...]: into $work/PACKAGE. A mirror may lack the newest
# version that it lists; older ones are taken then.
source_of() {
    local package=$1 version
    shift
    mkdir -p "$work/$package"
    while IFS= read -r version; do
        (cd "$work/$package" &&
            apt-get source -q "$@" --only-source "$package=$version" >&2) && {
            say "source of $package: $version"
            return 0
        }
        rm -rf "${work:?}/$package"/*
    done < <(apt-cache showsrc --only-source "$package" | sed -n 's/^Version: //p' | sort -rV -u)
    die "the source package $package cannot be downloaded"
}

unpacked() { find "$work/$1" -mindepth 1 -maxdepth 1 -type d | head -n 1; }

keep_licence() { cp "$1" "$prefix/licences/$2" 2>/dev/null || say "no licence file of $2 at $1"; }

# Headers that need no building, linked so that no other header of the system is ever found.
link_headers() {
    local name
    for name in boost spdlog fmt CLI; do
        [ -e "/usr/include/$name" ] || die "/usr/include/$name is missing; install the -dev packages"
        ln -s "/usr/include/$name" "$prefix/include/$name"
    done
}

build_boost_filesystem() {
    local archive folder=$work/boost1.81 object source
    source_of boost1.81 --download-only
    archive=$(find "$folder" -name '*.orig.tar.*' ! -name '*.asc' | head -n 1)
    tar -xf "$archive" -C "$folder" --wildcards '*/libs/filesystem/src/*' '*/LICENSE_1_0.txt'
    folder=$(unpacked boost1.81)
    keep_licence "$folder/LICENSE_1_0.txt" boost
    mkdir -p "$work/boost-objects"
    for source in "$folder"/libs/filesystem/src/*.cpp; do
        object=$work/boost-objects/$(basename "$source" .cpp).o
        "$triplet-g++-posix" -std=c++20 -O2 -c "$source" -o "$object" \
            -I"$prefix/include" -I"$folder/libs/filesystem/src" \
            -DBOOST_FILESYSTEM_SOURCE -DBOOST_FILESYSTEM_STATIC_LINK=1 -DBOOST_FILESYSTEM_NO_LIB \
            -DBOOST_FILESYSTEM_HAS_BCRYPT -DBOOST_FILESYSTEM_HAS_INIT_PRIORITY \
            -DBOOST_USE_WINDOWS_H -DWIN32_LEAN_AND_MEAN -DNOMINMAX -D_WIN32_WINNT=0x0A00
    done
    "$triplet-gcc-ar-posix" rcs "$prefix/lib/libboost_filesystem.a" "$work"/boost-objects/*.o
}

build_pugixml() {
    local folder
    source_of pugixml
    folder=$(unpacked pugixml)
    keep_licence "$folder/LICENSE.md" pugixml
    cp "$folder"/src/pugixml.hpp "$folder"/src/pugiconfig.hpp "$prefix/include/"
    "$triplet-g++-posix" -std=c++17 -O2 -c "$folder/src/pugixml.cpp" -o "$work/pugixml.o"
    "$triplet-gcc-ar-posix" rcs "$prefix/lib/libpugixml.a" "$work/pugixml.o"
}

# For answers that a service compresses without being asked.
build_zlib() {
    local folder
    source_of zlib
    folder=$(unpacked zlib)
    keep_licence "$folder/LICENSE" zlib
    mkdir -p "$work/zlib-objects"
    (cd "$work/zlib-objects" && "$triplet-gcc-posix" -O2 -c "$folder"/*.c)
    cp "$folder/zlib.h" "$folder/zconf.h" "$prefix/include/"
    "$triplet-gcc-ar-posix" rcs "$prefix/lib/libz.a" "$work"/zlib-objects/*.o
}

build_openssl() {
    local folder
    source_of openssl
    folder=$(unpacked openssl)
    keep_licence "$folder/LICENSE.txt" openssl
    (
        cd "$folder"
        # The folder below --openssldir is never read: no-autoload-config.
        ./Configure mingw64 --cross-compile-prefix="$triplet-" CC=gcc-posix AR=gcc-ar-posix \
            RANLIB=gcc-ranlib-posix --prefix="$prefix" --libdir=lib --openssldir=/no/such/folder \
            no-shared no-dso no-dynamic-engine no-autoload-config no-tests no-legacy
        make -j"$jobs" build_libs
        make install_dev
    ) >"$work/openssl.log" 2>&1 || { tail -n 40 "$work/openssl.log" >&2; die "OpenSSL did not build"; }
}

# cmake_build NAME SOURCE OPTION...
cmake_build() {
    local name=$1 source=$2
    shift 2
    {
        TARSEL_WINDOWS_DEPS=$prefix cmake -S "$source" -B "$work/build-$name" -G Ninja \
            -DCMAKE_TOOLCHAIN_FILE="$here/mingw-w64-x86_64.cmake" -DTARSEL_WINDOWS_DEPS="$prefix" \
            -DCMAKE_BUILD_TYPE=Release -DCMAKE_INSTALL_PREFIX="$prefix" \
            -DCMAKE_INSTALL_LIBDIR=lib -DBUILD_SHARED_LIBS=OFF "$@" &&
            cmake --build "$work/build-$name" --parallel "$jobs" &&
            cmake --install "$work/build-$name"
    } >"$work/$name.log" 2>&1 || { tail -n 40 "$work/$name.log" >&2; die "$name did not build"; }
}

system_libraries='-lws2_32 -lcrypt32 -lgdi32 -ladvapi32 -luser32 -lbcrypt'

build_nghttp2() {
    local folder
    source_of nghttp2
    folder=$(unpacked nghttp2)
    keep_licence "$folder/COPYING" nghttp2
    # Two clocks would be found, of which it then uses neither whole.
    cmake_build nghttp2 "$folder" -DENABLE_LIB_ONLY=ON -DENABLE_STATIC_LIB=ON \
        -DENABLE_SHARED_LIB=OFF -DHAVE_CLOCK_GETTIME=OFF
}

build_curl() {
    local folder
    source_of curl
    folder=$(unpacked curl)
    keep_licence "$folder/COPYING" curl
    cmake_build curl "$folder" -DBUILD_CURL_EXE=OFF -DBUILD_TESTING=OFF -DHTTP_ONLY=ON \
        -DCURL_ZLIB=ON -DUSE_NGHTTP2=ON -DCMAKE_C_FLAGS=-DNGHTTP2_STATICLIB \
        -DCURL_USE_LIBSSH2=OFF -DCURL_USE_LIBPSL=OFF -DUSE_LIBIDN2=OFF \
        -DCURL_DISABLE_LDAP=ON -DENABLE_MANUAL=OFF -DCURL_USE_OPENSSL=ON \
        -DOPENSSL_ROOT_DIR="$prefix" -DOPENSSL_USE_STATIC_LIBS=ON \
        "-DCMAKE_C_STANDARD_LIBRARIES=$system_libraries"
}

build_libssh() {
    local folder
    source_of libssh
    folder=$(unpacked libssh)
    keep_licence "$folder/COPYING" libssh
    cmake_build libssh "$folder" -DWITH_SERVER=ON -DWITH_EXAMPLES=OFF -DWITH_GSSAPI=OFF \
        -DWITH_ZLIB=OFF -DWITH_PCAP=OFF -DUNIT_TESTING=OFF -DWITH_SYMBOL_VERSIONING=OFF \
        -DOPENSSL_ROOT_DIR="$prefix" -DOPENSSL_USE_STATIC_LIBS=ON \
        "-DCMAKE_C_STANDARD_LIBRARIES=$system_libraries"
}

say "building the Windows libraries in $prefix"
private_apt
link_headers
build_boost_filesystem
build_pugixml
build_zlib
build_openssl
build_nghttp2
build_curl
build_libssh
date -u +%Y-%m-%d >"$prefix/complete"
say "the Windows libraries are ready after $SECONDS s"
printf '%s\n' "$prefix"
