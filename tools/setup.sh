# What building and testing need on Debian 12; sourced by ./run and ./check. Missing packages are
# installed when this user may install them, and named otherwise.

build_packages=(g++ cmake ninja-build pkg-config libfmt-dev libcli11-dev libedit-dev)
check_packages=("${build_packages[@]}" clang libclang-rt-14-dev clang-format clang-tidy
                libgtest-dev libbenchmark-dev nlohmann-json3-dev python3 mandoc)

# need PACKAGE...: all of them are installed when this returns.
need() {
    local missing=() package
    for package in "$@"; do
        [ "$(dpkg-query -W -f='${db:Status-Status}' "$package" 2>/dev/null)" = installed ] ||
            missing+=("$package")
    done
    [ ${#missing[@]} -eq 0 ] && return
    local install=(apt-get)
    if [ "$(id -u)" != 0 ]; then
        if sudo -n true 2>/dev/null; then
            install=(sudo apt-get)
        else
            echo "Missing packages: ${missing[*]}" >&2
            echo "Install them with: apt-get install ${missing[*]}" >&2
            exit 1
        fi
    fi
    export DEBIAN_FRONTEND=noninteractive
    if ! { "${install[@]}" -qq update && "${install[@]}" -qq -y install "${missing[@]}"; } \
        >/tmp/tarven-setup.$$.log 2>&1; then
        cat /tmp/tarven-setup.$$.log >&2
        echo "These packages could not be installed: ${missing[*]}" >&2
        exit 1
    fi
    rm -f /tmp/tarven-setup.$$.log
}
