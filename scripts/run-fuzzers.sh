#!/usr/bin/env bash
# Builds the libFuzzer targets with clang and runs each for FUZZ_SECONDS (60 by default) from
# a seed corpus of drawings and formatted texts written by the toolkit itself, and of design
# files written by tools/dgnwriter for the DGN reader. Any finding fails the run.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds="${FUZZ_SECONDS:-60}"
cmake --preset fuzz >/dev/null
cmake --build --preset fuzz

work=build/fuzz/corpus
rm -rf "$work"
mkdir -p "$work/seeds" "$work/plw" "$work/plx" "$work/appinfo" "$work/property_set" "$work/dgn" \
    "$work/round_trip" "$work/formatted_text"
build/fuzz/bin/make_fuzz_seeds "$work/seeds"
cp "$work"/seeds/*.plw "$work/plw/"
cp "$work"/seeds/*.plx "$work/plx/"
cp "$work"/seeds/*.plw "$work/appinfo/"
cp "$work"/seeds/*.txt "$work/property_set/"
cp "$work"/seeds/*.plw "$work"/seeds/*.plx "$work/round_trip/"
cp "$work"/seeds/*.mtext "$work/formatted_text/"
build/fuzz/bin/make_dgn_samples "$work/dgn"

fuzz() {
    local target="$1" corpus="$2"
    echo "=== fuzzing ${target} for ${seconds} s"
    local log="build/fuzz/${target}.log"
    # The whole log is kept; a run without finding shows its final statistics only.
    if ! build/fuzz/bin/${target} -max_total_time="$seconds" -rss_limit_mb=2048 \
        -print_final_stats=1 -artifact_prefix="build/fuzz/${target}-" "$work/$corpus" \
        >"$log" 2>&1; then
        tail -n 60 "$log"
        echo "fuzzing: ${target} found a failure; the input is beside its log in build/fuzz/"
        return 1
    fi
    grep '^stat::' "$log"
}

fuzz plw_reader_fuzz plw
fuzz plx_reader_fuzz plx
fuzz save_round_trip_fuzz round_trip
fuzz formatted_text_fuzz formatted_text
fuzz appinfo_reader_fuzz appinfo
fuzz property_set_fuzz property_set
fuzz dgn_reader_fuzz dgn
echo "fuzzing: no finding"
