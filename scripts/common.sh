# Shared by ./run, ./test and .ci/run: missing packages and builds. Sourced from the top folder.

# Packages of packages.txt that are not installed.
missing_packages() {
    local package
    grep -vE '^[[:space:]]*(#|$)' packages.txt | while read -r package; do
        dpkg-query -W -f='${db:Status-Status}\n' "$package" 2>/dev/null | grep -qx installed ||
            echo "$package"
    done
}

install_packages() {
    if ! command -v apt-get >/dev/null || ! command -v dpkg-query >/dev/null; then
        echo "kelvod builds on Debian; elsewhere install the counterparts of packages.txt" >&2
        return 0
    fi
    local missing
    missing=$(missing_packages)
    [ -n "$missing" ] || return 0
    echo "installing: $(echo "$missing" | tr '\n' ' ')" >&2
    local sudo=()
    if [ "$(id -u)" -ne 0 ]; then
        command -v sudo >/dev/null || { echo "no root and no sudo to install them" >&2; return 1; }
        sudo=(sudo)
    fi
    "${sudo[@]}" apt-get update -qq >&2
    # shellcheck disable=SC2086  # one word a package
    "${sudo[@]}" env DEBIAN_FRONTEND=noninteractive \
        apt-get install -qq -y --no-install-recommends $missing >/dev/null
}

# build PRESET [TARGET...]: configures and builds; the output is shown only when it fails.
build() {
    local preset=$1
    shift
    local log="build/$preset.log"
    mkdir -p build
    echo "building ($preset) ..." >&2
    if ! { cmake --preset "$preset" && cmake --build --preset "$preset" ${@:+--target "$@"}; } \
        >"$log" 2>&1; then
        grep -E 'error|Error|FAILED' -A 5 "$log" | head -n 60 >&2
        echo "the build failed; all of its output: $log" >&2
        return 1
    fi
}
