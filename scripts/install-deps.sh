#!/usr/bin/env bash
# Installs the Debian packages LodeQDB needs to build, test and benchmark; with --libraries,
# only those that the libraries, modules and client need (what the demo builds).
set -euo pipefail

packages=(
    cmake ninja-build g++ ccache
    libicu-dev libboost-dev zlib1g-dev
    libcli11-dev nlohmann-json3-dev
    libzip-dev libssl-dev libsqlite3-dev libgraphviz-dev pkg-config libisal-dev
)
if [ "${1:-}" != "--libraries" ]; then
    # The tests, benchmarks, fuzz targets and the clang build.
    packages+=(clang-14 libclang-rt-14-dev libgtest-dev libgmock-dev libbenchmark-dev
               libexpat1-dev)
fi

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done
if [ "${#missing[@]}" -eq 0 ]; then
    exit 0
fi

sudo=""
if [ "$(id -u)" -ne 0 ]; then
    if command -v sudo >/dev/null 2>&1; then
        sudo="sudo"
    else
        echo "install-deps: these Debian packages are missing: ${missing[*]}" >&2
        echo "install-deps: installing them needs root; run as root, or install them with" >&2
        echo "    apt-get install --no-install-recommends ${missing[*]}" >&2
        exit 1
    fi
fi
echo "install-deps: installing ${missing[*]}"
export DEBIAN_FRONTEND=noninteractive
# apt-get prints dpkg's unpacking lines even with -qq; they are kept for a failure only.
log=$(mktemp)
if ! { $sudo apt-get update -qq && \
       $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"; } >"$log" 2>&1; then
    cat "$log" >&2
    rm -f "$log"
    exit 1
fi
rm -f "$log"
