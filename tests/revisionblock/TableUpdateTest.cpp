// Bringing the revision table to a wanted state: rows kept, moved, added and deleted, cells
// written only where they differ, locked cells, escapes, heights; every case through a file of
// each format, updated, saved and read back.
#include <gtest/gtest.h>

#include "RevisionTestSupport.h"
#include "SpyTable.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "support/DrawingReadBack.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace revblocktest {
namespace {

using RevisionBlock::BlockMgr;
using RevisionBlock::UpdateContext;

RevisionBlock::UpdateContext Context(std::vector<wstring> columns, std::vector<wstring> keys,
                                     std::vector<RowData> rows) {
    UpdateContext context;
    context.columns = std::move(columns);
    context.keyColumns = std::move(keys);
    context.rows = std::move(rows);
    return context;
}

class Updating : public RevisionFiles {
  protected:
    std::unique_ptr<PwDbDatabase> Made(const PwDbAuthoring::TableDesign& design, bool spy = false) {
        auto made = PwDbAuthoring::createDrawing();
        AddRevisionBlock(*made, design, true, spy);
        return made;
    }
    /// `made` through a file: read, updated with `context`, saved, read back.
    std::unique_ptr<PwDbDatabase> Updated(PwDbDatabase& made, const UpdateContext& context,
                                          bool* changed = nullptr) {
        return ThroughDisk(made, "update", [&](PwDbDatabase& drawing) {
            BlockMgr manager(drawing);
            const bool result = manager.Update(context);
            if (changed != nullptr) *changed = result;
        });
    }
};

TEST_P(Updating, WantedRowsEqualToTheTableChangeNothingNotEvenTheFile) {
    auto made = Made(StandardDesign(
        {{u"A", u"2024-01-05", u"First issue", u"JM"}, {u"B", u"2024-02-01", u"Doors", u"AK"}}));
    const wstring path = WriteToDisk(*made, "same");
    const std::string before = Read(FileName("same"));
    auto drawing = ReadFromDisk(path);
    const uint64_t changes = drawing->changeCount();
    {
        BlockMgr manager(*drawing);
        EXPECT_FALSE(manager.Update(StandardContext({{u"A", u"2024-01-05", u"First issue", u"JM"},
                                                     {u"B", u"2024-02-01", u"Doors", u"AK"}})));
    }
    EXPECT_EQ(drawing->changeCount(), changes);
    EXPECT_FALSE(AnyObjectModified(*drawing));
    SaveToDisk(*drawing, path);
    EXPECT_EQ(Read(FileName("same")), before);
}

TEST_P(Updating, ARowThatOnlyMovedKeepsItsText) {
    auto made = Made(StandardDesign({{u"A", u"d1", u"one", u"JM"},
                                     {u"B", u"d2", u"two", u"AK"},
                                     {u"C", u"d3", u"three", u"JM"}}));
    bool changed = false;
    auto back = Updated(*made,
                        StandardContext({{u"C", u"d3", u"three", u"JM"},
                                         {u"A", u"d1", u"one", u"JM"},
                                         {u"B", u"d2", u"two", u"AK"}}),
                        &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(
        DataTexts(*back),
        (Cells{{"C", "d3", "three", "JM"}, {"A", "d1", "one", "JM"}, {"B", "d2", "two", "AK"}}));
    EXPECT_EQ(RowKinds(*back), (std::vector<unsigned>{2, 4, 1, 1, 1}));
}

TEST_P(Updating, AKeyThatDiffersOnlyInBlanksIsTheSameRowAndIsntRewritten) {
    auto made = Made(StandardDesign({{u" A ", u"d1", u"one", u"JM"}}));
    bool changed = true;
    auto back = Updated(*made, StandardContext({{u"A", u"d1 ", u"one", u"\tJM"}}), &changed);
    EXPECT_FALSE(changed);
    EXPECT_EQ(StoredTexts(*back)[2], (std::vector<std::string>{" A ", "d1", "one", "JM"}));
}

TEST_P(Updating, OfTwoTableRowsWithOneKeyTheUpperStays) {
    auto made = Made(StandardDesign({{u"A", u"", u"upper"}, {u"A", u"", u"lower"}, {u"B"}}));
    bool changed = false;
    auto back =
        Updated(*made, Context({u"REV"}, {u"REV"}, {{{u"REV", u"A"}}, {{u"REV", u"B"}}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", "upper", ""}, {"B", "", "", ""}}));
}

TEST_P(Updating, OfTwoWantedRowsWithOneKeyTheFirstMatchesAndTheSecondIsNew) {
    auto made = Made(StandardDesign({{u"A", u"", u"old"}}));
    auto back = Updated(*made, StandardContext({{u"A", u"", u"first"}, {u"A", u"", u"second"}}));
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", "first", ""}, {"A", "", "second", ""}}));
}

TEST_P(Updating, ALoneRowMatchingNothingTakesTheLastEntryAndLendsItsFormat) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"Z", u"zdate", u"zdesc", u"ZZ"}});
    for (auto& cell : design.rows[2].cells) {
        cell.textHeight = 3.5;
        cell.alignment = PwDb::BottomRight;
    }
    design.rows[2].height = 11.0;
    auto made = Made(design);
    bool changed = false;
    auto back = Updated(*made,
                        Context({u"REV", u"DESCRIPTION"}, {u"REV"},
                                {{{u"REV", u"A"}, {u"DESCRIPTION", u"a"}},
                                 {{u"REV", u"B"}, {u"DESCRIPTION", u"b"}},
                                 {{u"REV", u"C"}, {u"DESCRIPTION", u"c"}}}),
                        &changed);
    EXPECT_TRUE(changed);
    // The kept row is the last; the columns the update doesn't touch keep its texts.
    EXPECT_EQ(DataTexts(*back),
              (Cells{{"A", "", "a", ""}, {"B", "", "b", ""}, {"C", "zdate", "c", "ZZ"}}));
    for (unsigned row = 2; row < 5; ++row) {
        for (unsigned column = 0; column < 4; ++column) {
            EXPECT_EQ(CellTextHeight(*back, row, column), 3.5) << row << "," << column;
            EXPECT_EQ(CellAlignment(*back, row, column), PwDb::BottomRight) << row;
        }
    }
    EXPECT_EQ(RowHeights(*back), (std::vector<double>{8, 8, 8, 8, 8}));
}

TEST_P(Updating, RowsNoLongerWantedAreDeletedAndTheOthersKeepWhatTheUpdateDoesntTouch) {
    auto made = Made(StandardDesign(
        {{u"A", u"", u"a"}, {u"X", u"", u"x"}, {u"B", u"", u"b"}, {u"Y", u"", u"y"}}));
    bool changed = false;
    auto back =
        Updated(*made, Context({u"REV"}, {u"REV"}, {{{u"REV", u"A"}}, {{u"REV", u"B"}}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", "a", ""}, {"B", "", "b", ""}}));
}

TEST_P(Updating, ANewRowTakesTheFormatOfTheRowAboveItElseOfTheRowBelow) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A"}, {u"B"}});
    for (auto& cell : design.rows[2].cells) cell.alignment = PwDb::TopLeft;
    for (auto& cell : design.rows[3].cells) cell.alignment = PwDb::BottomRight;
    auto made = Made(design);
    auto back = Updated(*made, StandardContext({{u"N0"}, {u"A"}, {u"N1"}, {u"B"}}));
    EXPECT_EQ(
        DataTexts(*back),
        (Cells{{"N0", "", "", ""}, {"A", "", "", ""}, {"N1", "", "", ""}, {"B", "", "", ""}}));
    // N0 has nothing above it: it looks like A, the first kept row below. N1 looks like A too.
    EXPECT_EQ(CellAlignment(*back, 2, 0), PwDb::TopLeft);
    EXPECT_EQ(CellAlignment(*back, 3, 0), PwDb::TopLeft);
    EXPECT_EQ(CellAlignment(*back, 4, 0), PwDb::TopLeft);
    EXPECT_EQ(CellAlignment(*back, 5, 0), PwDb::BottomRight);
}

TEST_P(Updating, NoWantedRowsLeaveOneBlankRow) {
    auto made = Made(StandardDesign({{u"A", u"d1", u"one", u"JM"},
                                     {u"B", u"d2", u"two", u"AK"},
                                     {u"C", u"d3", u"three", u"PL"}}));
    bool changed = false;
    auto back = Updated(*made, Context({u"REV", u"DESCRIPTION"}, {u"REV"}, {}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"", "d3", "", "PL"}}));
    // Cleared once, there is nothing more to clear.
    auto again = Updated(*back, Context({u"REV", u"DESCRIPTION"}, {u"REV"}, {}), &changed);
    EXPECT_FALSE(changed);
    EXPECT_EQ(DataTexts(*again), (Cells{{"", "d3", "", "PL"}}));
}

TEST_P(Updating, WithoutDataRowsNewRowsTakeTheHeadersFormatAndHeight) {
    PwDbAuthoring::TableDesign design = StandardDesign({});
    design.rows[1].height = 9.5;
    for (auto& cell : design.rows[1].cells) cell.alignment = PwDb::MiddleCenter;
    auto made = Made(design);
    bool changed = false;
    auto back = Updated(*made, StandardContext({{u"A", u"d1"}, {u"B", u"d2"}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(RowKinds(*back), (std::vector<unsigned>{2, 4, 1, 1}));
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "d1", "", ""}, {"B", "d2", "", ""}}));
    EXPECT_EQ(RowHeights(*back), (std::vector<double>{8.0, 9.5, 9.5, 9.5}));
    EXPECT_EQ(CellAlignment(*back, 2, 2), PwDb::MiddleCenter);
    EXPECT_EQ(CellAlignment(*back, 3, 3), PwDb::MiddleCenter);
}

