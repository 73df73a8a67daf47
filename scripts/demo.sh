#!/usr/bin/env bash
# Builds LodeQDB and shows its main job: a sample project of drawings is written, and the
# client lists everything its root drawing depends on, at every depth.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh
cmake --preset release >/dev/null
# The client and the modules it loads, nothing else: the test command builds the rest.
cmake --build --preset release --target lodeqdb

client=build/release/bin/lodeqdb
root=$("$client" sample build/sample-project | tail -n 1)
echo "== what $root depends on, at every depth, following DGN design files"
"$client" tree --dgn "$root"
echo "== who refers to the shared title block"
"$client" parents "$root" build/sample-project/blocks/title.plw
echo "== the kind of application that made it, and its format generation"
"$client" type "$root"
"$client" format "$root"
echo "== the sample's DGN design file: its models, its references, translated into a drawing"
"$client" dgn-models build/sample-project/survey/site.dgn
"$client" dgn-refs build/sample-project/survey/site.dgn
LODEQDB_ROOT="$PWD/build/sample-project/host" \
    "$client" dgn-convert build/sample-project/survey/site.dgn build/sample-project/survey/site.plw
