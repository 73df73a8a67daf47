// Reading the revision table: the header row's names and every data row as a map from header
// text to cell text, as people see them.
#include <gtest/gtest.h>

#include "RevisionTestSupport.h"
#include "SpyTable.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include "toolkit/pal/PwHeapFaults.h"

namespace revblocktest {
namespace {

using RevisionBlock::BlockMgr;
using RevisionBlock::BlockMgrImpl;
using Data = std::vector<RowData>;

class Reading : public RevisionFiles {
  protected:
    /// `design` in a revision block, through a file of the fixture's format.
    std::unique_ptr<PwDbDatabase> Drawing(const PwDbAuthoring::TableDesign& design,
                                          bool spy = false) {
        auto made = PwDbAuthoring::createDrawing();
        AddRevisionBlock(*made, design, true, spy);
        return ReadFromDisk(WriteToDisk(*made, "reading"));
    }
};

TEST_P(Reading, HeadersAndRowsInTableOrder) {
    auto drawing = Drawing(StandardDesign(
        {{u"A", u"2024-01-05", u"First issue", u"JM"}, {u"B", u"2024-02-01", u"Doors", u"AK"}}));
    BlockMgr manager(*drawing);
    EXPECT_EQ(manager.GetColumnHeaders(),
              (std::vector<wstring>{u"REV", u"DATE", u"DESCRIPTION", u"BY"}));
    EXPECT_EQ(manager.GetData(), (Data{{{u"REV", u"A"},
                                        {u"DATE", u"2024-01-05"},
                                        {u"DESCRIPTION", u"First issue"},
                                        {u"BY", u"JM"}},
                                       {{u"REV", u"B"},
                                        {u"DATE", u"2024-02-01"},
                                        {u"DESCRIPTION", u"Doors"},
                                        {u"BY", u"AK"}}}));
    EXPECT_FALSE(AnyObjectModified(*drawing));
}

TEST_P(Reading, AHeaderWithoutDataRowsGivesNoRowsAndAllTheNames) {
    auto drawing = Drawing(StandardDesign({}));
    BlockMgr manager(*drawing);
    EXPECT_TRUE(manager.GetData().empty());
    EXPECT_EQ(manager.GetColumnHeaders().size(), 4u);
}

TEST_P(Reading, OfTwoColumnsWithTheSameHeaderTheRightOneCounts) {
    auto drawing = Drawing(Design({u"REV", u"Date", u"Date"}, {{u"A", u"left", u"right"}}));
    BlockMgr manager(*drawing);
    EXPECT_EQ(manager.GetData(), (Data{{{u"REV", u"A"}, {u"Date", u"right"}}}));
    EXPECT_EQ(manager.GetColumnHeaders(), (std::vector<wstring>{u"REV", u"Date", u"Date"}));
}

TEST_P(Reading, AnEmptyCellIsAnEmptyValueAndAnEmptyHeaderAnEmptyKey) {
    auto drawing = Drawing(Design({u"REV", u""}, {{u"", u"x"}}));
    BlockMgr manager(*drawing);
    EXPECT_EQ(manager.GetData(), (Data{{{u"REV", u""}, {u"", u"x"}}}));
}

TEST_P(Reading, FormattedTextReadsAsItsPlainText) {
    auto drawing = Drawing(
        Design({u"{\\fserif;\\H3;Rev}", u"NOTE"}, {{u"\\LA\\l", u"two\\Plines \\{x\\} a\\\\b"}}));
    BlockMgr manager(*drawing);
    EXPECT_EQ(manager.GetColumnHeaders(), (std::vector<wstring>{u"Rev", u"NOTE"}));
    EXPECT_EQ(manager.GetData(), (Data{{{u"Rev", u"A"}, {u"NOTE", u"two\nlines {x} a\\b"}}}));
}

TEST_P(Reading, TheTitleRowIsNeverReported) {
    auto drawing = Drawing(StandardDesign({{u"A"}}));
    BlockMgr manager(*drawing);
    for (const wstring& header : manager.GetColumnHeaders()) EXPECT_NE(header, u"REVISIONS");
    const Data data = manager.GetData();
    ASSERT_EQ(data.size(), 1u);
    for (const auto& [name, text] : data[0]) EXPECT_NE(text, u"REVISIONS");
}

TEST_P(Reading, ADataRowAboveTheHeaderIsReportedUnderTheHeadersNames) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"B", u"below"}});
    design.rows.insert(design.rows.begin(), {PwDb::RowKindData, 8.0, {u"A", u"above"}});
    auto drawing = Drawing(design);
    BlockMgr manager(*drawing);
    const Data data = manager.GetData();
    ASSERT_EQ(data.size(), 2u);
    EXPECT_EQ(data[0].at(u"REV"), u"A");
    EXPECT_EQ(data[0].at(u"DATE"), u"above");
    EXPECT_EQ(data[1].at(u"REV"), u"B");
}

