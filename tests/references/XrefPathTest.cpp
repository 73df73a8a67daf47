// The full path of a reference: loaded drawings first, then the stored path against the host.
#include <lodeqdb/references/XrefPath.h>

#include <gtest/gtest.h>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using Plotwright::StatusOk;

// The block `name` of `database`; it stays in memory with its database.
PwDbBlockTableRecord* BlockOf(PwDbDatabase& database, const wstring& name) {
    PwDbSymbolTablePointer<PwDbBlockTable> table(&database, PwDb::OpenForRead);
    PwDbBlockTableRecord* block = nullptr;
    if (table->getAt(name.c_str(), block, PwDb::OpenForRead) != StatusOk) return nullptr;
    block->close();
    return block;
}

// Stored paths in a drawing made in memory: nothing is loaded.
class StoredXrefPath : public testing::Test {
  protected:
    wstring PathOf(const wstring& stored, const wstring& hostPath, bool storedOnly = false) {
        const wstring name = u"REF" + std::u16string(1, static_cast<char16_t>(u'A' + count++));
        EXPECT_EQ(PwDbAuthoring::addXref(*host, name, stored), StatusOk);
        return LodeQDBUtil::GetXrefPath(*host, BlockOf(*host, name), hostPath, storedOnly);
    }

    std::unique_ptr<PwDbDatabase> host = PwDbAuthoring::createDrawing();
    int count = 0;
};

TEST_F(StoredXrefPath, ARelativePathIsCombinedWithTheHostsFolder) {
    EXPECT_EQ(PathOf(u"sub\\x.plw", u"D:\\proj\\a\\host.plw"), u"D:\\proj\\a\\sub\\x.plw");
    EXPECT_EQ(PathOf(u"..\\x.plw", u"D:\\proj\\a\\host.plw", true), u"D:\\proj\\a\\x.plw");
    EXPECT_EQ(PathOf(u"sub/x.plw", u"/home/p/host.plw"), u"/home/p/sub/x.plw");
}

TEST_F(StoredXrefPath, EveryBackslashParentStepIsDroppedNotFollowed) {
    EXPECT_EQ(PathOf(u"..\\..\\b.plw", u"C:\\a\\host.plw"), u"C:\\a\\b.plw");
    EXPECT_EQ(PathOf(u"x\\..", u"C:\\a\\host.plw"), u"C:\\a\\x\\..");
    // A POSIX path keeps its "/../": the file system resolves it.
    EXPECT_EQ(PathOf(u"../lib/x.plw", u"/home/p/host.plw"), u"/home/p/../lib/x.plw");
}

TEST_F(StoredXrefPath, ARootRelativePathGoesUnderTheHostsRoot) {
    EXPECT_EQ(PathOf(u"\\lib\\x.plw", u"D:\\proj\\a\\host.plw"), u"D:\\lib\\x.plw");
    EXPECT_EQ(PathOf(u"\\lib\\x.plw", u"\\\\srv\\share\\a\\host.plw"),
              u"\\\\srv\\share\\lib\\x.plw");
    EXPECT_EQ(PathOf(u"\\lib\\x.plw", u"/home/p/host.plw"), u"/lib\\x.plw");
}

TEST_F(StoredXrefPath, AbsolutePathsAndURLsStandAsStored) {
    EXPECT_EQ(PathOf(u"C:\\x\\y.plw", u"D:\\proj\\host.plw"), u"C:\\x\\y.plw");
    EXPECT_EQ(PathOf(u"C:\\x\\..\\y.plw", u"D:\\proj\\host.plw"), u"C:\\x\\..\\y.plw");
    EXPECT_EQ(PathOf(u"\\\\srv\\share\\x.plw", u"D:\\proj\\host.plw"), u"\\\\srv\\share\\x.plw");
    EXPECT_EQ(PathOf(u"https://example.com/x.plw", u"D:\\proj\\host.plw"),
              u"https://example.com/x.plw");
    EXPECT_EQ(PathOf(u"/srv/x.plw", u"/home/p/host.plw"), u"/srv/x.plw");
}

