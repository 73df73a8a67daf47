#!/usr/bin/env bash
# Builds LodeQDB and runs the command-line client: the library's message texts, found in
# the resource module of each locale.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
cmake --preset release >/dev/null
cmake --build --preset release

client=build/release/bin/lodeqdb
sample=/srv/drawings/Grundriss.plw
for locale in en-US de-DE; do
    for number in 101 102 103 104; do
        "$client" message "$number" "$sample" --locale "$locale"
    done
    "$client" message 105 --locale "$locale" --json
done