TEST_P(Reading, AStripperThatGivesNoTextGivesAnEmptyValue) {
    auto drawing = Drawing(Design({u"REV"}, {{u"A"}}));
    BlockMgr manager(*drawing);
    // The texts are short enough to need no heap of their own: the next allocation is the
    // stripper's buffer for the first value read.
    pwHeapFailAfter(0);
    const Data data = manager.GetData();
    EXPECT_FALSE(pwHeapFailPending());
    pwHeapFailReset();
    EXPECT_EQ(data, (Data{{{u"REV", u""}}}));
    EXPECT_EQ(manager.GetData(), (Data{{{u"REV", u"A"}}}));
}

TEST_P(Reading, ACellThatCantBeReadIsCode301) {
    auto drawing = Drawing(StandardDesign({{u"A", u"2024"}}), true);
    BlockMgr manager(*drawing);
    PwTestSpyTable::knobs().failReadRow = 2;
    PwTestSpyTable::knobs().failReadColumn = 1;
    try {
        manager.GetData();
        FAIL() << "an unreadable cell must throw";
    } catch (const lode::LodeException& error) {
        EXPECT_EQ(error.code(), 301);
        // A bare LodeException: the status isn't kept.
        EXPECT_EQ(typeid(error), typeid(lode::LodeException));
    }
    PwTestSpyTable::knobs().failReadRow = 1;
    EXPECT_THROW(manager.GetColumnHeaders(), lode::LodeException);
}

TEST_P(Reading, ATableThatLostItsHeaderRow) {
    auto drawing = Drawing(StandardDesign({{u"A"}}), true);
    BlockMgr manager(*drawing);
    PwTestSpyTable::knobs().hideHeaderRow = true;
    EXPECT_TRUE(manager.GetColumnHeaders().empty());
    EXPECT_THROW(manager.GetData(), RevisionBlock::RowNotFoundException);
}

TEST(TextRules, ColumnNamesIgnoreBlanksAndCaseCellTextsOnlyBlanks) {
    EXPECT_TRUE(BlockMgrImpl::ColumnNameMatches(u" REV ", u"Rev"));
    EXPECT_TRUE(BlockMgrImpl::ColumnNameMatches(u"Description", u"\tDESCRIPTION"));
    EXPECT_TRUE(BlockMgrImpl::ColumnNameMatches(u"stra\u00dfe", u"STRASSE"));
    EXPECT_FALSE(BlockMgrImpl::ColumnNameMatches(u"REV", u"REVISION"));
    EXPECT_FALSE(BlockMgrImpl::ColumnNameMatches(u"No 7", u"No 07"));
    EXPECT_FALSE(BlockMgrImpl::TrimmedEquals(u" REV ", u"Rev"));
    EXPECT_TRUE(BlockMgrImpl::TrimmedEquals(u" A ", u"A"));
    EXPECT_TRUE(BlockMgrImpl::TrimmedEquals(u"A\u3000", u"\nA"));
    EXPECT_FALSE(BlockMgrImpl::TrimmedEquals(u"A B", u"AB"));
    EXPECT_EQ(BlockMgrImpl::TrimmedCopy(u"  x y \t"), u"x y");
}

TEST(TextRules, EscapingKeepsBracesAndBackslashesAsTheyAre) {
    EXPECT_EQ(BlockMgrImpl::EscapeCellText(u"a\\b{c}"), u"a\\\\b\\{c\\}");
    EXPECT_EQ(BlockMgrImpl::EscapeCellText(u"\\{"), u"\\\\\\{");
    EXPECT_EQ(BlockMgrImpl::EscapeCellText(u"plain"), u"plain");
}

TEST(TextRules, ARowsKeyMatchesByExactNameAndTrimmedText) {
    const RowData row = {{u"REV", u" B "}};
    EXPECT_TRUE(BlockMgrImpl::RowKeyMatches(row, u"REV", u"B"));
    EXPECT_FALSE(BlockMgrImpl::RowKeyMatches(row, u"Rev", u"B"));
    EXPECT_FALSE(BlockMgrImpl::RowKeyMatches(row, u"REV", u"b"));
    EXPECT_FALSE(BlockMgrImpl::RowKeyMatches({}, u"REV", u""));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Reading, testing::Values(Format::Native, Format::Exchange),
                         FormatName);

}  // namespace
}  // namespace revblocktest
