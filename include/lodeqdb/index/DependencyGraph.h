// The graph of what a drawing depends on, at every depth: one node per file, one edge per
// dependency record. Made by the nested walk (GraphByWalk) or from an index
// (FolderIndex::GraphBelow); the client draws it as DOT, SVG or JSON.
//
//   LodeQDBIndex::DependencyGraph graph = LodeQDBIndex::GraphByWalk("/srv/site.plw");
//   for (const auto& edge : graph.edges)
//       show(graph.nodes[edge.from].path, graph.nodes[edge.to].path);
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace LodeQDBIndex {

struct GraphNode {
    /// The file's full name, native bytes.
    std::string path;
    /// lode::FileType of the record that named it first (1 for the root).
    int type = 0;
    /// The file isn't there (a reference whose file is missing, or a name with no file).
    bool missing = false;
};

struct GraphEdge {
    size_t from = 0;
    size_t to = 0;
    /// The record's reference state (PwDb::XrefStatus; 0 for images and underlays).
    int status = 0;
};

/// Node 0 is the root. Nodes are in the order they are met, depth first; an edge per record
/// (a file that two drawings use has two edges in, a cycle an edge back).
struct DependencyGraph {
    std::vector<GraphNode> nodes;
    std::vector<GraphEdge> edges;
};

/// The graph below the drawing `root` (a full path) by the library's nested walk, design files
/// entered. A root that can't be read throws as LodeQDBUtil::ReadFileToDatabase does; a walk
/// that stops early gives what it met, and says so in `stopped` when given.
DependencyGraph GraphByWalk(const std::string& root, bool* stopped = nullptr);

}  // namespace LodeQDBIndex
