#!/usr/bin/env bash
# Builds the client and shows what LodeQDB does, one capability at a time, on a sample
# project of drawings that the client writes itself. Each step says first what it shows.
set -euo pipefail
cd "$(dirname "$0")/.."

./scripts/install-deps.sh --libraries
echo "demo: building the client and the modules it loads (a few minutes the first time)"
# The libraries, modules and client, nothing else: the test command builds the rest (and
# configures the tree again with its tests).
cmake --preset release -DLODEQDB_BUILD_TESTS=OFF -DLODEQDB_BUILD_BENCHMARKS=OFF >/dev/null
cmake --build --preset release --target lodeqdb >/dev/null

client=build/release/bin/lodeqdb
project=build/sample-project
rm -rf "$project"
root=$("$client" sample "$project" | tail -n 1)

step() {
    echo
    echo "== $1"
    echo "\$ lodeqdb ${*:2}"
    "$client" "${@:2}"
}

echo "demo: a sample project of drawings was written to $project; its root drawing is $root"
step "Everything the root drawing depends on, at every depth (entering DGN design files too)" \
    tree --dgn "$root"
step "Only what it refers to directly" children "$root"
step "Who in the root's tree refers to the shared title block" \
    parents "$root" "$project/blocks/title.plw"
step "Which kind of application made the root drawing" type "$root"
step "The format generation its file was written in" format "$root"
step "Its layers" layers "$root"
step "Its layouts (model and paper sheets), in tab order" layouts --sort "$root"
step "Its named plot settings" plotsettings "$root"
step "Its revision table: who changed what, and when" revtable show "$root"
step "The DGN design file's models" dgn-models "$project/survey/site.dgn"
step "The files the DGN design file attaches" dgn-refs "$project/survey/site.dgn"
mkdir -p "$project/translated"
export LODEQDB_ROOT="$PWD/$project/host"
step "The DGN design file translated into a drawing of its own folder" \
    dgn-convert "$project/survey/site.dgn" "$project/translated/site.plw"
