// The reference graph: its nodes and edges for chains, diamonds, cycles, missing files and
// files attached twice.
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>

#include <gtest/gtest.h>

#include <functional>
#include <set>

#include "XrefTestSupport.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using namespace pwdbxreftest;
using Plotwright::StatusOk;

class XrefGraph : public XrefFolderTest {
  protected:
    // The names of `node`'s outgoing nodes, in order.
    static std::vector<wstring> OutNames(const PwDbXrefGraphNode* node) {
        std::vector<wstring> names;
        for (int i = 0; i < node->numOut(); ++i) names.push_back(node->out(i)->name());
        return names;
    }
    // True when a walk from the host meets a node again on its own way.
    static bool HasCycle(const PwDbXrefGraph& graph) {
        std::set<const PwDbXrefGraphNode*> onWay;
        std::function<bool(const PwDbXrefGraphNode*)> visit = [&](const PwDbXrefGraphNode* node) {
            if (!onWay.insert(node).second) return true;
            for (int i = 0; i < node->numOut(); ++i)
                if (visit(node->out(i))) return true;
            onWay.erase(node);
            return false;
        };
        return visit(graph.hostPlw());
    }
};

TEST_F(XrefGraph, AnEmptyGraphHasNoNodes) {
    PwDbXrefGraph graph(nullptr);
    EXPECT_EQ(graph.numNodes(), 0);
    EXPECT_TRUE(graph.isEmpty());
    EXPECT_EQ(graph.hostPlw(), nullptr);
    EXPECT_EQ(graph.xrefNode(0), nullptr);
    EXPECT_EQ(graph.xrefNode(static_cast<const PwDbDatabase*>(nullptr)), nullptr);
    EXPECT_EQ(graph.xrefNode(PwDbObjectId()), nullptr);
    EXPECT_EQ(pwdbGetHostPlwXrefGraph(nullptr, graph, true), Plotwright::StatusNullDatabase);
    EXPECT_EQ(graph.numNodes(), 0);
}

TEST_F(XrefGraph, ADrawingWithoutReferencesIsOneNode) {
    WriteDrawing("a.plw", {}, u"A");
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.numNodes(), 1);
    PwDbXrefGraphNode* host = graph.hostPlw();
    EXPECT_TRUE(host->isHost());
    EXPECT_EQ(host->database(), a.get());
    EXPECT_TRUE(host->btrId().isNull());
    EXPECT_EQ(host->name(), Path("a.plw"));
    EXPECT_EQ(host->numOut(), 0);
    EXPECT_EQ(graph.xrefNode(a.get()), host);
}

