// The reference graph, built from the state resolution left in the reference blocks.
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>

#include <algorithm>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include "toolkit/xref/PwDbXrefResolver.h"
#include "toolkit/xref/PwDbXrefState.h"

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
    if (node == nullptr || m_shared || node->m_shared ||
        std::find(m_out.begin(), m_out.end(), node) != m_out.end())
        return;
    m_out.push_back(node);
    node->m_in.push_back(this);
}

PwDbXrefGraph::PwDbXrefGraph(PwDbXrefGraphNode* hostNode)
    : m_store(std::make_shared<PwDbXrefGraphStore>()) {
    if (hostNode != nullptr) addNode(hostNode);
}

PwDbXrefGraph::~PwDbXrefGraph() = default;

PwDbXrefGraphNode* PwDbXrefGraph::xrefNode(int index) const {
    const auto& nodes = m_store->nodes;
    return index >= 0 && index < numNodes() ? nodes[static_cast<size_t>(index)].get() : nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraph::xrefNode(const PwDbDatabase* database) const {
    if (database == nullptr) return nullptr;
    for (const auto& node : m_store->nodes) {
        if (node->database() == database) return node.get();
    }
    return nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraph::xrefNode(PwDbObjectId blockId) const {
    if (blockId.isNull()) return nullptr;
    const auto found = m_store->byBlock.find(blockId);
    return found != m_store->byBlock.end() ? found->second : nullptr;
}

PwDbXrefGraphNode* PwDbXrefGraph::addNode(PwDbXrefGraphNode* node) {
    if (node == nullptr) return nullptr;
    detach();
    m_store->nodes.emplace_back(node);
    if (!node->btrId().isNull()) m_store->byBlock.emplace(node->btrId(), node);
    return node;
}

void PwDbXrefGraph::reset() {
    m_store = std::make_shared<PwDbXrefGraphStore>();
}

void PwDbXrefGraph::detach() {
    if (!m_store->frozen) return;
    auto own = std::make_shared<PwDbXrefGraphStore>();
    std::unordered_map<const PwDbXrefGraphNode*, PwDbXrefGraphNode*> copies;
    for (const auto& node : m_store->nodes) {
        auto* copy =
            new PwDbXrefGraphNode(node->m_database, node->m_blockId, node->m_name, node->m_status);
        copy->m_markedUnresolved = node->m_markedUnresolved;
        own->nodes.emplace_back(copy);
        if (!copy->btrId().isNull()) own->byBlock.emplace(copy->btrId(), copy);
        copies.emplace(node.get(), copy);
    }
    for (const auto& node : m_store->nodes) {
        PwDbXrefGraphNode* copy = copies.at(node.get());
        for (const PwDbXrefGraphNode* out : node->m_out) copy->m_out.push_back(copies.at(out));
        for (const PwDbXrefGraphNode* in : node->m_in) copy->m_in.push_back(copies.at(in));
    }
    m_store = std::move(own);
}

void PwDbXrefGraph::share(const std::shared_ptr<const PwDbXrefGraphStore>& store) {
    // Frozen stores are never changed: every change detaches first.
    m_store = std::const_pointer_cast<PwDbXrefGraphStore>(store);
}

std::shared_ptr<const PwDbXrefGraphStore> PwDbXrefGraph::freeze(uint64_t epoch) {
    m_store->epoch = epoch;
    m_store->frozen = true;
    for (const auto& node : m_store->nodes) node->m_shared = true;
    return m_store;
}

Plotwright::ErrorStatus PwDbXrefGraph::markUnresolvedTrees() {
    detach();
    const auto& nodes = m_store->nodes;
    for (const auto& node : nodes)
        node->m_markedUnresolved = !node->isHost() && node->xrefStatus() != PwDb::XrefResolved;
    // A node shared by several ways may come before some of its incoming nodes, so marks
    // spread until they settle; without cycles that takes at most one pass per level.
    for (bool changed = true; changed;) {
        changed = false;
        for (const auto& node : nodes) {
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

// Builds a host's graph depth first with an explicit stack, so that no depth of references
// can exhaust the thread's stack. Nodes are made in pre-order; a drawing's reference nodes
// are made once and shared by every node that leads to it; a node's outgoing edges are
// linked once the nodes below it are made.
class GraphBuilder {
  public:
    GraphBuilder(PwDbXrefGraph& graph, bool includeUnresolved)
        : m_graph(graph), m_includeUnresolved(includeUnresolved) {}

    void build(PwDbXrefGraphNode* host, PwDbDatabase* database) {
        enter(host, database);
        while (!m_way.empty()) {
            Level& level = m_way.back();
            if (level.next == level.blocks.size()) {
                finish();
                continue;
            }
            PwDbBlockTableRecord* block = level.blocks[level.next++];
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
            level.children.push_back(child);
            enter(child, loaded);  // may add a level: `level` is not used after this
        }
    }

  private:
    struct Level {
        PwDbXrefGraphNode* node;
        PwDbDatabase* database;
        std::vector<PwDbBlockTableRecord*> blocks;
        size_t next = 0;
        std::vector<PwDbXrefGraphNode*> children;
    };

    // Starts linking `node` to the reference nodes of `database`: at once when they are made
    // already, else after making them.
    void enter(PwDbXrefGraphNode* node, PwDbDatabase* database) {
        if (database == nullptr) return;
        if (auto known = m_children.find(database); known != m_children.end()) {
            for (PwDbXrefGraphNode* child : known->second) node->addOut(child);
            return;
        }
        m_onWay.insert(database);
        m_way.push_back(Level{node, database, PwDbXrefResolver::referenceBlocks(*database), 0, {}});
    }

    void finish() {
        Level level = std::move(m_way.back());
        m_way.pop_back();
        for (PwDbXrefGraphNode* child : level.children) level.node->addOut(child);
        m_onWay.erase(level.database);
        m_children.emplace(level.database, std::move(level.children));
    }

    PwDbXrefGraph& m_graph;
    bool m_includeUnresolved;
    std::vector<Level> m_way;
    std::unordered_map<PwDbDatabase*, std::vector<PwDbXrefGraphNode*>> m_children;
    std::unordered_set<PwDbDatabase*> m_onWay;
};

}  // namespace

Plotwright::ErrorStatus pwdbGetHostPlwXrefGraph(PwDbDatabase* database, PwDbXrefGraph& graph,
                                                bool includeUnresolved) {
    graph.reset();
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    std::shared_ptr<const PwDbXrefGraphStore>& cached =
        pwdbExtension<PwDbXrefGraphCache>(*database).graphs[includeUnresolved ? 1 : 0];
    const uint64_t epoch = pwdbChangeEpoch();
    if (cached != nullptr && cached->epoch == epoch) {
        graph.share(cached);
        return Plotwright::StatusOk;
    }
    auto* host = graph.addNode(new PwDbXrefGraphNode(
        database, PwDbObjectId(), pwdbDatabasePath(database), PwDb::XrefNotAnXref));
    GraphBuilder(graph, includeUnresolved).build(host, database);
    cached = graph.freeze(epoch);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus pwdbGetDirectXrefGraph(PwDbDatabase* database, PwDbXrefGraph& graph) {
    graph.reset();
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    auto* host = graph.addNode(new PwDbXrefGraphNode(
        database, PwDbObjectId(), pwdbDatabasePath(database), PwDb::XrefNotAnXref));
    for (PwDbBlockTableRecord* block : PwDbXrefResolver::referenceBlocks(*database)) {
        PwDbDatabase* loaded = block->xrefDatabase();
        // As in the whole graph, a drawing that refers to itself closes a cycle at once.
        if (loaded == database) loaded = nullptr;
        const char16_t* name = nullptr;
        block->getName(name);
        host->addOut(graph.addNode(new PwDbXrefGraphNode(loaded, block->objectId(),
                                                         name ? name : u"", block->xrefStatus())));
    }
    return Plotwright::StatusOk;
}
