#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for FUZZ_SECONDS (60 by default) from
# a seed corpus of drawings written by the toolkit itself. Any finding fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${FUZZ_SECONDS:-60}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

work=build/fuzz/corpus
rm -rf "$work"
mkdir -p "$work/seeds" "$work/plw" "$work/plx"
build/fuzz/bin/make_fuzz_seeds "$work/seeds"
cp "$work"/seeds/*.plw "$work/plw/"
cp "$work"/seeds/*.plx "$work/plx/"

for reader in plw plx; do
    echo "=== fuzzing the ${reader} reader for ${seconds} s"
    build/fuzz/bin/${reader}_reader_fuzz -max_total_time="$seconds" -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="build/fuzz/${reader}-" "$work/$reader" 2>&1 |
        tail -n 30
done
echo "fuzzing: no finding"
