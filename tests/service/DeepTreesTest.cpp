// The walks over trees far deeper and denser than drawings usually make: a chain of 100,000
// drawings, a chain of 20,000 design files, 200 drawings that all refer to each other. Each
// walk goes through to the end with every record, and none can exhaust the thread's stack.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/TreeWalks.h>
#include "support/ReferenceTrees.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

// Under the sanitizers every access costs many times more: a chain of 20,000 drawings is still
// deeper than any recursion could go there.
#ifdef LODEQDB_SANITIZED
constexpr int kDrawingChain = 20000;
#else
constexpr int kDrawingChain = 100000;
#endif

using LodeQDBService::FileData;
using LodeQDBService::Request::PlotwrightChildren;
using LodeQDBService::Request::PlotwrightNestedChildren;
using LodeQDBService::Request::PlotwrightParents;
using LodeQDBService::Request::WalkStop;

class DeepTrees : public lodeqdbtest::TempFolderTest {
  protected:
    DeepTrees() : TempFolderTest("lodeqdb-deep") {}
    wstring Drawing(const char* prefix, int index, const char* extension = ".plw") const {
        return Path(prefix + std::to_string(index) + extension);
    }
};

TEST_F(DeepTrees, AChainOf100000DrawingsIsWalkedToItsEnd) {
    constexpr int kChain = kDrawingChain;
    lodeqdbtest::WriteReferenceChain(folder, kChain);
    const wstring root = Drawing("d", 0);

    const std::vector<FileData> children = PlotwrightChildren(root, nullptr);
    ASSERT_EQ(children.size(), 1u);
    EXPECT_EQ(children[0].GetFullname(), Drawing("d", 1));

    WalkStop stop;
    const std::vector<FileData> all = PlotwrightNestedChildren(root, false, stop);
    EXPECT_FALSE(stop.stopped) << stop.exceptionClass;
    ASSERT_EQ(all.size(), static_cast<size_t>(kChain - 1));
    for (int i = 1; i < kChain; i += 9973) {
        EXPECT_EQ(all[static_cast<size_t>(i - 1)].GetFullname(), Drawing("d", i));
        EXPECT_EQ(all[static_cast<size_t>(i - 1)].GetXrefStatus(), PwDb::XrefResolved);
    }
    EXPECT_EQ(all.back().GetFullname(), Drawing("d", kChain - 1));

    PwDbDatabase loaded(false, true);
    LodeQDBUtil::ReadFileToDatabase(root, loaded, true, true);
    const std::vector<FileData> parents =
        PlotwrightParents(root, loaded, {Drawing("d", kChain - 1)}, stop);
    EXPECT_FALSE(stop.stopped) << stop.exceptionClass;
    ASSERT_EQ(parents.size(), 1u);
    EXPECT_EQ(parents[0].GetFullname(), Drawing("d", kChain - 2));
}

TEST_F(DeepTrees, AChainOf20000DesignFilesIsFollowedToItsEnd) {
    constexpr int kChain = 20000;
    lodeqdbtest::WriteDesignFileChain(folder, kChain);
    WalkStop stop;
    const std::vector<FileData> all = PlotwrightNestedChildren(Path("root.plw"), true, stop);
    EXPECT_FALSE(stop.stopped) << stop.exceptionClass;
    ASSERT_EQ(all.size(), static_cast<size_t>(kChain));
    EXPECT_EQ(all.front().GetFullname(), Drawing("g", 0, ".dgn"));
    EXPECT_EQ(all.back().GetFullname(), Drawing("g", kChain - 1, ".dgn"));

    PwDbDatabase root(false, true);
    LodeQDBUtil::ReadFileToDatabase(Path("root.plw"), root, true, true);
    const std::vector<FileData> parents =
        PlotwrightParents(Path("root.plw"), root, {Drawing("g", kChain - 1, ".dgn")}, stop);
    EXPECT_FALSE(stop.stopped) << stop.exceptionClass;
    ASSERT_EQ(parents.size(), 1u);
    EXPECT_EQ(parents[0].GetFullname(), Drawing("g", kChain - 2, ".dgn"));
}

TEST_F(DeepTrees, TwoHundredDrawingsThatAllReferToEachOther) {
    constexpr int kDrawings = 200;
    lodeqdbtest::WriteDenseReferences(folder, kDrawings);
    const wstring root = Drawing("n", 0);
    WalkStop stop;
    const std::vector<FileData> all = PlotwrightNestedChildren(root, false, stop);
    EXPECT_FALSE(stop.stopped) << stop.exceptionClass;
    ASSERT_EQ(all.size(), static_cast<size_t>(kDrawings - 1)) << "every other drawing, once";
    // Depth first: the root's first reference, that one's first it hasn't met, and so on.
    for (int i = 1; i < kDrawings; ++i)
        EXPECT_EQ(all[static_cast<size_t>(i - 1)].GetFullname(), Drawing("n", i));

    PwDbDatabase loaded(false, true);
    LodeQDBUtil::ReadFileToDatabase(root, loaded, true, true);
    const std::vector<FileData> parents =
        PlotwrightParents(root, loaded, {Drawing("n", kDrawings - 1)}, stop);
    EXPECT_FALSE(stop.stopped) << stop.exceptionClass;
    EXPECT_EQ(parents.size(), static_cast<size_t>(kDrawings - 1)) << "the root and every other";
}

}  // namespace