TEST_P(Updating, ALockedCellThatNeedsNoChangeStaysLockedAndUntouched) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A", u"d1", u"one", u"JM"}});
    design.rows[2].cells[2].state = PwDb::CellStateContentLocked;
    auto made = Made(design);
    bool changed = true;
    auto back = Updated(*made, StandardContext({{u"A", u"d1", u"one", u"JM"}}), &changed);
    EXPECT_FALSE(changed);
    EXPECT_EQ(CellState(*back, 2, 2), PwDb::CellStateContentLocked);
}

TEST_P(Updating, ALockedCellThatChangesIsWrittenAndLockedAgainAsItWas) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A", u"d1", u"one", u"JM"}});
    const int states[] = {PwDb::CellStateContentLocked, PwDb::CellStateFormatLocked,
                          PwDb::CellStateContentReadOnly,
                          PwDb::CellStateContentLocked | PwDb::CellStateFormatLocked |
                              PwDb::CellStateContentReadOnly};
    for (unsigned column = 0; column < 4; ++column)
        design.rows[2].cells[column].state = states[column];
    auto made = Made(design);
    bool changed = false;
    auto back = Updated(*made, StandardContext({{u"A2", u"d2", u"two", u"AK"}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A2", "d2", "two", "AK"}}));
    for (unsigned column = 0; column < 4; ++column)
        EXPECT_EQ(CellState(*back, 2, column), states[column]) << column;
}

TEST_P(Updating, BracesAndBackslashesReadBackAsWrittenAndArentWrittenAgain) {
    auto made = Made(StandardDesign({{u"A"}}));
    const wstring odd = u"{x} \\y\\ C:\\Temp\\P \\{z}";
    bool changed = false;
    auto back = Updated(*made, StandardContext({{u"A", u"", odd, u"\\"}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", Utf8(odd), "\\"}}));
    BlockMgr reader(*back);
    EXPECT_EQ(reader.GetData()[0].at(u"DESCRIPTION"), odd);
    auto again = Updated(*back, StandardContext({{u"A", u"", odd, u"\\"}}), &changed);
    EXPECT_FALSE(changed);
}

TEST_P(Updating, AKeyOutsideTheColumnsIsCode403EvenWhenTheHeaderHasIt) {
    auto made = Made(StandardDesign({{u"A", u"", u"one"}}));
    const wstring path = WriteToDisk(*made, "key");
    const std::string before = Read(FileName("key"));
    auto drawing = ReadFromDisk(path);
    {
        BlockMgr manager(*drawing);
        const auto code = [&](const UpdateContext& context) {
            try {
                manager.Update(context);
            } catch (const lode::LodeException& error) {
                EXPECT_EQ(typeid(error), typeid(lode::LodeException));
                return error.code();
            }
            return 0;
        };
        EXPECT_EQ(code(Context({u"DESCRIPTION"}, {u"REV"}, {{{u"DESCRIPTION", u"x"}}})), 403);
        EXPECT_EQ(code(Context({u"REV", u"DESCRIPTION"}, {}, {{{u"REV", u"B"}}})), 403);
        EXPECT_EQ(code(Context({u"NOTES"}, {u"NOTES"}, {{{u"NOTES", u"x"}}})), 403);
        // Keys compare exactly with the names of `columns`, not with the header.
        EXPECT_EQ(code(Context({u"REV"}, {u"rev"}, {{{u"REV", u"x"}}})), 403);
    }
    EXPECT_FALSE(AnyObjectModified(*drawing));
    SaveToDisk(*drawing, path);
    EXPECT_EQ(Read(FileName("key")), before);
}

TEST_P(Updating, ColumnNamesResolveWithBlanksAndCaseIgnoredAndKeepTheCallersSpelling) {
    auto made = Made(Design({u"Rev", u"Note"}, {{u"A", u"old"}}));
    bool changed = false;
    auto back = Updated(*made,
                        Context({u" REV ", u"note"}, {u" REV "},
                                {{{u" REV ", u"A"}, {u"note", u"new"}, {u"Note", u"ignored"}}}),
                        &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "new"}}));
}

TEST_P(Updating, OfTwoColumnsWithOneHeaderTheLeftOneIsWritten) {
    auto made = Made(Design({u"REV", u"NOTE", u"NOTE"}, {{u"A", u"l", u"r"}}));
    auto back =
        Updated(*made, Context({u"REV", u"NOTE"}, {u"REV"}, {{{u"REV", u"A"}, {u"NOTE", u"new"}}}));
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "new", "r"}}));
}

