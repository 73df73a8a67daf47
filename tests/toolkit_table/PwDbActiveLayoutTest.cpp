// The layout that takes new placements: the model space by default, the drawing's choice of
// another layout, the working drawing when none is named, and a host's own layout service.
#include <gtest/gtest.h>

#include "TableTestSupport.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace {

using Plotwright::StatusOk;

PwDbHostLayoutService* Layouts() {
    return pwdbHostApplicationServices()->hostLayoutService();
}

TEST(ActiveLayout, IsTheModelSpaceOfTheWorkingDrawingByDefault) {
    ASSERT_EQ(pwdbHostApplicationServices()->workingDatabase(), nullptr);
    EXPECT_TRUE(Layouts()->activeLayoutBlockId(nullptr).isNull()) << "no working drawing";
    {
        PwDbDatabase working(true, true);
        ASSERT_EQ(pwdbHostApplicationServices()->workingDatabase(), &working);
        EXPECT_EQ(Layouts()->activeLayoutBlockId(nullptr), working.modelSpaceId());
        EXPECT_EQ(Layouts()->activeLayoutBlockId(&working), working.modelSpaceId());
    }
    EXPECT_EQ(pwdbHostApplicationServices()->workingDatabase(), nullptr);
}

TEST(ActiveLayout, TheDrawingMayChooseAnotherLayout) {
    PwDbDatabase working(true, true);
    PwDbObjectId sheet, ordinary;
    ASSERT_EQ(PwDbAuthoring::addLayout(working, u"Sheet", 2, 420, 297, &sheet), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(working, u"Door", &ordinary), StatusOk);
    ASSERT_EQ(working.setCurrentLayoutBlockId(working.paperSpaceId()), StatusOk);
    EXPECT_EQ(Layouts()->activeLayoutBlockId(nullptr), working.paperSpaceId());
    EXPECT_EQ(working.setCurrentLayoutBlockId(ordinary), Plotwright::StatusNotApplicable);
    EXPECT_EQ(working.currentLayoutBlockId(), working.paperSpaceId()) << "a refusal keeps it";
    PwDbDatabase other;
    EXPECT_EQ(working.setCurrentLayoutBlockId(other.modelSpaceId()),
              Plotwright::StatusWrongDatabase);

    // Placing there, as a client that adds a block reference to the active layout does.
    const PwDbObjectId target = Layouts()->activeLayoutBlockId(nullptr);
    PwDbObjectPointer<PwDbBlockTableRecord> space(target, PwDb::OpenForWrite);
    ASSERT_EQ(space.openStatus(), StatusOk);
    auto* reference = new PwDbBlockReference;
    ASSERT_EQ(reference->setReferencedBlock(ordinary), StatusOk);
    PwDbObjectId placed;
    ASSERT_EQ(space->appendPwDbEntity(placed, reference), StatusOk);
    reference->close();
    space.release();
    PwDbObjectPointer<PwDbBlockReference> read(placed, PwDb::OpenForRead);
    ASSERT_EQ(read.openStatus(), StatusOk);
    EXPECT_EQ(read->ownerId(), working.paperSpaceId());

    ASSERT_EQ(working.setCurrentLayoutBlockId(PwDbObjectId()), StatusOk);
    EXPECT_EQ(Layouts()->activeLayoutBlockId(&working), working.modelSpaceId());
}

class ActiveLayoutFiles : public pwdbtabletest::InBothFormats {};

TEST_P(ActiveLayoutFiles, AReadDrawingStartsWithItsModelSpace) {
    PwDbDatabase drawing;
    ASSERT_EQ(drawing.setCurrentLayoutBlockId(drawing.paperSpaceId()), StatusOk);
    const auto read = ReadBack(drawing, "layout");
    EXPECT_EQ(Layouts()->activeLayoutBlockId(read.get()), read->modelSpaceId());
}

INSTANTIATE_TEST_SUITE_P(BothFormats, ActiveLayoutFiles,
                         testing::Values(pwdbtabletest::Format::Native,
                                         pwdbtabletest::Format::Exchange),
                         pwdbtabletest::FormatName);

}  // namespace
