// The reference graph, built from the state resolution left in the reference blocks.
#include "toolkit/xref/PwDbXrefGraph.h"

#include <algorithm>
#include <map>
#include <set>

#include "toolkit/db/PwDbBlockTable.h"
#include "toolkit/db/PwDbDatabase.h"
#include "toolkit/db/PwDbDependentFiles.h"
#include "toolkit/xref/PwDbXrefResolver.h"

PwDbXrefGraphNode::PwDbXrefGraphNode(PwDbDatabase* database, PwDbObjectId blockId, wstring name,
                                     PwDb::XrefStatus status)
    : m_database(database), m_blockId(blockId), m_name(std::move(name)), m_status(status) {}

PwDbXrefGraphNode::~PwDbXrefGraphNode() = default;

PwDbXrefGraphNode* PwDbXrefGraphNode::out(int index) const {
    return index >= 0 && index < numOut() ? m_out[static_cast<size_t>(index)] : nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraphNode::in(int index) const {
    return index >= 0 && index < numIn() ? m_in[static_cast<size_t>(index)] : nullptr;
}

void PwDbXrefGraphNode::addOut(PwDbXrefGraphNode* node) {
    if (node == nullptr || std::find(m_out.begin(), m_out.end(), node) != m_out.end()) return;
    m_out.push_back(node);
    node->m_in.push_back(this);
}

PwDbXrefGraph::PwDbXrefGraph(PwDbXrefGraphNode* hostNode) {
    if (hostNode != nullptr) addNode(hostNode);
}

PwDbXrefGraph::~PwDbXrefGraph() = default;

PwDbXrefGraphNode* PwDbXrefGraph::xrefNode(int index) const {
    return index >= 0 && index < numNodes() ? m_nodes[static_cast<size_t>(index)].get() : nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraph::xrefNode(const PwDbDatabase* database) const {
    if (database == nullptr) return nullptr;
    for (const auto& node : m_nodes) {
        if (node->database() == database) return node.get();
    }
    return nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraph::xrefNode(PwDbObjectId blockId) const {
    if (blockId.isNull()) return nullptr;
    const auto found = m_byBlock.find(blockId);
    return found != m_byBlock.end() ? found->second : nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraph::addNode(PwDbXrefGraphNode* node) {
    if (node == nullptr) return nullptr;
    m_nodes.emplace_back(node);
    if (!node->btrId().isNull()) m_byBlock.emplace(node->btrId(), node);
    return node;
}

void PwDbXrefGraph::reset() {
    m_nodes.clear();
    m_byBlock.clear();
}

Plotwright::ErrorStatus PwDbXrefGraph::markUnresolvedTrees() {
    for (const auto& node : m_nodes)
        node->m_markedUnresolved = !node->isHost() && node->xrefStatus() != PwDb::XrefResolved;
    // A node shared by several ways may come before some of its incoming nodes, so marks
    // spread until they settle; without cycles that takes at most one pass per level.
    for (bool changed = true; changed;) {
        changed = false;
        for (const auto& node : m_nodes) {
            if (node->m_markedUnresolved || node->m_in.empty()) continue;
            if (std::all_of(node->m_in.begin(), node->m_in.end(),
                            [](const PwDbXrefGraphNode* in) { return in->m_markedUnresolved; })) {
                node->m_markedUnresolved = true;
                changed = true;
            }
        }
    }
    return Plotwright::StatusOk;
}

namespace {

class GraphBuilder {
  public:
    GraphBuilder(PwDbXrefGraph& graph, bool includeUnresolved)
        : m_graph(graph), m_includeUnresolved(includeUnresolved) {}

    // Links `node` to the nodes of `database`'s reference blocks, made on first need.
    void expand(PwDbXrefGraphNode* node, PwDbDatabase* database) {
        if (database == nullptr) return;
        m_onWay.insert(database);
        for (PwDbXrefGraphNode* child : childrenOf(*database)) node->addOut(child);
        m_onWay.erase(database);
    }

  private:
    const std::vector<PwDbXrefGraphNode*>& childrenOf(PwDbDatabase& database) {
        if (auto known = m_children.find(&database); known != m_children.end())
            return known->second;
        std::vector<PwDbXrefGraphNode*> children;
        for (PwDbBlockTableRecord* block : PwDbXrefResolver::referenceBlocks(database)) {
            const PwDb::XrefStatus status = block->xrefStatus();
            if (!m_includeUnresolved && status != PwDb::XrefResolved) continue;
            PwDbDatabase* loaded = block->xrefDatabase();
            // A loaded drawing that is on the way here already would close a cycle: its
            // block still shows, without its drawing.
            if (loaded != nullptr && m_onWay.count(loaded) != 0) loaded = nullptr;
            const char16_t* name = nullptr;
            block->getName(name);
            auto* child = m_graph.addNode(
                new PwDbXrefGraphNode(loaded, block->objectId(), name ? name : u"", status));
            children.push_back(child);
            expand(child, loaded);
        }
        return m_children.emplace(&database, std::move(children)).first->second;
    }

    PwDbXrefGraph& m_graph;
    bool m_includeUnresolved;
    std::map<PwDbDatabase*, std::vector<PwDbXrefGraphNode*>> m_children;
    std::set<PwDbDatabase*> m_onWay;
};

}  // namespace

Plotwright::ErrorStatus pwdbGetHostPlwXrefGraph(PwDbDatabase* database, PwDbXrefGraph& graph,
                                                bool includeUnresolved) {
    graph.reset();
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    auto* host = graph.addNode(new PwDbXrefGraphNode(
        database, PwDbObjectId(), pwdbDatabasePath(database), PwDb::XrefNotAnXref));
    GraphBuilder(graph, includeUnresolved).expand(host, database);
    return Plotwright::StatusOk;
}