TEST_P(Updating, AGrownRowThatChangesGoesBackToTheHeadersHeight) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A", u"", u"one"}, {u"B", u"", u"two"}});
    design.rows[2].height = 14.0;
    design.rows[3].height = 14.0;
    auto made = Made(design);
    auto back = Updated(*made, StandardContext({{u"A", u"", u"ONE"}, {u"B", u"", u"two"}}));
    EXPECT_EQ(RowHeights(*back), (std::vector<double>{8.0, 8.0, 8.0, 14.0}));
}

TEST_P(Updating, AnUpdateNeedsAReference) {
    auto made = PwDbAuthoring::createDrawing();
    AddRevisionBlock(*made, StandardDesign({{u"A"}}), false);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "unplaced"));
    BlockMgr manager(*drawing);
    try {
        manager.Update(StandardContext({{u"B"}}));
        FAIL() << "an update of a block nothing places must throw";
    } catch (const lode::LodeException& error) {
        EXPECT_EQ(error.code(), 401);
    }
    EXPECT_FALSE(AnyObjectModified(*drawing));
}

TEST_P(Updating, AChangeMarksEveryReferenceUpThroughNestedBlocks) {
    auto made = Made(StandardDesign({{u"A"}}));
    PwDbObjectId sheet, other;
    ASSERT_EQ(PwDbAuthoring::addBlock(*made, u"Sheet", &sheet), Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(*made, u"Other", &other), Plotwright::StatusOk);
    const PwDbObjectId revision = lodeqdbtest::BlockNamed(*made, RevisionBlock::RevisionBlockName);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*made, sheet, revision, {0, 0, 0}),
              Plotwright::StatusOk);
    PwDbObjectId sheetPlaced, otherPlaced;
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*made, made->paperSpaceId(), sheet, {0, 0, 0}, {},
                                               0.0, {}, &sheetPlaced),
              Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*made, made->modelSpaceId(), other, {0, 0, 0}, {},
                                               0.0, {}, &otherPlaced),
              Plotwright::StatusOk);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "nested"));
    const auto modified = [&](PwDbObjectId id) {
        PwDbObjectPointer<PwDbObject> object(drawing->getPwDbObjectId(id.handle()),
                                             PwDb::OpenForRead);
        return object && object->isModified();
    };
    {
        BlockMgr manager(*drawing);
        EXPECT_FALSE(manager.Update(StandardContext({{u"A"}})));
        for (const PwDbObjectId reference : RevisionReferences(*drawing))
            EXPECT_FALSE(modified(reference));
        EXPECT_TRUE(manager.Update(StandardContext({{u"B"}})));
    }
    const std::vector<PwDbObjectId> references = RevisionReferences(*drawing);
    ASSERT_EQ(references.size(), 2u);
    for (const PwDbObjectId reference : references) EXPECT_TRUE(modified(reference));
    EXPECT_TRUE(modified(sheetPlaced));
    EXPECT_FALSE(modified(otherPlaced));
}

