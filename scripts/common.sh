# What ./run and ./test share. Sourced by bash, from the project's root.

# need PACKAGE...: installs what is missing with apt; says what it does.
need() {
    local missing=() package
    for package in "$@"; do
        dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q '^install ok installed$' || missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return 0
    local sudo=
    if [ "$(id -u)" -ne 0 ]; then
        if ! command -v sudo >/dev/null; then
            echo "Missing packages: ${missing[*]}. Install them as root: apt-get install ${missing[*]}" >&2
            exit 1
        fi
        sudo=sudo
    fi
    echo "Installing ${missing[*]}"
    $sudo apt-get update -qq
    $sudo env DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

BUILD_PACKAGES=(g++ cmake ninja-build pkg-config libsdl2-dev libsdl2-image-dev libgtest-dev libgmock-dev
                libbenchmark-dev libfreetype-dev libpng-dev)

# configure PRESET: into build/PRESET, its output in build/PRESET.log.
configure() {
    cmake --preset "$1" >"build/$1.log" 2>&1 || { cat "build/$1.log" >&2; return 1; }
}

# build PRESET [TARGET...]: configures and builds into build/PRESET.
build() {
    local preset=$1
    shift
    echo "Building $preset"
    configure "$preset" || return 1
    # Another compiler than last time has made CMake forget the preset's other settings.
    if grep -q 'require your cache to be deleted' "build/$preset.log"; then
        configure "$preset" || return 1
    fi
    cmake --build --preset "$preset" ${1:+--target "$@"} >"build/$preset.log" 2>&1 || {
        grep -vE '^\[[0-9]+/[0-9]+\] (Building|Linking)' "build/$preset.log" >&2
        return 1
    }
}
