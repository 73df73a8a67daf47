#include "references/XrefDatabaseLookup.h"

#include "platform/BlockTableRecordAccess.h"
#include "references/PathQuestions.h"
#include "toolkit/xref/PwDbXrefGraph.h"

namespace LodeQDBUtil {

namespace {

// Depth first, in pre-order. The graph holds no cycle below its host, so no node list is kept.
PwDbDatabase* Search(const PwDbXrefGraphNode* node, const LodeUtil::AbsoluteFilePath& path) {
    for (int i = 0; i < node->numOut(); ++i) {
        const PwDbXrefGraphNode* child = node->out(i);
        if (child == nullptr) continue;
        if (PwDbDatabase* database = child->database()) {
            wstring name = pwdb::OriginalXrefFullPathFor(*database);
            if (name.empty()) name = BlockTableRecord::PathName(child->btrId());
            if (path == name) return database;
        }
        if (PwDbDatabase* found = Search(child, path)) return found;
    }
    return nullptr;
}

}  // namespace

PwDbDatabase* FindXrefDatabase(const LodeUtil::AbsoluteFilePath& path, const PwDbXrefGraph& graph) {
    if (graph.numNodes() < 2) return nullptr;
    return Search(graph.xrefNode(0), path);
}

PwDbDatabase* FindXrefDatabase(PwDbDatabase* host, const LodeUtil::AbsoluteFilePath& path) {
    PwDbXrefGraph graph(nullptr);
    pwdbGetHostPlwXrefGraph(host, graph, false);
    return FindXrefDatabase(path, graph);
}

PwDbDatabase* FindXrefDatabase(PwDbDatabase* host, const PwDbObjectId& blockId) {
    PwDbXrefGraph graph(nullptr);
    pwdbGetHostPlwXrefGraph(host, graph, false);
    const PwDbXrefGraphNode* node = graph.xrefNode(blockId);
    return node != nullptr ? node->database() : nullptr;
}

}  // namespace LodeQDBUtil
