#!/usr/bin/env bash
# Builds LodeQDB from scratch and runs every test: the optimised build (the installed
# package and its client included), then the whole suite under AddressSanitizer and
# UndefinedBehaviorSanitizer, then the file readers under libFuzzer for a minute each; last,
# the build a packager makes: a plain Release configure without any preset.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh

# The compiler cache (when present) shares its results between clones of the tree.
export CCACHE_BASEDIR="$PWD" CCACHE_NOHASHDIR=1

for preset in release asan; do
    echo "=== ${preset}: configure, build, test"
    rm -rf "build/${preset}"
    cmake --preset "${preset}" >/dev/null
    cmake --build --preset "${preset}"
    ctest --preset "${preset}"
done

echo "=== fuzz: the drawing readers under libFuzzer"
./scripts/run-fuzzers.sh

echo "=== plain: cmake -DCMAKE_BUILD_TYPE=Release, as a packager builds"
rm -rf build/plain
cmake -S . -B build/plain -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build/plain -j2
