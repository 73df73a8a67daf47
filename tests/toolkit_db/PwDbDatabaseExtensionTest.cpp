// The database's extension slots: state a layer above keeps per drawing, made on first use,
// ended with the drawing, and kept or dropped when a file is read into the drawing again.
#include <lodeqdb/toolkit/db/PwDbDatabaseExtension.h>

#include <gtest/gtest.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "support/TempFolderTest.h"

namespace {

int g_endedStates = 0;

// State of the database object itself: it stays when the drawing is read again.
struct KeptState : PwDbDatabaseExtension {
    static const PwDbExtensionSlot slot;
    ~KeptState() override { ++g_endedStates; }
    int value = 0;
};
const PwDbExtensionSlot KeptState::slot{};

// State of the drawing's contents: it goes with them.
struct ContentsState : PwDbDatabaseExtension {
    static const PwDbExtensionSlot slot;
    ~ContentsState() override { ++g_endedStates; }
    int value = 0;
};
const PwDbExtensionSlot ContentsState::slot{.followsContents = true};

class PwDbDatabaseExtensionTest : public lodeqdbtest::TempFolderTest {
  protected:
    PwDbDatabaseExtensionTest() : TempFolderTest("lodeqdb-extension") {}
};

TEST_F(PwDbDatabaseExtensionTest, StateIsMadeOnFirstUseAndFoundAfterwards) {
    PwDbDatabase drawing;
    EXPECT_EQ(pwdbFindExtension<KeptState>(drawing), nullptr);
    KeptState& state = pwdbExtension<KeptState>(drawing);
    state.value = 7;
    EXPECT_EQ(pwdbFindExtension<KeptState>(drawing), &state);
    EXPECT_EQ(&pwdbExtension<KeptState>(drawing), &state);
    EXPECT_EQ(pwdbFindExtension<ContentsState>(drawing), nullptr);
}

TEST_F(PwDbDatabaseExtensionTest, EachDrawingHasItsOwnState) {
    PwDbDatabase first;
    PwDbDatabase second;
    pwdbExtension<KeptState>(first).value = 1;
    EXPECT_EQ(pwdbFindExtension<KeptState>(second), nullptr);
    EXPECT_EQ(pwdbExtension<KeptState>(second).value, 0);
}

TEST_F(PwDbDatabaseExtensionTest, StateEndsWithTheDrawingOrWhenReplaced) {
    g_endedStates = 0;
    {
        PwDbDatabase drawing;
        pwdbExtension<KeptState>(drawing);
        pwdbExtension<ContentsState>(drawing);
        drawing.setExtension(KeptState::slot, std::make_unique<KeptState>());
        EXPECT_EQ(g_endedStates, 1);
        drawing.setExtension(KeptState::slot, nullptr);
        EXPECT_EQ(g_endedStates, 2);
        EXPECT_EQ(pwdbFindExtension<KeptState>(drawing), nullptr);
    }
    EXPECT_EQ(g_endedStates, 3);
}

TEST_F(PwDbDatabaseExtensionTest, ReadingAFileKeepsTheDatabasesStateAndDropsTheContents) {
    const wstring path = Path("drawing.plw");
    auto saved = PwDbAuthoring::createDrawing();
    ASSERT_EQ(saved->saveAs(path.c_str(), true, PwDb::PwDbPlwVersionCurrent), 0);

    PwDbDatabase drawing;
    pwdbExtension<KeptState>(drawing).value = 7;
    pwdbExtension<ContentsState>(drawing).value = 9;
    g_endedStates = 0;
    ASSERT_EQ(drawing.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate), 0);
    ASSERT_NE(pwdbFindExtension<KeptState>(drawing), nullptr);
    EXPECT_EQ(pwdbFindExtension<KeptState>(drawing)->value, 7);
    EXPECT_EQ(pwdbFindExtension<ContentsState>(drawing), nullptr);
    EXPECT_EQ(g_endedStates, 1) << "the contents' state ends with the contents it belonged to";
}

TEST_F(PwDbDatabaseExtensionTest, AFailedReadKeepsEverything) {
    const wstring path = Path("broken.plw");
    Write("broken.plw", "not a drawing at all");
    PwDbDatabase drawing;
    pwdbExtension<ContentsState>(drawing).value = 9;
    EXPECT_NE(drawing.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate), 0);
    ASSERT_NE(pwdbFindExtension<ContentsState>(drawing), nullptr);
    EXPECT_EQ(pwdbFindExtension<ContentsState>(drawing)->value, 9);
}

}  // namespace