TEST_F(StoredXrefPath, AnEmptyStoredPathGivesTheHostsFolder) {
    PwDbObjectId block;
    ASSERT_EQ(PwDbAuthoring::addBlock(*host, u"PLAIN", &block), StatusOk);
    EXPECT_EQ(
        LodeQDBUtil::GetXrefPath(*host, BlockOf(*host, u"PLAIN"), u"D:\\proj\\host.plw", false),
        u"D:\\proj");
}

// References resolved from files on disk.
class LoadedXrefPath : public lodeqdbtest::TempFolderTest {
  protected:
    LoadedXrefPath() : TempFolderTest("lodeqdb-xrefpath") {}

    void Save(const std::string& name, const std::vector<std::pair<wstring, wstring>>& references) {
        auto drawing = PwDbAuthoring::createDrawing();
        for (const auto& [block, path] : references)
            ASSERT_EQ(PwDbAuthoring::addXref(*drawing, block, path), StatusOk);
        ASSERT_EQ(drawing->saveAs(Path(name).c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
    void OpenHost() {
        ASSERT_EQ(host.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        pwdbResolveCurrentXRefs(&host, false, true);
    }

    PwDbDatabase host{false, true};
};

TEST_F(LoadedXrefPath, ALoadedReferenceAnswersWithWhereItWasLoadedFrom) {
    ASSERT_EQ(system(("mkdir -p '" + folder + "/sub'").c_str()), 0);
    Save("sub/x.plw", {});
    Save("a.plw", {{u"X", u"sub\\x.plw"}});
    OpenHost();
    const wstring elsewhere = u"C:\\elsewhere\\a.plw";
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, BlockOf(host, u"X"), elsewhere, false),
              Path("sub/x.plw"));
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, BlockOf(host, u"X"), elsewhere, true),
              u"C:\\elsewhere\\sub\\x.plw");
}

TEST_F(LoadedXrefPath, ABlockBelowTheHostAnswersWithTheHostsLoadedBlockOfItsName) {
    Save("x.plw", {});
    Save("b.plw", {{u"X", u"missing\\gone.plw"}});
    Save("a.plw", {{u"X", u"x.plw"}, {u"B", u"b.plw"}});
    OpenHost();
    PwDbDatabase* b = BlockOf(host, u"B")->xrefDatabase();
    ASSERT_NE(b, nullptr);
    PwDbBlockTableRecord* inner = BlockOf(*b, u"X");
    ASSERT_EQ(inner->xrefStatus(), PwDb::XrefFileMissing);
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, inner, Path("a.plw"), false), Path("x.plw"));
}

TEST_F(LoadedXrefPath, AnUnloadedHostBlockOfTheNameLendsItsStoredPath) {
    Save("b.plw", {{u"Y", u"y.plw"}, {u"Z", u"C:\\fixed\\z.plw"}, {u"R", u"\\root\\r.plw"}});
    Save("a.plw",
         {{u"Y", u"lib\\y.plw"}, {u"Z", u"lib\\z.plw"}, {u"R", u"other\\r.plw"}, {u"B", u"b.plw"}});
    OpenHost();
    PwDbDatabase* b = BlockOf(host, u"B")->xrefDatabase();
    ASSERT_NE(b, nullptr);
    const wstring hostPath = u"D:\\proj\\a.plw";
    // Relative in the given block: the host's stored path wins.
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, BlockOf(*b, u"Y"), hostPath, false),
              u"D:\\proj\\lib\\y.plw");
    // Root-relative in the given block: the host's stored path wins too.
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, BlockOf(*b, u"R"), hostPath, false),
              u"D:\\proj\\other\\r.plw");
    // Absolute in the given block: the host's block is never looked at.
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, BlockOf(*b, u"Z"), hostPath, false),
              u"C:\\fixed\\z.plw");
    // Only the stored path: no other block is looked at.
    EXPECT_EQ(LodeQDBUtil::GetXrefPath(host, BlockOf(*b, u"Y"), hostPath, true),
              u"D:\\proj\\y.plw");
}

}  // namespace
