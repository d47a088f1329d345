# Shared by the scripts of this folder; sourced, never run. Messages go to stderr, so that a
# command's own output stays clean on stdout.

say() { printf '%s\n' "== $*" >&2; }

die() {
    printf '%s\n' "error: $*" >&2
    exit 1
}

# Runs a command with the rights to install packages.
as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    elif command -v sudo >/dev/null 2>&1; then
        sudo "$@"
    else
        die "installing packages needs root rights: run this as root, or install sudo"
    fi
}

# How many compilers may run at once: one a core, and about 1.5 GB of free memory for each, because
# the simulator's networking templates take that much.
parallel_jobs() {
    local cores memory_kib by_memory
    cores=$(nproc 2>/dev/null || echo 1)
    memory_kib=$(awk '/^MemAvailable:/ {print $2}' /proc/meminfo 2>/dev/null)
    by_memory=$(( ${memory_kib:-1500000} / 1500000 ))
    [ "$by_memory" -ge 1 ] || by_memory=1
    [ "$by_memory" -lt "$cores" ] && cores=$by_memory
    echo "$cores"
}

# Compiler cache arguments for CMake, one a line; nothing where ccache is not installed.
compiler_launcher() {
    if command -v ccache >/dev/null 2>&1; then
        echo "-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"
    fi
}