TEST_P(Updating, BlocksThatPlaceEachOtherInACycleEndTheMarking) {
    auto made = Made(StandardDesign({{u"A"}}));
    PwDbObjectId x, y;
    ASSERT_EQ(PwDbAuthoring::addBlock(*made, u"X", &x), Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(*made, u"Y", &y), Plotwright::StatusOk);
    const PwDbObjectId revision = lodeqdbtest::BlockNamed(*made, RevisionBlock::RevisionBlockName);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*made, x, revision, {0, 0, 0}),
              Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*made, x, y, {0, 0, 0}), Plotwright::StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*made, y, x, {0, 0, 0}), Plotwright::StatusOk);
    bool changed = false;
    auto back = Updated(*made, StandardContext({{u"B"}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"B", "", "", ""}}));
}

TEST_P(Updating, NothingIsRolledBackWhenAStepFailsHalfWay) {
    auto made = Made(StandardDesign({{u"A", u"", u"one"}}), true);
    const wstring path = WriteToDisk(*made, "halfway");
    const std::string before = Read(FileName("halfway"));
    auto drawing = ReadFromDisk(path);
    const PwDbObjectId table = RevisionTableId(*drawing);
    {
        BlockMgr manager(*drawing);
        // The first new row is made; the copy for the second fails.
        PwTestSpyTable::knobs().copiesBeforeFailure = 1;
        try {
            manager.Update(StandardContext({{u"A", u"", u"ONE"}, {u"B"}, {u"C"}}));
            FAIL() << "a failed copy must throw";
        } catch (const lode::PlotwrightException& error) {
            EXPECT_EQ(error.status(), Plotwright::StatusOutOfMemory);
        }
        // The table is open for read again, as before the update.
        PwDbObjectPointer<PwDbTable> open(table, PwDb::OpenForRead);
        ASSERT_TRUE(open);
        EXPECT_FALSE(open->isWriteEnabled());
        EXPECT_EQ(open->numReaders(), 2u);
        // What was done stays in the drawing: the first row's text and the first new row.
        EXPECT_EQ(manager.GetData().size(), 3u);
        EXPECT_EQ(manager.GetData()[0].at(u"DESCRIPTION"), u"ONE");
        EXPECT_EQ(manager.GetData()[1].at(u"REV"), u"B");
    }
    // The caller that doesn't save keeps the file as it was.
    EXPECT_EQ(Read(FileName("halfway")), before);
}

