# What the scripts share. Sourced, not run.
set -euo pipefail
root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$root"

jobs=${QUOR2D_JOBS:-$(nproc)}
build_packages=(cmake g++ libgmp-dev libgtest-dev pkg-config)

# Used where they are, never required. Both variables count at the first configuration of a build directory.
if command -v ninja >/dev/null; then
    export CMAKE_GENERATOR=${CMAKE_GENERATOR:-Ninja}
else
    build_packages+=(make)
fi
if command -v ccache >/dev/null; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
fi

die() {
    printf '%s: %s\n' "$(basename "$0")" "$*" >&2
    exit 1
}

# quietly <title> <command...>: runs the command; its output is shown only when it fails.
quietly() {
    local title=$1 log
    shift
    log=$(mktemp)
    printf '%s ...\n' "$title"
    if ! "$@" >"$log" 2>&1 </dev/null; then
        cat "$log" >&2
        rm -f "$log"
        die "failed: $title"
    fi
    rm -f "$log"
}

apt_install() {
    local as_root=()
    [ "$(id -u)" = 0 ] || as_root=(sudo)
    "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@" && return
    # The package lists may be missing or old.
    "${as_root[@]}" apt-get update &&
        "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive apt-get install -y --no-install-recommends "$@"
}

# need_packages <package...>: installs the Debian packages that are missing.
need_packages() {
    local package missing=()
    command -v dpkg-query >/dev/null || return 0 # not a Debian: the configuration step names what is missing
    for package; do
        dpkg-query -W -f='${Status}\n' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -gt 0 ] || return 0
    if [ "$(id -u)" != 0 ] && ! command -v sudo >/dev/null; then
        die "please install as root: apt-get install ${missing[*]}"
    fi
    if [ "$(id -u)" != 0 ]; then
        sudo -v || die "please install as root: apt-get install ${missing[*]}"
    fi
    quietly "Installing ${missing[*]}" apt_install "${missing[@]}"
}

# want_packages <package...>: installs what can be installed; what needs the others is then skipped.
want_packages() {
    local package
    for package; do
        (need_packages "$package") || printf 'Going on without %s\n' "$package"
    done
}

# leave_root <arguments of the script...>: called through sudo on a user's clone, goes on as that user, so that nothing
# in the clone comes to belong to root.
leave_root() {
    if [ "$(id -u)" = 0 ] && [ "${SUDO_UID:-0}" != 0 ] && [ "$(stat -c %u "$root")" = "$SUDO_UID" ]; then
        exec sudo -H -u "#$SUDO_UID" -- "$root/scripts/$(basename "$0")" "$@"
    fi
}

# configure <preset> [cmake options...]: prepares build/<preset>.
configure() {
    local preset=$1 cache=build/$1/CMakeCache.txt
    shift
    mkdir -p build 2>/dev/null && [ -w build ] || die "cannot write to $root/build"
    if [ -e "$cache" ]; then
        [ -w "$cache" ] || die "$root/build/$preset belongs to another user: remove it first"
        # A clone that was moved or copied: the cache holds the old place.
        grep -qxF "CMAKE_HOME_DIRECTORY:INTERNAL=$root" "$cache" || rm -rf "build/$preset"
    fi
    quietly "Configuring build/$preset" cmake --preset "$preset" \
        ${QUOR2D_WERROR:+-DQUOR2D_WERROR=$QUOR2D_WERROR} "$@"
}

# build <preset> [targets...]: builds what changed since the last time.
build() {
    local preset=$1
    shift
    quietly "Building build/$preset" cmake --build "build/$preset" --parallel "$jobs" ${1:+--target "$@"}
}
