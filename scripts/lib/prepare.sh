# shellcheck shell=bash
# To be sourced by the scripts beside this folder: installs what is missing, and builds.

repository=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)

say() { printf '== %s\n' "$*"; }
fail() {
    printf 'Error: %s\n' "$*" >&2
    exit 1
}

# wanted_packages NEED...: the names that scripts/packages.txt lists for these needs.
wanted_packages() {
    local need
    for need in "$@"; do
        awk -v need="$need" '$1 == need { print $2 }' "$repository/scripts/packages.txt"
    done
}

is_installed() {
    [ "$(dpkg-query -W -f='${db:Status-Status}' "$1" 2>/dev/null || true)" = installed ]
}

as_root() {
    if [ "$(id -u)" -eq 0 ]; then
        "$@"
    else
        sudo "$@"
    fi
}

# install_packages NEED...: asks the package manager only when something is missing.
install_packages() {
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        say "This is no Debian system, so nothing is installed. Needed are what Debian calls:"
        wanted_packages "$@" | paste -sd ' ' -
        return
    fi
    local package missing=()
    for package in $(wanted_packages "$@"); do
        is_installed "$package" || missing+=("$package")
    done
    [ "${#missing[@]}" -gt 0 ] || return 0
    if [ "$(id -u)" -ne 0 ] && ! command -v sudo >/dev/null; then
        fail "these packages are missing, and there is no sudo to install them with: ${missing[*]}"
    fi
    say "Installing what is missing: ${missing[*]}"
    as_root apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# build PRESET [TARGET...]: configures and builds in build/PRESET. With targets named, the tests are left out: they need
# packages that the program does not.
build() {
    local preset=$1 targets=() tests=ON
    shift
    if [ $# -gt 0 ]; then
        targets=(--target "$@")
        tests=OFF
    fi
    say "Building (build/$preset)"
    (cd "$repository" && cmake --preset "$preset" -DBUILD_TESTING="$tests" >/dev/null && cmake --build --preset "$preset" "${targets[@]}")
}

# Qt and file names need a UTF-8 locale; a fresh machine often has none set.
use_utf8() {
    case "${LC_ALL:-${LC_CTYPE:-${LANG:-}}}" in
        *[Uu][Tt][Ff]*8) ;;
        *) export LC_ALL=C.UTF-8 ;;
    esac
}
