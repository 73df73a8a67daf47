// The template drawing the build makes: the block "lode_RevBlock" with a title row, the header
// row "REV", "DATE", "DESCRIPTION", "BY" and one blank data row, in text styles of its own.
#include <gtest/gtest.h>

#include "RevisionTestSupport.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "support/DrawingReadBack.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>
#include "tools/templates/RevisionBlockTemplate.h"

namespace revblocktest {
namespace {

std::unique_ptr<PwDbDatabase> BuiltTemplate() {
    auto drawing = std::make_unique<PwDbDatabase>(false, true);
    LodeQDBUtil::ReadFileToDatabase(LodeUtil::Utf16FromUtf8(LODEQDB_REVISION_TEMPLATE), *drawing,
                                    true, false);
    return drawing;
}

wstring StyleName(PwDbObjectId style) {
    return lodeqdbtest::RecordName(style);
}

TEST(TemplateDrawing, HoldsTheRevisionBlockUnplaced) {
    auto drawing = BuiltTemplate();
    RevisionBlock::BlockMgr manager(*drawing);
    ASSERT_TRUE(manager.HasBlockDefinition());
    EXPECT_FALSE(manager.HasBlockInstance());
    EXPECT_EQ(manager.GetColumnHeaders(),
              (std::vector<wstring>{u"REV", u"DATE", u"DESCRIPTION", u"BY"}));
    EXPECT_EQ(manager.GetData(),
              (std::vector<RowData>{
                  {{u"REV", u""}, {u"DATE", u""}, {u"DESCRIPTION", u""}, {u"BY", u""}}}));
}

TEST(TemplateDrawing, ItsTableHasATitleSensibleWidthsAndStylesOfItsOwn) {
    auto drawing = BuiltTemplate();
    EXPECT_EQ(PlainTexts(*drawing)[0][0], "REVISIONS");
    EXPECT_EQ(RowKinds(*drawing), (std::vector<unsigned>{2, 4, 1}));
    PwDbObjectPointer<PwDbTable> table(RevisionTableId(*drawing), PwDb::OpenForRead);
    ASSERT_TRUE(table);
    ASSERT_EQ(table->columnCount(), 4u);
    // The description is the widest column, the revision letter the narrowest.
    EXPECT_GT(table->columnWidth(2), table->columnWidth(1));
    EXPECT_GT(table->columnWidth(1), table->columnWidth(0));
    // Data rows go back to the header's height when they change: the template makes them one.
    EXPECT_EQ(table->rowHeight(1), table->rowHeight(2));
    EXPECT_EQ(StyleName(table->cellTextStyle(0, 0)), u"RevisionTitle");
    EXPECT_EQ(StyleName(table->cellTextStyle(1, 2)), u"RevisionHeading");
    EXPECT_EQ(StyleName(table->cellTextStyle(2, 2)), u"RevisionText");
}

TEST(TemplateDrawing, TheDesignGoesIntoAnyDrawingOnce) {
    auto drawing = PwDbAuthoring::createDrawing();
    EXPECT_EQ(lodeqdb::templates::AddRevisionBlock(*drawing), Plotwright::StatusOk);
    EXPECT_EQ(StoredTexts(*drawing), StoredTexts(*BuiltTemplate()));
    EXPECT_NE(lodeqdb::templates::AddRevisionBlock(*drawing), Plotwright::StatusOk);
}

}  // namespace
}  // namespace revblocktest
