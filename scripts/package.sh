#!/usr/bin/env bash
# Makes the package of this tool that `tarsel scan --remoteos --package-dir` carries to servers:
# tarsel-<version>-<system>-<machine>.tar.gz, with the libraries inside that a server may lack. It
# runs on machines of the same kind whose C library is not older than this machine's.
#
# Usage: scripts/package.sh [OUTPUT_DIR]
#        scripts/package.sh --from BUILD_DIR [OUTPUT_DIR]   packs a build that is there already,
#                                                           with libraries where it was configured
#                                                           with TARSEL_BUNDLE_LIBRARIES
# Prints the package's path. The first form installs what is needed to build, without questions.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
. "$root/scripts/common.sh"
. "$root/scripts/packages.sh"

stage=
trap '[ -z "$stage" ] || rm -rf "$stage"' EXIT

build_release() {
    local launcher
    install_packages "${TARSEL_BUILD_PACKAGES[@]}"
    mapfile -t launcher < <(compiler_launcher)
    (cd "$root" && cmake --preset package "${launcher[@]}" >&2 &&
        cmake --build --preset package --target tarsel --parallel "$(parallel_jobs)" >&2)
}

# Version and machine are what the tool and this machine say themselves.
package_name() {
    local version
    version=$("$1/bin/tarsel" --version) || die "the built tool does not run"
    echo "tarsel-${version#tarsel }-$(uname -s)-$(uname -m)"
}

build=$root/build/package
if [ "${1-}" = --from ]; then
    [ $# -ge 2 ] || die "--from needs a build folder"
    build=$2
    shift 2
else
    build_release
fi
output=${1:-$root/build/packages}
[ -f "$build/cmake_install.cmake" ] || die "$build is no build folder"

umask 022
mkdir -p "$output"
stage=$(mktemp -d)
cmake --install "$build" --prefix "$stage/files" --strip >&2
name=$(package_name "$stage/files")
mv "$stage/files" "$stage/$name"
tar -C "$stage" --owner=0 --group=0 --numeric-owner -czf "$output/$name.tar.gz.new" "$name"
mv "$output/$name.tar.gz.new" "$output/$name.tar.gz"
echo "$output/$name.tar.gz"
