// Finding the loaded drawing of a reference in the host's reference graph.
#include <lodeqdb/references/XrefDatabaseLookup.h>

#include <lodeqdb/platform/BlockTableRecordAccess.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>

#include <unordered_map>
#include <unordered_set>
#include <vector>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBUtil {

namespace {

// The name a loaded reference's drawing is asked for by: the path it was found at, else the
// path its block stores.
wstring NameOf(const PwDbXrefGraphNode& node, PwDbDatabase& database) {
    wstring name = pwdb::OriginalXrefFullPathFor(database);
    if (name.empty()) name = BlockTableRecord::PathName(node.btrId());
    return name;
}

// Visits the nodes below the host depth first, in pre-order, each node once (a node shared
// by several ways has the same subtree on each), with an explicit stack: no depth of
// references can exhaust the thread's stack. Stops when `visit` answers true.
template <class Visit>
void EachNodeBelowTheHost(const PwDbXrefGraph& graph, Visit visit) {
    if (graph.numNodes() < 2) return;
    // Marked when visited, not when met: the first visit of each node comes in the order a
    // recursive pre-order walk would make it.
    std::vector<const PwDbXrefGraphNode*> pending{graph.xrefNode(0)};
    std::unordered_set<const PwDbXrefGraphNode*> seen;
    while (!pending.empty()) {
        const PwDbXrefGraphNode* node = pending.back();
        pending.pop_back();
        if (!seen.insert(node).second) continue;
        if (node != graph.xrefNode(0) && visit(*node)) return;
        for (int i = node->numOut() - 1; i >= 0; --i) {
            if (const PwDbXrefGraphNode* child = node->out(i)) pending.push_back(child);
        }
    }
}

// The key under which AbsoluteFilePath's equality finds a name: its form, and its full path
// folded when it is of Windows form.
wstring KeyOf(const LodeUtil::AbsoluteFilePath& path) {
    return path.IsWindowsForm() ? u"W" + LodeUtil::FoldCase(path.FullPath())
                                : u"P" + path.FullPath();
}

// The loaded drawings of one host's graph by the names they are asked for, the first in the
// graph's pre-order for each name; kept per thread while the host's graph stays the same.
struct NameIndex {
    const PwDbDatabase* host = nullptr;
    uint64_t epoch = 0;
    std::unordered_map<wstring, PwDbDatabase*> byName;
};

const NameIndex& IndexOf(PwDbDatabase* host, const PwDbXrefGraph& graph) {
    thread_local NameIndex index;
    const uint64_t epoch = pwdbChangeEpoch();
    if (index.host == host && index.epoch == epoch) return index;
    index = NameIndex{host, epoch, {}};
    EachNodeBelowTheHost(graph, [](const PwDbXrefGraphNode& node) {
        if (PwDbDatabase* database = node.database())
            index.byName.try_emplace(KeyOf(LodeUtil::AbsoluteFilePath(NameOf(node, *database))),
                                     database);
        return false;
    });
    return index;
}

}  // namespace

PwDbDatabase* FindXrefDatabase(const LodeUtil::AbsoluteFilePath& path, const PwDbXrefGraph& graph) {
    PwDbDatabase* found = nullptr;
    EachNodeBelowTheHost(graph, [&](const PwDbXrefGraphNode& node) {
        PwDbDatabase* database = node.database();
        if (database != nullptr && path == NameOf(node, *database)) found = database;
        return found != nullptr;
    });
    return found;
}

PwDbDatabase* FindXrefDatabase(PwDbDatabase* host, const LodeUtil::AbsoluteFilePath& path) {
    PwDbXrefGraph graph(nullptr);
    pwdbGetHostPlwXrefGraph(host, graph, false);
    // Asked once for each drawing of a walk: an index of the graph's names answers in
    // constant time what the search through the graph would.
    const NameIndex& index = IndexOf(host, graph);
    const auto found = index.byName.find(KeyOf(path));
    return found != index.byName.end() ? found->second : nullptr;
}

PwDbDatabase* FindXrefDatabase(PwDbDatabase* host, const PwDbObjectId& blockId) {
    PwDbXrefGraph graph(nullptr);
    pwdbGetHostPlwXrefGraph(host, graph, false);
    const PwDbXrefGraphNode* node = graph.xrefNode(blockId);
    return node != nullptr ? node->database() : nullptr;
}

}  // namespace LodeQDBUtil
