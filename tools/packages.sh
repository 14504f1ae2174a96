# The Debian packages that building, running and testing take, and the function that installs those that are missing.
# Sourced by ./run and ./test.

build_packages=(g++ cmake ninja-build qt6-base-dev qt6-webengine-dev libqt6svg6 pkgconf libcairo2-dev)
# The web view shows the help; without it the program does with Qt's own text browser.
run_packages=(fonts-liberation2 libqt6webenginewidgets6)
virtual_screen_packages=(xvfb jwm)
# The judges of the files that the engine writes are other readers of the format: mdbtools, and an npm package.
test_packages=(libgtest-dev libgmock-dev locales mdbtools nodejs npm python3 poppler-utils xvfb clang-format)

as_root() {
    if [ "$(id -u)" -eq 0 ]; then "$@"; else sudo "$@"; fi
}

# need_packages NAME...: installs what isn't there; quiet and quick if nothing is missing.
need_packages() {
    local missing=() name
    for name in "$@"; do
        dpkg-query -W -f '${db:Status-Status}\n' "$name" 2>/dev/null | grep -qx installed || missing+=("$name")
    done
    # Another Node.js than Debian's serves as well.
    if command -v npm >/dev/null; then missing=("${missing[@]/#npm/}"); missing=("${missing[@]/#nodejs/}"); fi
    missing=($(printf '%s\n' "${missing[@]}" | grep . || true))
    [ ${#missing[@]} -eq 0 ] && return 0
    echo "Installing: ${missing[*]}"
    as_root env DEBIAN_FRONTEND=noninteractive apt-get update -q
    as_root env DEBIAN_FRONTEND=noninteractive apt-get install -q -y --no-install-recommends "${missing[@]}"
}

# The npm reader of the format, in a folder of the build tree; the tests find it there, and say so plainly when it isn't.
need_mdb_reader() {
    local folder=build/mdb-reader
    [ -d "$folder/node_modules/mdb-reader" ] && return 0
    mkdir -p "$folder"
    npm install --silent --no-audit --no-fund --prefix "$folder" mdb-reader@3.2.0 ||
        echo "The npm package mdb-reader could not be installed; its judgement is left out of the tests."
}
