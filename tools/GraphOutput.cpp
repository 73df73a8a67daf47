// A dependency graph as DOT, JSON and, through Graphviz's library, SVG.
#include "tools/GraphOutput.h"

#include <graphviz/cgraph.h>
#include <graphviz/gvc.h>

#include <memory>
#include <nlohmann/json.hpp>
#include <stdexcept>

#include "tools/EnumNames.h"
#include "tools/Json.h"

namespace lodeqdb::cli {
namespace {

// A DOT string literal: quotes and backslashes escaped, other bytes as they are.
std::string Quoted(const std::string& text) {
    std::string out = "\"";
    for (char c : text) {
        if (c == '"' || c == '\\') out += '\\';
        if (c == '\n') {
            out += "\\n";
            continue;
        }
        out += c;
    }
    return out + '"';
}

std::string Shape(int type) {
    switch (type) {
        case lode::Plw: return "box";
        case lode::Dgn: return "component";
        case lode::Pdf: return "note";
        case lode::Image: return "ellipse";
        default: return "plaintext";
    }
}

// The name below the root's folder, or the full name for a file elsewhere.
std::string Label(const std::string& path, const std::string& rootFolder) {
    if (!rootFolder.empty() && path.rfind(rootFolder, 0) == 0) return path.substr(rootFolder.size());
    return path;
}

}  // namespace

std::string GraphDot(const LodeQDBIndex::DependencyGraph& graph) {
    std::string rootFolder;
    if (!graph.nodes.empty()) {
        const std::string& root = graph.nodes.front().path;
        rootFolder = root.substr(0, root.find_last_of('/') + 1);
    }
    std::string dot = "digraph dependencies {\n  rankdir=LR;\n  node [fontsize=10];\n";
    for (size_t i = 0; i < graph.nodes.size(); ++i) {
        const LodeQDBIndex::GraphNode& node = graph.nodes[i];
        dot += "  n" + std::to_string(i) + " [label=" + Quoted(Label(node.path, rootFolder)) +
               ", tooltip=" + Quoted(node.path) + ", shape=" + Shape(node.type);
        if (node.missing) dot += ", style=dashed, color=red, fontcolor=red";
        if (i == 0) dot += ", penwidth=2";
        dot += "];\n";
    }
    for (const LodeQDBIndex::GraphEdge& edge : graph.edges) {
        dot += "  n" + std::to_string(edge.from) + " -> n" + std::to_string(edge.to);
        if (edge.status == PwDb::XrefFileMissing || edge.status == PwDb::XrefFilePresentUnresolved)
            dot += " [style=dashed, color=red]";
        dot += ";\n";
    }
    return dot + "}\n";
}

std::string GraphJson(const LodeQDBIndex::DependencyGraph& graph) {
    nlohmann::json out = {{"nodes", nlohmann::json::array()}, {"edges", nlohmann::json::array()}};
    for (size_t i = 0; i < graph.nodes.size(); ++i) {
        const auto& node = graph.nodes[i];
        out["nodes"].push_back({{"id", i},
                                {"path", node.path},
                                {"type", node.type},
                                {"typeName", FileTypeName(static_cast<lode::FileType>(node.type))},
                                {"missing", node.missing}});
    }
    for (const auto& edge : graph.edges)
        out["edges"].push_back(
            {{"from", edge.from},
             {"to", edge.to},
             {"status", edge.status},
             {"statusName", XrefStatusName(static_cast<PwDb::XrefStatus>(edge.status))}});
    return DumpJson(out);
}

std::string GraphSvg(const LodeQDBIndex::DependencyGraph& graph) {
    const std::string dot = GraphDot(graph);
    std::unique_ptr<GVC_t, int (*)(GVC_t*)> context(gvContext(), gvFreeContext);
    if (!context) throw std::runtime_error("Graphviz: no context");
    std::unique_ptr<Agraph_t, int (*)(Agraph_t*)> parsed(agmemread(dot.c_str()), agclose);
    if (!parsed) throw std::runtime_error("Graphviz couldn't read the graph");
    if (gvLayout(context.get(), parsed.get(), "dot") != 0)
        throw std::runtime_error("Graphviz couldn't lay out the graph");
    char* data = nullptr;
    unsigned int length = 0;
    const int rendered = gvRenderData(context.get(), parsed.get(), "svg", &data, &length);
    std::string svg = rendered == 0 && data != nullptr ? std::string(data, length) : std::string();
    gvFreeRenderData(data);
    gvFreeLayout(context.get(), parsed.get());
    if (rendered != 0) throw std::runtime_error("Graphviz couldn't render the graph as SVG");
    return svg;
}

}  // namespace lodeqdb::cli
