// The reference graph of a host drawing: one node for the host, one for each reference block
// at any depth below it, an edge from the node of a drawing to each of its reference blocks.
//
//   PwDbXrefGraph graph;
//   pwdbGetHostPlwXrefGraph(&host, graph, true);
//   PwDbXrefGraphNode* root = graph.hostPlw();
//   for (int i = 0; i < root->numOut(); ++i) {
//       PwDbXrefGraphNode* child = root->out(i);
//       use(child->btrId(), child->xrefStatus(), child->database());  // database may be null
//   }
//
// A node stands for one attachment: the host node has no block, every other node has the one
// reference block it stands for. A file attached by two blocks is two nodes that share one
// database; a reference drawing reached along several ways is one database, and the nodes of
// its own reference blocks hang below each node that loaded it. Only a node with a loaded
// database has outgoing nodes, and resolution never loads a reference back up its own way, so
// there is no cycle below the host. Nodes are numbered from 0, the host, in depth-first order.
//
// Building a host's graph visits every drawing below it, so the toolkit keeps the last graph of
// each host and hands it out again while no drawing of the process has changed
// (pwdbChangeEpoch). Graphs made that way share their nodes until one of them is changed
// through the graph (addNode, reset, markUnresolvedTrees, detach), which gives it nodes of its
// own; addOut on a node that is still shared does nothing.
#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

class PwDbXrefGraphNode {
  public:
    /// A node for `database` (may be null), reached through the reference block `blockId` (null
    /// for the host), with the name shown for it.
    PwDbXrefGraphNode(PwDbDatabase* database, PwDbObjectId blockId, wstring name,
                      PwDb::XrefStatus status);
    virtual ~PwDbXrefGraphNode();
    PwDbXrefGraphNode(const PwDbXrefGraphNode&) = delete;
    PwDbXrefGraphNode& operator=(const PwDbXrefGraphNode&) = delete;

    /// The drawing of the node; null when the reference isn't loaded.
    PwDbDatabase* database() const { return m_database; }
    /// The reference block the node stands for; null for the host.
    PwDbObjectId btrId() const { return m_blockId; }
    /// The block's name; for the host, the path of its file.
    const wstring& name() const { return m_name; }
    /// The reference's state; XrefNotAnXref for the host.
    PwDb::XrefStatus xrefStatus() const { return m_status; }
    bool isHost() const { return m_blockId.isNull(); }

    int numOut() const { return static_cast<int>(m_out.size()); }
    /// The `index`th outgoing node, in block table order; null out of range.
    PwDbXrefGraphNode* out(int index) const;
    int numIn() const { return static_cast<int>(m_in.size()); }
    PwDbXrefGraphNode* in(int index) const;
    /// Adds an edge from this node to `node`, once; nothing while the node is shared (see
    /// PwDbXrefGraph::detach).
    void addOut(PwDbXrefGraphNode* node);

    /// True when markUnresolvedTrees found the node unresolved or hanging only from
    /// unresolved nodes.
    bool isMarkedUnresolved() const { return m_markedUnresolved; }

  private:
    friend class PwDbXrefGraph;
    PwDbDatabase* m_database;
    PwDbObjectId m_blockId;
    wstring m_name;
    PwDb::XrefStatus m_status;
    std::vector<PwDbXrefGraphNode*> m_out;
    std::vector<PwDbXrefGraphNode*> m_in;
    bool m_markedUnresolved = false;
    bool m_shared = false;
};

/// The nodes of a graph; once frozen, shared by graphs and the toolkit's cache and never
/// changed again. `epoch` is the pwdbChangeEpoch they were built at.
struct PwDbXrefGraphStore {
    std::vector<std::unique_ptr<PwDbXrefGraphNode>> nodes;
    std::unordered_map<PwDbObjectId, PwDbXrefGraphNode*> byBlock;
    uint64_t epoch = 0;
    bool frozen = false;
};

class PwDbXrefGraph {
  public:
    /// A graph holding `hostNode` (taken over; null makes an empty graph).
    explicit PwDbXrefGraph(PwDbXrefGraphNode* hostNode = nullptr);
    virtual ~PwDbXrefGraph();
    PwDbXrefGraph(const PwDbXrefGraph&) = delete;
    PwDbXrefGraph& operator=(const PwDbXrefGraph&) = delete;

    int numNodes() const { return static_cast<int>(m_store->nodes.size()); }
    bool isEmpty() const { return m_store->nodes.empty(); }
    /// The node numbered `index`; null out of range.
    PwDbXrefGraphNode* xrefNode(int index) const;
    /// The first node whose database is `database`; null when there is none.
    PwDbXrefGraphNode* xrefNode(const PwDbDatabase* database) const;
    /// The node of the reference block `blockId`; null when there is none.
    PwDbXrefGraphNode* xrefNode(PwDbObjectId blockId) const;
    /// Node 0; null for an empty graph.
    PwDbXrefGraphNode* hostPlw() const { return xrefNode(0); }

    /// Adds `node` (taken over) as the next node.
    PwDbXrefGraphNode* addNode(PwDbXrefGraphNode* node);
    /// Removes every node.
    void reset();

    /// Marks every node whose reference isn't resolved, and every node all of whose
    /// incoming nodes are marked: the trees that hang from unresolved references. Clears
    /// the other nodes' marks. Always StatusOk.
    Plotwright::ErrorStatus markUnresolvedTrees();

    /// Gives the graph nodes of its own when it shares them with the toolkit's cache, so that
    /// they can be changed (addOut). Node pointers taken before are then no longer the graph's.
    void detach();

  private:
    friend Plotwright::ErrorStatus pwdbGetHostPlwXrefGraph(PwDbDatabase*, PwDbXrefGraph&, bool);
    /// Shares `store`'s nodes, which nobody changes.
    void share(const std::shared_ptr<const PwDbXrefGraphStore>& store);
    /// Freezes the graph's nodes and gives them out for sharing.
    std::shared_ptr<const PwDbXrefGraphStore> freeze(uint64_t epoch);

    std::shared_ptr<PwDbXrefGraphStore> m_store;
};

/// Fills `graph` (emptied first) with `database`'s node and the nodes of every reference
/// below it as resolution left them. With `includeUnresolved` every reference block that
/// isn't erased is a node whatever its state; without, only resolved ones are. Resolves
/// nothing itself. StatusNullDatabase for null.
Plotwright::ErrorStatus pwdbGetHostPlwXrefGraph(PwDbDatabase* database, PwDbXrefGraph& graph,
                                                bool includeUnresolved);

/// Fills `graph` (emptied first) with `database`'s node and one node for each of its own
/// reference blocks that isn't erased, whatever its state, linked from the host's node in
/// block table order: exactly the host node and its outgoing nodes of
/// pwdbGetHostPlwXrefGraph(database, graph, true), made without going below them. For a
/// question about a drawing's own references, whose cost then doesn't grow with the tree
/// below it. StatusNullDatabase for null.
Plotwright::ErrorStatus pwdbGetDirectXrefGraph(PwDbDatabase* database, PwDbXrefGraph& graph);
