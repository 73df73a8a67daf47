#!/usr/bin/env bash
# Builds LodeQDB from scratch and runs every test: the optimised build (the installed
# package and its client included), then the whole suite under AddressSanitizer and
# UndefinedBehaviorSanitizer, then the tests of several threads under ThreadSanitizer, then
# the file readers under libFuzzer for a minute each; last,
# the builds a packager makes: plain configures without any preset, Release with g++ (all of
# it) and RelWithDebInfo with clang (the libraries, modules and client).
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

echo "=== tsan: several threads at once, under ThreadSanitizer (only what those tests need)"
rm -rf build/tsan
cmake --preset tsan >/dev/null
cmake --build --preset tsan
ctest --preset tsan

echo "=== fuzz: the drawing readers under libFuzzer"
./scripts/run-fuzzers.sh

echo "=== plain: cmake -DCMAKE_BUILD_TYPE=Release, as a packager builds"
rm -rf build/plain
cmake -S . -B build/plain -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build build/plain -j2

echo "=== plain: cmake -DCMAKE_BUILD_TYPE=RelWithDebInfo with clang 14"
rm -rf build/plain-clang
cmake -S . -B build/plain-clang -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo \
      -DCMAKE_CXX_COMPILER=clang++-14 -DLODEQDB_BUILD_TESTS=OFF -DLODEQDB_BUILD_BENCHMARKS=OFF \
      >/dev/null
cmake --build build/plain-clang -j2
