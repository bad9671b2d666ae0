# Shared by ./run and ./check; to be sourced. Sets `root`, and offers `install_packages` and `quietly`.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages="g++ cmake ninja-build qtbase5-dev libreadstat-dev libcli11-dev rapidjson-dev libsqlite3-dev"
check_packages="$build_packages clang clang-format doxygen dpkg-dev file pkg-config binutils libbenchmark-dev nlohmann-json3-dev libxml2-utils locales"
browser_packages="chromium python3"
analysis_packages="$build_packages clang clang-tidy clazy"

# Runs a step and shows what it printed only if it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || status=$?
    [ "$status" = 0 ] || cat "$log" >&2
    rm -f "$log"
    return "$status"
}

# Installs what is missing of the named Debian packages; elsewhere says what is needed and stops.
install_packages() {
    local missing="" package as_root=""
    if ! command -v dpkg-query >/dev/null || ! command -v apt-get >/dev/null; then
        [ -n "${VAN_HAVE_PACKAGES:-}" ] && return 0
        echo "This needs what these Debian packages hold: $*" >&2
        echo "Install them, then call again with VAN_HAVE_PACKAGES=1." >&2
        return 1
    fi
    for package in "$@"; do
        case $(dpkg-query -W -f '${db:Status-Abbrev}' "$package" 2>/dev/null) in
        ii*) ;;
        *) missing="$missing $package" ;;
        esac
    done
    [ -n "$missing" ] || return 0
    [ "$(id -u)" = 0 ] || as_root=sudo
    echo "Installing$missing" >&2
    export DEBIAN_FRONTEND=noninteractive
    quietly $as_root apt-get update -qq || return 1
    quietly $as_root apt-get install -y -qq --no-install-recommends $missing
}

# Configures and builds a preset, or some of its targets.
build_preset() {
    local preset=$1
    shift
    quietly cmake -S "$root" --preset "$preset" || return 1
    quietly cmake --build "$root/build/$preset" ${@:+--target "$@"}
}
