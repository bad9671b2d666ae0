# Common functions of the scripts, to be sourced. Sets `root` to the directory of the project, and defines the lists of
# packages and the functions below.

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)

build_packages="g++ cmake ninja-build qtbase5-dev libreadstat-dev libcli11-dev rapidjson-dev libsqlite3-dev libsodium-dev"
# The programs that load programs and the bindings are tested with. npm fetches DuckDB, which is not in Debian.
engine_packages="sqlite3 postgresql r-base-core r-cran-haven r-cran-jsonlite python3 python3-pip python3-pandas python3-dask python3-distributed pspp readstat"
command -v npm >/dev/null || engine_packages+=" npm"
check_packages="$build_packages $engine_packages clang clang-format doxygen dpkg-dev file pkg-config binutils libbenchmark-dev nlohmann-json3-dev libxml2-utils appstream desktop-file-utils shared-mime-info lld git locales python3-jsonschema fish zsh"
browser_packages="chromium python3"
analysis_packages="$build_packages clang clang-tidy clazy"
qt6_packages="qt6-base-dev qt6-5compat-dev"

# Runs a step and shows what it printed only if it fails.
quietly() {
    local log status=0
    log=$(mktemp)
    "$@" >"$log" 2>&1 </dev/null || status=$?
    [ "$status" = 0 ] || cat "$log" >&2
    rm -f "$log"
    return "$status"
}

# Calls apt-get as root. If another program holds the lock of the package lists, waits until it is released.
apt_get() {
    local as_root=""
    [ "$(id -u)" = 0 ] || as_root=sudo
    quietly $as_root env DEBIAN_FRONTEND=noninteractive apt-get -o DPkg::Lock::Timeout=600 "$@"
}

# Installs those of the named Debian packages that are missing. On a system without apt, prints the names of the
# packages and fails. A script calls this before its first step, with all of its packages.
install_packages() {
    local missing="" package
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
    echo "Installing$missing" >&2
    apt_get update -qq && apt_get install -y -qq --no-install-recommends $missing
}

# Installs the package of DuckDB for Node in build/duckdb, in the release that tests/load/package.json states.
install_duckdb() {
    local directory="$root/build/duckdb"
    cmp -s "$root/tests/load/package.json" "$directory/package.json" && [ -d "$directory/node_modules/@duckdb" ] && return
    echo "Installing DuckDB" >&2
    mkdir -p "$directory"
    cp "$root/tests/load/package.json" "$directory"
    quietly npm install --prefix "$directory" --no-audit --no-fund --no-package-lock
}

# Whether the preset `qt6` can be built.
has_qt6() {
    pkg-config --exists 'Qt6Core >= 6.4' Qt6Core5Compat Qt6Widgets Qt6Test 2>/dev/null
}

# Configures and builds a preset, or some of its targets.
build_preset() {
    local preset=$1
    shift
    quietly cmake -S "$root" --preset "$preset" || return 1
    quietly cmake --build "$root/build/$preset" ${@:+--target "$@"}
}