TEST_P(Updating, ALockedCellThatCantBeUnlockedStopsTheUpdate) {
    PwDbAuthoring::TableDesign design = StandardDesign({{u"A", u"", u"one"}});
    design.rows[2].cells[2].state = PwDb::CellStateContentLocked;
    auto made = Made(design, true);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "unlock"));
    BlockMgr manager(*drawing);
    PwTestSpyTable::knobs().refuseUnlock = true;
    EXPECT_THROW(manager.Update(StandardContext({{u"A", u"", u"two"}})), lode::PlotwrightException);
    EXPECT_EQ(CellState(*drawing, 2, 2), PwDb::CellStateContentLocked);
    EXPECT_EQ(DataTexts(*drawing), (Cells{{"A", "", "one", ""}}));
}

TEST_P(Updating, ACellThatRefusesItsTextCountsAsUnchanged) {
    auto made = Made(StandardDesign({{u"A", u"", u"one"}}), true);
    PwTestSpyTable::knobs().refuseTextRow = 2;
    PwTestSpyTable::knobs().refuseTextColumn = 2;
    bool changed = true;
    auto back = Updated(*made, StandardContext({{u"A", u"", u"two"}}), &changed);
    EXPECT_FALSE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", "one", ""}}));
}

TEST_P(Updating, ARowThatCantBeDeletedWhilePruningCountsAsDeleted) {
    auto made = Made(StandardDesign({{u"A"}, {u"B"}, {u"X"}}), true);
    PwTestSpyTable::knobs().refuseDelete = true;
    bool changed = false;
    auto back = Updated(*made, StandardContext({{u"A"}, {u"B"}}), &changed);
    EXPECT_TRUE(changed);
    EXPECT_EQ(DataTexts(*back), (Cells{{"A", "", "", ""}, {"B", "", "", ""}, {"X", "", "", ""}}));
}

TEST_P(Updating, ATableThatClaimsDeletionsItDoesntMakeEndsTheUpdate) {
    auto made = Made(StandardDesign({{u"X"}, {u"A"}, {u"Y"}, {u"Z"}}), true);
    PwTestSpyTable::knobs().pretendDelete = true;
    auto drawing = ReadFromDisk(WriteToDisk(*made, "pretend"));
    BlockMgr manager(*drawing);
    EXPECT_TRUE(manager.Update(Context({u"REV"}, {u"REV"}, {})));
    EXPECT_TRUE(manager.Update(StandardContext({{u"A"}, {u"B"}})));
}

TEST_P(Updating, ARowThatCantBeDeletedWhileClearingStopsTheUpdate) {
    auto made = Made(StandardDesign({{u"A"}, {u"B"}}), true);
    auto drawing = ReadFromDisk(WriteToDisk(*made, "clear"));
    BlockMgr manager(*drawing);
    PwTestSpyTable::knobs().refuseDelete = true;
    EXPECT_THROW(manager.Update(StandardContext({})), lode::PlotwrightException);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Updating, testing::Values(Format::Native, Format::Exchange),
                         FormatName);

}  // namespace
}  // namespace revblocktest