TEST_F(XrefGraph, AChainIsAPathOfNodes) {
    WriteDrawing("d.plw", {}, u"D");
    WriteDrawing("c.plw", {{u"D", u"d.plw"}});
    WriteDrawing("b.plw", {{u"C", u"c.plw"}});
    WriteDrawing("a.plw", {{u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.numNodes(), 4);
    const PwDbXrefGraphNode* node = graph.hostPlw();
    for (const char16_t* name : {u"B", u"C", u"D"}) {
        ASSERT_EQ(node->numOut(), 1);
        node = node->out(0);
        EXPECT_EQ(node->name(), name);
        EXPECT_EQ(node->xrefStatus(), PwDb::XrefResolved);
        EXPECT_NE(node->database(), nullptr);
        EXPECT_EQ(node->numIn(), 1);
    }
    EXPECT_EQ(node->numOut(), 0);
    EXPECT_EQ(MarkerOf(node->database()), u"D");
    EXPECT_EQ(node->database(), LoadedFor(*LoadedFor(*LoadedFor(*a, u"B"), u"C"), u"D"));
    EXPECT_FALSE(HasCycle(graph));
}

TEST_F(XrefGraph, ADiamondSharesTheDatabaseBetweenTwoNodes) {
    WriteDrawing("d.plw", {}, u"D");
    WriteDrawing("b.plw", {{u"DB", u"d.plw"}});
    WriteDrawing("c.plw", {{u"DC", u"d.plw"}});
    WriteDrawing("a.plw", {{u"B", u"b.plw"}, {u"C", u"c.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.numNodes(), 5);
    EXPECT_EQ(OutNames(graph.hostPlw()), (std::vector<wstring>{u"B", u"C"}));
    const PwDbXrefGraphNode* viaB = graph.hostPlw()->out(0)->out(0);
    const PwDbXrefGraphNode* viaC = graph.hostPlw()->out(1)->out(0);
    EXPECT_EQ(viaB->name(), u"DB");
    EXPECT_EQ(viaC->name(), u"DC");
    EXPECT_NE(viaB, viaC);
    EXPECT_EQ(viaB->database(), viaC->database());
    EXPECT_NE(viaB->btrId(), viaC->btrId());
    EXPECT_EQ(graph.xrefNode(viaB->database()), viaB);
    EXPECT_FALSE(HasCycle(graph));
}

TEST_F(XrefGraph, ACycleEndsInANodeWithoutDatabase) {
    WriteDrawing("b.plw", {{u"A", u"a.plw"}});
    WriteDrawing("a.plw", {{u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.numNodes(), 3);
    const PwDbXrefGraphNode* back = graph.hostPlw()->out(0)->out(0);
    EXPECT_EQ(back->name(), u"A");
    EXPECT_EQ(back->xrefStatus(), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(back->database(), nullptr);
    EXPECT_EQ(back->numOut(), 0);
    EXPECT_FALSE(HasCycle(graph));

    PwDbXrefGraph loadedOnly;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), loadedOnly, false), StatusOk);
    EXPECT_EQ(loadedOnly.numNodes(), 2);
}

TEST_F(XrefGraph, ASelfReferenceIsANodeBelowTheHost) {
    WriteDrawing("a.plw", {{u"SELF", u"a.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.numNodes(), 2);
    EXPECT_EQ(graph.xrefNode(1)->xrefStatus(), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(graph.xrefNode(1)->database(), nullptr);
}

TEST_F(XrefGraph, AMissingFileIsANodeOnlyWhenUnresolvedOnesAreAskedFor) {
    WriteDrawing("b.plw", {});
    WriteDrawing("a.plw", {{u"GONE", u"gone.plw"}, {u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph all;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), all, true), StatusOk);
    EXPECT_EQ(OutNames(all.hostPlw()), (std::vector<wstring>{u"GONE", u"B"}));
    EXPECT_EQ(all.hostPlw()->out(0)->xrefStatus(), PwDb::XrefFileMissing);
    PwDbXrefGraph loaded;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), loaded, false), StatusOk);
    EXPECT_EQ(OutNames(loaded.hostPlw()), (std::vector<wstring>{u"B"}));
}

TEST_F(XrefGraph, OneFileAttachedByTwoBlocksIsTwoNodesAndTwoEdges) {
    WriteDrawing("x.plw", {});
    WriteDrawing("a.plw", {{u"FIRST", u"x.plw"}, {u"SECOND", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.numNodes(), 3);
    const PwDbXrefGraphNode* first = graph.hostPlw()->out(0);
    const PwDbXrefGraphNode* second = graph.hostPlw()->out(1);
    EXPECT_EQ(first->database(), second->database());
    EXPECT_EQ(first->btrId(), Block(*a, u"FIRST")->objectId());
    EXPECT_EQ(second->btrId(), Block(*a, u"SECOND")->objectId());
    EXPECT_EQ(graph.xrefNode(Block(*a, u"SECOND")->objectId()), second);
}

TEST_F(XrefGraph, LookupsOfUnknownDatabasesAndBlocksGiveNull) {
    WriteDrawing("a.plw", {});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    PwDbDatabase other;
    EXPECT_EQ(graph.xrefNode(&other), nullptr);
    EXPECT_EQ(graph.xrefNode(a->modelSpaceId()), nullptr);
    EXPECT_EQ(graph.xrefNode(-1), nullptr);
    EXPECT_EQ(graph.xrefNode(1), nullptr);
}

TEST_F(XrefGraph, MarkingUnresolvedTreesMarksExactlyTheUnresolvedNodes) {
    WriteDrawing("c.plw", {{u"LOOP", u"b.plw"}});
    WriteDrawing("b.plw", {{u"C", u"c.plw"}, {u"GONE", u"gone.plw"}});
    WriteDrawing("a.plw", {{u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    ASSERT_EQ(graph.markUnresolvedTrees(), StatusOk);
    std::set<wstring> marked;
    for (int i = 0; i < graph.numNodes(); ++i)
        if (graph.xrefNode(i)->isMarkedUnresolved()) marked.insert(graph.xrefNode(i)->name());
    EXPECT_EQ(marked, (std::set<wstring>{u"LOOP", u"GONE"}));
}

TEST_F(XrefGraph, MarksSpreadToNodesThatHangOnlyFromMarkedOnes) {
    PwDbXrefGraph graph(
        new PwDbXrefGraphNode(nullptr, PwDbObjectId(), u"host", PwDb::XrefNotAnXref));
    PwDbDatabase holder;
    const PwDbObjectId blockA = holder.modelSpaceId();
    const PwDbObjectId blockB = holder.paperSpaceId();
    const PwDbObjectId blockC = holder.layerZeroId();
    auto* missing =
        graph.addNode(new PwDbXrefGraphNode(nullptr, blockA, u"missing", PwDb::XrefFileMissing));
    auto* below =
        graph.addNode(new PwDbXrefGraphNode(nullptr, blockB, u"below", PwDb::XrefResolved));
    auto* shared =
        graph.addNode(new PwDbXrefGraphNode(nullptr, blockC, u"shared", PwDb::XrefResolved));
    graph.hostPlw()->addOut(missing);
    missing->addOut(below);
    missing->addOut(shared);
    graph.hostPlw()->addOut(shared);
    graph.markUnresolvedTrees();
    EXPECT_TRUE(missing->isMarkedUnresolved());
    EXPECT_TRUE(below->isMarkedUnresolved());
    EXPECT_FALSE(shared->isMarkedUnresolved());
    EXPECT_FALSE(graph.hostPlw()->isMarkedUnresolved());
    EXPECT_EQ(graph.xrefNode(blockB), below);
}

// The graph kept between calls.

TEST_F(XrefGraph, AnUnchangedHostGivesTheSameNodesAgain) {
    WriteDrawing("c.plw", {}, u"C");
    WriteDrawing("b.plw", {{u"C", u"c.plw"}});
    WriteDrawing("a.plw", {{u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph first;
    PwDbXrefGraph second;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), first, true), StatusOk);
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), second, true), StatusOk);
    EXPECT_EQ(first.xrefNode(2), second.xrefNode(2)) << "shared, not built again";
    // The graph without unresolved references is a graph of its own.
    PwDbXrefGraph resolvedOnly;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), resolvedOnly, false), StatusOk);
    EXPECT_NE(resolvedOnly.xrefNode(2), first.xrefNode(2));
    EXPECT_EQ(resolvedOnly.numNodes(), 3);
}

TEST_F(XrefGraph, AChangeOfAnyDrawingBelowMakesANewGraph) {
    WriteDrawing("c.plw", {}, u"C");
    WriteDrawing("b.plw", {{u"C", u"c.plw"}});
    WriteDrawing("a.plw", {{u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph before;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), before, false), StatusOk);
    ASSERT_EQ(before.numNodes(), 3);
    // Renaming C's reference block, which lives in B, one level down.
    const PwDbObjectId blockOfC = before.xrefNode(2)->btrId();
    {
        PwDbObjectPointer<PwDbBlockTableRecord> block(blockOfC, PwDb::OpenForWrite);
        ASSERT_EQ(block.openStatus(), StatusOk);
        ASSERT_EQ(block->setName(u"CONTOURS"), StatusOk);
    }
    PwDbXrefGraph after;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), after, false), StatusOk);
    ASSERT_EQ(after.numNodes(), 3);
    EXPECT_EQ(after.xrefNode(blockOfC)->name(), u"CONTOURS");
    // The graph taken before keeps what it showed then.
    EXPECT_EQ(before.xrefNode(2)->name(), u"C");
}

TEST_F(XrefGraph, MarkingOneGraphLeavesTheOthersAlone) {
    WriteDrawing("a.plw", {{u"GONE", u"gone.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph marked;
    PwDbXrefGraph plain;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), marked, true), StatusOk);
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), plain, true), StatusOk);
    ASSERT_EQ(marked.markUnresolvedTrees(), StatusOk);
    EXPECT_TRUE(marked.xrefNode(1)->isMarkedUnresolved());
    EXPECT_FALSE(plain.xrefNode(1)->isMarkedUnresolved());
    PwDbXrefGraph later;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), later, true), StatusOk);
    EXPECT_FALSE(later.xrefNode(1)->isMarkedUnresolved());
}

