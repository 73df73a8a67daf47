// Writing a dependency graph: DOT and JSON written directly, SVG laid out and rendered by
// Graphviz's library.
#pragma once

#include <string>

#include <lodeqdb/index/DependencyGraph.h>

namespace lodeqdb::cli {

/// The graph in Graphviz's DOT language: one node a file, shaped by kind (box a drawing,
/// component a design file, note a PDF, ellipse an image, plain anything else), a missing
/// file dashed and red; each node labelled with its name relative to the root's folder.
std::string GraphDot(const LodeQDBIndex::DependencyGraph& graph);
/// {"nodes": [{"id", "path", "type", "typeName", "missing"}], "edges": [{"from", "to",
/// "status", "statusName"}]}, one line.
std::string GraphJson(const LodeQDBIndex::DependencyGraph& graph);
/// The DOT graph laid out by Graphviz's "dot" layout and rendered as SVG. Throws
/// std::runtime_error when Graphviz fails.
std::string GraphSvg(const LodeQDBIndex::DependencyGraph& graph);

}  // namespace lodeqdb::cli
