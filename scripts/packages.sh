# The one place that names Debian packages; sourced by the other scripts.
#
# Boost is always named with 1.81: the unversioned -dev packages are another version and would
# remove it. Each library's reason and licence stands in docs/dependencies.md.

# To build the library, the command line and the simulated BMC, and to run them.
TARSEL_BUILD_PACKAGES=(
    g++ cmake ninja-build
    libboost1.81-dev libboost-filesystem1.81-dev libboost-json1.81-dev
    libcurl4-openssl-dev libssl-dev libcli11-dev libspdlog-dev libpugixml-dev libssh-dev
    ca-certificates
)

# On top of that to build and run the tests and checks.
TARSEL_TEST_PACKAGES=(
    libgtest-dev libgmock-dev sblim-wbemcli
    ccache clang-format git python3 openssl procps
    ipmitool openipmi
    openssh-server openssh-client libnss-wrapper
    qemu-system-x86 cpio kmod
    dpkg-dev
)

# On top of the build packages for bench/run.sh.
TARSEL_BENCH_PACKAGES=(
    libbenchmark-dev python3
    lshw pci.ids qemu-system-x86 cpio kmod
)

# To build the library and the command line for Windows and to run them under Wine: docs/windows.md.
TARSEL_WINDOWS_PACKAGES=(
    g++-mingw-w64-x86-64-posix wine64 libgnutls30 googletest dpkg-dev make perl xz-utils
)

packages_turn_folder=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)/build
TARSEL_APT_OPTIONS=(-y -q --no-install-recommends --no-remove -o DPkg::Lock::Timeout=900
    -o Acquire::Retries=3)

missing_packages() {
    local name
    for name in "$@"; do
        dpkg-query -W -f='${Status}' "$name" 2>/dev/null | grep -q '^install ok installed$' ||
            echo "$name"
    done
}

package_lists_present() {
    compgen -G '/var/lib/apt/lists/*_Packages*' >/dev/null
}

refresh_package_lists() {
    say "reading the package lists"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q \
        -o DPkg::Lock::Timeout=900 -o Acquire::Retries=3 >&2 </dev/null 7>&- ||
        die "apt-get update failed; check the network and the package sources of this machine"
}

# A service that a package starts must not inherit the lock of install_packages.
apt_install() {
    as_root env DEBIAN_FRONTEND=noninteractive \
        apt-get "${TARSEL_APT_OPTIONS[@]}" install "$@" >&2 </dev/null 7>&-
}

install_missing() {
    local missing
    mapfile -t missing < <(missing_packages "$@")
    if [ "${#missing[@]}" -eq 0 ]; then
        say "all needed packages are installed"
        return 0
    fi
    package_lists_present || refresh_package_lists
    say "installing: ${missing[*]}"
    apt_install "${missing[@]}" && return 0
    # Lists that are too old name files that are gone; read them again once.
    refresh_package_lists
    apt_install "${missing[@]}" ||
        die "these packages could not be installed: ${missing[*]}" \
            "(an installed libboost-dev conflicts with Boost 1.81: remove it first)"
}

# install_packages NAME... : installs what is not there yet; removes nothing. Scripts that run at the
# same time take turns, because apt does not wait for its lock on the package lists.
install_packages() {
    command -v apt-get >/dev/null 2>&1 ||
        die "this script installs packages with apt-get and knows Debian 12 only;" \
            "install the packages of scripts/packages.sh by other means and build with CMake"
    mkdir -p "$packages_turn_folder"
    (
        flock 7
        install_missing "$@"
    ) 7>"$packages_turn_folder/packages.lock"
}