TEST_F(XrefGraph, NodesAreEditedOnlyAfterTheGraphDetaches) {
    WriteDrawing("b.plw", {}, u"B");
    WriteDrawing("a.plw", {{u"B", u"b.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbXrefGraph graph;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), graph, true), StatusOk);
    PwDbXrefGraph other;
    ASSERT_EQ(pwdbGetHostPlwXrefGraph(a.get(), other, true), StatusOk);
    // Shared nodes refuse new edges, so the other graph and the kept one can't change.
    graph.xrefNode(1)->addOut(graph.xrefNode(0));
    EXPECT_EQ(other.xrefNode(1)->numOut(), 0);
    graph.detach();
    EXPECT_NE(graph.xrefNode(1), other.xrefNode(1));
    graph.xrefNode(1)->addOut(graph.xrefNode(0));
    EXPECT_EQ(graph.xrefNode(1)->numOut(), 1);
    EXPECT_EQ(other.xrefNode(1)->numOut(), 0);
    EXPECT_EQ(graph.xrefNode(1)->name(), u"B");
    EXPECT_EQ(graph.xrefNode(graph.xrefNode(1)->btrId()), graph.xrefNode(1));
}

TEST_F(XrefGraph, TheEpochMovesWithEveryChangeAndEveryDrawingDestroyed) {
    const uint64_t start = pwdbChangeEpoch();
    auto drawing = std::make_unique<PwDbDatabase>(false, true);
    const uint64_t made = pwdbChangeEpoch();
    EXPECT_GT(made, start);
    drawing->noteChange();
    EXPECT_GT(pwdbChangeEpoch(), made);
    const uint64_t beforeDestruction = pwdbChangeEpoch();
    drawing.reset();
    EXPECT_GT(pwdbChangeEpoch(), beforeDestruction);
}

}  // namespace
