#!/usr/bin/env bash
# Installs the Debian packages LodeQDB needs to build, test and benchmark.
set -euo pipefail

packages=(
    cmake ninja-build g++ clang-14 libclang-rt-14-dev
    libicu-dev libboost-dev zlib1g-dev
    libgtest-dev libgmock-dev libbenchmark-dev
    libcli11-dev nlohmann-json3-dev ccache
)

missing=()
for package in "${packages[@]}"; do
    dpkg-query -W -f='${Status}' "$package" 2>/dev/null | grep -q "install ok installed" ||
        missing+=("$package")
done
if [ "${#missing[@]}" -eq 0 ]; then
    exit 0
fi

sudo=""
[ "$(id -u)" -eq 0 ] || sudo="sudo"
export DEBIAN_FRONTEND=noninteractive
$sudo apt-get update -qq
$sudo apt-get install -y -qq --no-install-recommends "${missing[@]}"
