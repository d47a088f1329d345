#!/usr/bin/env bash
# Packs the built tree, unpacks each package as a stranger would, builds the consumer against it and
# runs it. Any failing step fails the test.
#
# Usage: package_test.sh BUILD_FOLDER SOURCE_FOLDER VERSION [TOOLCHAIN_FILE EMULATOR]
# The last two are for packages of another system.
set -euo pipefail
build=$1
source=$2
version=$3
toolchain=${4-}
emulator=${5-}
. "$source/scripts/common.sh"

private=$(mktemp -d)
trap 'rm -rf "$private"' EXIT
umask 022
# Names of files here are UTF-8.
export LC_ALL=C.UTF-8

# unpack PACKAGE FOLDER
unpack() {
    mkdir -p "$2"
    case $1 in
    *.deb) dpkg-deb -x "$1" "$2" ;;
    *) (cd "$2" && cmake -E tar xf "$1") ;;
    esac
}

# The Debian package alone says what it needs.
check_debian_fields() {
    local depends
    depends=$(dpkg-deb -f "$1" Depends)
    for library in libc6 libcurl4 libssl3 libssh-4; do
        [[ $depends == *"$library"* ]] || die "${1##*/} does not depend on $library: $depends"
    done
    [ "$(dpkg-deb -I "$1" conffiles | grep -c '_systems_list.txt$')" -eq 6 ] ||
        die "an upgrade to ${1##*/} would undo edits of the system lists"
    [ "$(dpkg-deb -f "$1" Version)" = "$version" ] || die "${1##*/} has another version"
}

# check_files PREFIX: everything a front end needs is there, the lists beside the library.
check_files() {
    local prefix=$1 library file lists
    library=lib/libupdate_scan_service.so
    [ -z "$toolchain" ] || library=bin/update_scan_service.dll
    for file in "$library" include/tarsel/service/update_scan_service/service_update_scan.h \
        share/doc/tarsel/LICENSE; do
        [ -e "$prefix/$file" ] || die "$file is not in the package"
    done
    lists=$(find "$prefix/${library%/*}" -maxdepth 1 -name '*_systems_list.txt' | wc -l)
    [ "$lists" -eq 6 ] || die "$lists system lists are beside the library, not 6"
    [ -z "$toolchain" ] && return 0
    [ -e "$prefix/lib/libupdate_scan_service.dll.a" ] || die "the import library is missing"
    lists=$(find "$prefix/share/doc/tarsel/licences" -type f -size +0 | wc -l)
    [ "$lists" -ge 12 ] || die "$lists licences of others are in the package, not 12"
}

# run PROGRAM ARGUMENT...: its output with the line ends of this system.
run() { ${emulator:+"$emulator"} "$@" | tr -d '\r'; }

# check_tool PROGRAM FOLDER: says its version, and scans a recorded machine into a folder of any name.
# A part of that machine is a program for Linux: elsewhere the scan is partial.
check_tool() {
    local status=0 output="$2/out ü中"
    [ "$(run "$1" --version)" = "tarsel $version" ] || die "the tool does not say its version"
    run "$1" scan --local --sysroot "$source/simulators/scenarios/own-server/sysroot" \
        --output "$output" >/dev/null 2>"$2/scan.log" || status=$?
    [ "$status" -eq 0 ] || { [ -n "$toolchain" ] && [ "$status" -eq 3 ]; } ||
        die "the tool's scan ended with $status: $(cat "$2/scan.log")"
    grep -q '<MT>' "$output/Tarsel-update-scan.xml" || die "the scan file names no machine type"
    [ -s "$output/tarsel.log" ] || die "the scan left no log"
}

# check_consumer PREFIX BUILD
check_consumer() {
    local prefix=$1 folder=$2 said program=$2/consumer
    cmake -S "$source/examples/consumer" -B "$folder" -G Ninja \
        ${toolchain:+"-DCMAKE_TOOLCHAIN_FILE=$toolchain"} \
        -Dtarsel_DIR="$prefix/lib/cmake/tarsel" >/dev/null
    cmake --build "$folder" >/dev/null
    if [ -n "$toolchain" ]; then
        # Windows looks for libraries beside the program.
        program=$prefix/bin/consumer.exe
        cp "$folder/consumer.exe" "$program"
    fi
    said=$(run "$program")
    [ "$said" = "$version Scan SCAN.CONTENT.MT" ] || die "the consumer said: $said"
}

check_package() {
    local prefix folder=$private/${1##*/}.d command=tarsel
    unpack "$1" "$folder/dir ü中"
    prefix=$(find "$folder/dir ü中" -type d -path '*/lib/cmake/tarsel')
    [ -n "$prefix" ] || die "${1##*/} holds no CMake package"
    prefix=${prefix%/lib/cmake/tarsel}
    check_files "$prefix"
    [ -z "$toolchain" ] || command=tarsel.exe
    check_tool "$prefix/bin/$command" "$folder"
    check_consumer "$prefix" "$folder/build"
    [[ $1 != *.deb ]] || check_debian_fields "$1"
    say "ok: ${1##*/}"
}

expected=2
[ -z "$toolchain" ] || expected=1
cpack --config "$build/CPackConfig.cmake" -B "$private/packages" >"$private/cpack.log" 2>&1 || {
    cat "$private/cpack.log"
    die "packing failed"
}
mapfile -t packages < <(find "$private/packages" -maxdepth 1 -type f | sort)
[ "${#packages[@]}" -eq "$expected" ] || die "packed was: ${packages[*]}"
for package in "${packages[@]}"; do check_package "$package"; done
