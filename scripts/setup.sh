# Sourced by ./run, ./test, .ci/run and scripts: installs missing packages and builds.

# Lets a compiler cache, where there is one, share its entries between checkouts in different folders.
export CCACHE_BASEDIR=$PWD CCACHE_NOHASHDIR=1

say() { printf '%s\n' "$*"; }
fail() { printf '%s: %s\n' "$(basename "$0")" "$*" >&2; exit 1; }

# need PACKAGE...: installs the missing ones of these Debian packages.
need() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q 'install ok installed' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    command -v apt-get >/dev/null || fail "there is no apt-get to install the missing packages: ${missing[*]}"
    local as_root=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || fail "install the missing packages as root: ${missing[*]}"
        as_root=(sudo)
    fi
    say "Installing: ${missing[*]}"
    local log
    log=$(mktemp)
    if ! { "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get update -qq &&
           "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
        tail -n 5 "$log" >&2
        rm -f "$log"
        fail "could not install: ${missing[*]}"
    fi
    rm -f "$log"
}

# build FOLDER CMAKE-ARGUMENT... [-- TARGET...]: configures quietly and builds. With CI set warnings are errors.
build() {
    local folder=$1
    shift
    local arguments=() log
    while [ $# -gt 0 ] && [ "$1" != "--" ]; do arguments+=("$1"); shift; done
    [ $# -gt 0 ] && shift
    log=$(mktemp)
    if ! cmake -S . -B "$folder" -G Ninja ${CI:+-DEMDISK_WERROR=ON} "${arguments[@]}" >"$log" 2>&1; then
        cat "$log" >&2
        rm -f "$log"
        fail "cannot configure $folder"
    fi
    rm -f "$log"
    NINJA_STATUS="[%f/%t] " cmake --build "$folder" ${1:+--target "$@"} || fail "cannot build in $folder"
}

packages_run="g++ cmake ninja-build libcli11-dev nlohmann-json3-dev"
# The wizard also needs a resource compiler, and Qt with a font for its window.
packages_wizard="binutils-mingw-w64-i686 qt6-base-dev fonts-liberation"
# The Windows product is built with the compiler variant without POSIX threads.
packages_windows="g++-mingw-w64-i686-win32 zip"
packages_test="$packages_run $packages_wizard libgtest-dev libunicorn-dev qemu-system-x86 mtools dosfstools attr
    pkg-config man-db zsh fish dpkg-dev file"
packages_ci="$packages_test $packages_windows clang clang-format clang-tidy cppcheck libclang-rt-14-dev googletest git
    g++-mingw-w64-i686-posix g++-mingw-w64-x86-64-posix wine64 wine xvfb mmdebstrap arch-test"
