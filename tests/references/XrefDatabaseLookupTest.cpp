// Finding loaded reference drawings by path and by block.
#include <lodeqdb/references/XrefDatabaseLookup.h>

#include <gtest/gtest.h>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using LodeUtil::AbsoluteFilePath;
using Plotwright::StatusOk;

class XrefLookup : public lodeqdbtest::TempFolderTest {
  protected:
    XrefLookup() : TempFolderTest("lodeqdb-lookup") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/sub'").c_str()), 0);
        Save("sub/c.plw", {});
        Save("sub/b.plw", {{u"C", u"c.plw"}});
        Save("a.plw", {{u"B", u"sub\\b.plw"}, {u"GONE", u"gone.plw"}});
        ASSERT_EQ(host.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        pwdbResolveCurrentXRefs(&host, false, true);
    }
    void Save(const std::string& name, const std::vector<std::pair<wstring, wstring>>& refs) {
        auto drawing = PwDbAuthoring::createDrawing();
        for (const auto& [block, path] : refs)
            ASSERT_EQ(PwDbAuthoring::addXref(*drawing, block, path), StatusOk);
        ASSERT_EQ(drawing->saveAs(Path(name).c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
    static PwDbObjectId BlockId(PwDbDatabase& database, const wstring& name) {
        PwDbSymbolTablePointer<PwDbBlockTable> table(&database, PwDb::OpenForRead);
        PwDbObjectId id;
        table->getIdAt(name.c_str(), id);
        return id;
    }

    PwDbDatabase host{false, true};
};

TEST_F(XrefLookup, ANestedReferenceIsFoundByItsPath) {
    PwDbDatabase* b = LodeQDBUtil::FindXrefDatabase(&host, AbsoluteFilePath(Path("sub/b.plw")));
    ASSERT_NE(b, nullptr);
    PwDbDatabase* c = LodeQDBUtil::FindXrefDatabase(&host, AbsoluteFilePath(Path("sub/c.plw")));
    ASSERT_NE(c, nullptr);
    EXPECT_NE(b, c);
    EXPECT_EQ(wstring(pwdbOriginalXrefFullPathFor(c)), Path("sub/c.plw"));
    // Spelled otherwise, the same file.
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(&host, AbsoluteFilePath(Path("sub/../sub/./c.plw"))),
              c);
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(&host, AbsoluteFilePath(Path("gone.plw"))), nullptr);
}

TEST_F(XrefLookup, AReferenceIsFoundByItsBlock) {
    const PwDbObjectId b = BlockId(host, u"B");
    PwDbDatabase* loaded = LodeQDBUtil::FindXrefDatabase(&host, b);
    ASSERT_NE(loaded, nullptr);
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(&host, BlockId(*loaded, u"C")),
              LodeQDBUtil::FindXrefDatabase(&host, AbsoluteFilePath(Path("sub/c.plw"))));
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(&host, BlockId(host, u"GONE")), nullptr);
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(&host, host.modelSpaceId()), nullptr);
}

TEST_F(XrefLookup, AGraphOfOneNodeFindsNothing) {
    PwDbDatabase alone;
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(&alone, AbsoluteFilePath(Path("sub/b.plw"))), nullptr);
    PwDbXrefGraph graph;
    pwdbGetHostPlwXrefGraph(&alone, graph, true);
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(AbsoluteFilePath(Path("sub/b.plw")), graph), nullptr);
    PwDbXrefGraph empty;
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(AbsoluteFilePath(Path("sub/b.plw")), empty), nullptr);
}

TEST_F(XrefLookup, ADrawingWithoutAnOriginalPathIsMatchedByItsStoredPath) {
    // A graph made by hand: its one reference holds a drawing that wasn't loaded for one.
    auto holder = PwDbAuthoring::createDrawing();
    PwDbObjectId block;
    ASSERT_EQ(PwDbAuthoring::addXref(*holder, u"R", Path("stored.plw"), {}, &block), StatusOk);
    PwDbDatabase loose;
    PwDbXrefGraph graph(
        new PwDbXrefGraphNode(holder.get(), PwDbObjectId(), u"", PwDb::XrefNotAnXref));
    auto* node = graph.addNode(new PwDbXrefGraphNode(&loose, block, u"R", PwDb::XrefResolved));
    graph.hostPlw()->addOut(node);
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(AbsoluteFilePath(Path("stored.plw")), graph), &loose);
    EXPECT_EQ(LodeQDBUtil::FindXrefDatabase(AbsoluteFilePath(Path("other.plw")), graph), nullptr);
}

}  // namespace
