// The table entity: rows and columns, cell text and format, locked cells, copying ranges,
// statuses for positions outside the table, the open protocol, and both file formats.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "TableTestSupport.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace {

using Plotwright::StatusOk;
using pwdbtabletest::Format;
using pwdbtabletest::InBothFormats;
using pwdbtabletest::Kinds;
using pwdbtabletest::Same;
using pwdbtabletest::Texts;
using Rows = std::vector<std::vector<std::string>>;

// Title, header and three data rows of three columns.
PwDbAuthoring::TableDesign RevisionDesign() {
    PwDbAuthoring::TableDesign design;
    design.position = {10, 20, 0};
    design.columnWidths = {15, 60, 25};
    design.rows.push_back({PwDb::RowKindTitle, 10.0, {u"REVISIONS"}});
    design.rows.push_back({PwDb::RowKindHeader, 8.0, {u"Rev", u"Description", u"Date"}});
    design.rows.push_back({PwDb::RowKindData, 6.0, {u"A", u"First issue", u"2024-01-05"}});
    design.rows.push_back({PwDb::RowKindData, 6.5, {u"B", u"Doors moved", u"2024-02-11"}});
    design.rows.push_back({PwDb::RowKindData, 7.0, {u"C", u"Stairs", u"2024-03-02"}});
    return design;
}

class Tables : public InBothFormats {
  protected:
    void SetUp() override {
        InBothFormats::SetUp();
        drawing = PwDbAuthoring::createDrawing();
        ASSERT_EQ(PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), RevisionDesign(), {},
                                          &tableId),
                  StatusOk);
    }

    /// Applies `change` to the table open for write, then reads the drawing back from a file
    /// and gives the table's texts there, checking kinds and heights too.
    template <class Change>
    Rows ChangeAndReadBack(Change change, const std::string& name) {
        {
            PwDbObjectPointer<PwDbTable> table(tableId, PwDb::OpenForWrite);
            EXPECT_EQ(table.openStatus(), StatusOk);
            change(*table);
            EXPECT_TRUE(table->isModified());
        }
        PwDbObjectPointer<PwDbTable> before(tableId, PwDb::OpenForRead);
        readBack = ReadBack(*drawing, name);
        PwDbObjectPointer<PwDbTable> after(Same(*readBack, tableId), PwDb::OpenForRead);
        EXPECT_EQ(after.openStatus(), StatusOk);
        if (after.openStatus() != StatusOk) return {};
        EXPECT_EQ(Kinds(*after), Kinds(*before));
        for (unsigned r = 0; r < before->rowCount(); ++r) {
            EXPECT_EQ(after->rowHeight(r), before->rowHeight(r)) << "row " << r;
        }
        EXPECT_EQ(Texts(*after), Texts(*before));
        return Texts(*after);
    }

    std::unique_ptr<PwDbDatabase> drawing;
    std::unique_ptr<PwDbDatabase> readBack;
    PwDbObjectId tableId;
};

const Rows kStart = {{"REVISIONS", "", ""},
                     {"Rev", "Description", "Date"},
                     {"A", "First issue", "2024-01-05"},
                     {"B", "Doors moved", "2024-02-11"},
                     {"C", "Stairs", "2024-03-02"}};

TEST_P(Tables, AuthoredTableReadsBackWithEveryField) {
    PwDbObjectId bold;
    ASSERT_EQ(PwDbAuthoring::addTextStyle(*drawing, u"Bold", {u"serif", 3.5, 0.8}, &bold),
              StatusOk);
    {
        PwDbObjectPointer<PwDbTable> table(tableId, PwDb::OpenForWrite);
        ASSERT_EQ(table.openStatus(), StatusOk);
        ASSERT_EQ(table->setCellTextStyle(1, 1, bold), StatusOk);
        ASSERT_EQ(table->setCellTextHeight(1, 1, 4.25), StatusOk);
        ASSERT_EQ(table->setCellAlignment(1, 2, PwDb::BottomRight), StatusOk);
        ASSERT_EQ(table->setCellState(2, 0, PwDb::CellStateContentLocked), StatusOk);
        ASSERT_EQ(table->setColumnWidth(2, 33.5), StatusOk);
    }
    const auto read = ReadBack(*drawing, "fields");
    PwDbObjectPointer<PwDbTable> table(Same(*read, tableId), PwDb::OpenForRead);
    ASSERT_EQ(table.openStatus(), StatusOk);
    EXPECT_EQ(Texts(*table), kStart);
    EXPECT_EQ(Kinds(*table), (std::vector<unsigned>{2, 4, 1, 1, 1}));
    EXPECT_EQ(table->rowCount(), 5u);
    EXPECT_EQ(table->columnCount(), 3u);
    EXPECT_EQ(table->rowHeight(0), 10.0);
    EXPECT_EQ(table->rowHeight(3), 6.5);
    EXPECT_EQ(table->columnWidth(0), 15.0);
    EXPECT_EQ(table->columnWidth(2), 33.5);
    EXPECT_EQ(table->position(), PwGePoint3d(10, 20, 0));
    EXPECT_EQ(table->cellTextStyle(1, 1), Same(*read, bold));
    EXPECT_EQ(table->cellTextStyle(1, 0), read->standardTextStyleId());
    EXPECT_FALSE(table->cellTextStyle(1, 0).isNull());
    EXPECT_EQ(table->cellTextHeight(1, 1), 4.25);
    EXPECT_EQ(table->cellTextHeight(1, 0), 2.5);
    EXPECT_EQ(table->cellAlignment(1, 2), PwDb::BottomRight);
    EXPECT_EQ(table->cellAlignment(1, 1), PwDb::MiddleLeft);
    EXPECT_EQ(table->cellState(2, 0), PwDb::CellStateContentLocked);
    EXPECT_EQ(table->cellState(2, 1), PwDb::CellStateNone);
    EXPECT_EQ(table->cellSpan(0, 0), 3u);
    EXPECT_EQ(table->cellSpan(0, 1), 0u);
    EXPECT_EQ(table->cellSpan(1, 1), 1u);
    EXPECT_EQ(table->blockId(), read->modelSpaceId());
}

TEST_P(Tables, InsertRowsAtTopMiddleAndEnd) {
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.insertRows(0, 4.0, 1), StatusOk);                 // top
            ASSERT_EQ(table.insertRows(3, 5.0, 2), StatusOk);                 // middle, two
            ASSERT_EQ(table.insertRows(table.rowCount(), 9.0, 1), StatusOk);  // end
            ASSERT_EQ(table.setCellText(0, 0, u"top"), StatusOk);
            ASSERT_EQ(table.setCellText(4, 1, u"middle"), StatusOk);
            ASSERT_EQ(table.setCellText(8, 2, u"end"), StatusOk);
            EXPECT_EQ(table.rowHeight(3), 5.0);
            EXPECT_EQ(table.rowHeight(8), 9.0);
            EXPECT_EQ(table.rowKind(0), PwDb::RowKindData);
        },
        "insert");
    EXPECT_EQ(rows, (Rows{{"top", "", ""},
                          {"REVISIONS", "", ""},
                          {"Rev", "Description", "Date"},
                          {"", "", ""},
                          {"", "middle", ""},
                          {"A", "First issue", "2024-01-05"},
                          {"B", "Doors moved", "2024-02-11"},
                          {"C", "Stairs", "2024-03-02"},
                          {"", "", "end"}}));
}

TEST_P(Tables, DeleteRowsAtTopMiddleAndEnd) {
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.deleteRows(table.rowCount() - 1, 1), StatusOk);  // end
            ASSERT_EQ(table.deleteRows(2, 1), StatusOk);                     // middle
            ASSERT_EQ(table.deleteRows(0, 1), StatusOk);                     // top
        },
        "delete");
    EXPECT_EQ(rows, (Rows{{"Rev", "Description", "Date"}, {"B", "Doors moved", "2024-02-11"}}));
}

TEST_P(Tables, DeletingEveryRowLeavesAnEmptyTableThatStillGrows) {
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.deleteRows(0, table.rowCount()), StatusOk);
            EXPECT_EQ(table.rowCount(), 0u);
            ASSERT_EQ(table.insertRows(0, 3.0, 1), StatusOk);
            ASSERT_EQ(table.setCellText(0, 2, u"again"), StatusOk);
        },
        "empty");
    EXPECT_EQ(rows, (Rows{{"", "", "again"}}));
}

TEST_P(Tables, CopyAllWithinOneTableSourceBelowTargetOverlapping) {
    // Rows 3..4 onto 2..3: the ranges share row 3, which must be read before it is written.
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.setCellState(4, 1, PwDb::CellStateContentLocked), StatusOk);
            PwCellRange written;
            ASSERT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {3, 0, 4, 2}, {2, 0, 3, 2}, written),
                      StatusOk);
            EXPECT_EQ(written, (PwCellRange{2, 0, 3, 2}));
            // The state is format: it comes along.
            EXPECT_EQ(table.cellState(3, 1), PwDb::CellStateContentLocked);
        },
        "copy-up");
    EXPECT_EQ(rows, (Rows{{"REVISIONS", "", ""},
                          {"Rev", "Description", "Date"},
                          {"B", "Doors moved", "2024-02-11"},
                          {"C", "Stairs", "2024-03-02"},
                          {"C", "Stairs", "2024-03-02"}}));
}

TEST_P(Tables, CopyAllWithinOneTableSourceAboveTargetOverlapping) {
    // Rows 2..3 onto 3..4, anchored by a single target cell.
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            PwCellRange written;
            ASSERT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {2, 0, 3, 2}, {3, 0, 3, 0}, written),
                      StatusOk);
            EXPECT_EQ(written, (PwCellRange{3, 0, 4, 2}));
        },
        "copy-down");
    EXPECT_EQ(rows, (Rows{{"REVISIONS", "", ""},
                          {"Rev", "Description", "Date"},
                          {"A", "First issue", "2024-01-05"},
                          {"A", "First issue", "2024-01-05"},
                          {"B", "Doors moved", "2024-02-11"}}));
}

TEST_P(Tables, CopyFormatOnlyKeepsTheTargetsText) {
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.setCellTextHeight(1, 0, 5.5), StatusOk);
            ASSERT_EQ(table.setCellAlignment(1, 2, PwDb::TopCenter), StatusOk);
            ASSERT_EQ(table.insertRows(2, table.rowHeight(1), 1), StatusOk);
            PwCellRange written;
            // From the header (row 1) onto the new row, then rows 2..3 onto 3..4, overlapping.
            ASSERT_EQ(table.copyFrom(&table, PwDb::RowCopyFormatOnly, {1, 0, 1, 2}, {2, 0, 2, 2},
                                     written),
                      StatusOk);
            EXPECT_EQ(table.cellTextHeight(2, 0), 5.5);
            EXPECT_EQ(table.cellAlignment(2, 2), PwDb::TopCenter);
            ASSERT_EQ(table.copyFrom(&table, PwDb::RowCopyFormatOnly, {2, 0, 3, 2}, {3, 0, 4, 2},
                                     written),
                      StatusOk);
            EXPECT_EQ(table.cellTextHeight(3, 0), 5.5);
            EXPECT_EQ(table.cellTextHeight(4, 0), 2.5) << "row 3's format as it was before";
            EXPECT_EQ(table.rowKind(2), PwDb::RowKindData) << "kinds stay with their rows";
        },
        "copy-format");
    EXPECT_EQ(rows, (Rows{{"REVISIONS", "", ""},
                          {"Rev", "Description", "Date"},
                          {"", "", ""},
                          {"A", "First issue", "2024-01-05"},
                          {"B", "Doors moved", "2024-02-11"},
                          {"C", "Stairs", "2024-03-02"}}));
    PwDbObjectPointer<PwDbTable> read(Same(*readBack, tableId), PwDb::OpenForRead);
    ASSERT_EQ(read.openStatus(), StatusOk);
    EXPECT_EQ(read->cellTextHeight(3, 0), 5.5);
    EXPECT_EQ(read->cellTextHeight(4, 0), 2.5);
    EXPECT_EQ(read->cellAlignment(3, 2), PwDb::TopCenter);
    EXPECT_EQ(read->cellAlignment(4, 2), PwDb::MiddleLeft);
}

TEST_P(Tables, CopyBetweenTwoTables) {
    PwDbAuthoring::TableDesign small;
    small.columnWidths = {10, 10};
    small.rows.push_back({PwDb::RowKindData, 5.0, {u"x", u"y"}});
    small.rows.push_back({PwDb::RowKindData, 5.0, {u"z", u"w"}});
    PwDbObjectId otherId;
    ASSERT_EQ(PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), small, {}, &otherId),
              StatusOk);
    const Rows rows = ChangeAndReadBack(
        [&](PwDbTable& table) {
            PwDbObjectPointer<PwDbTable> other(otherId, PwDb::OpenForRead);
            ASSERT_EQ(other.openStatus(), StatusOk);
            PwCellRange written;
            ASSERT_EQ(table.copyFrom(other.object(), PwDb::RowCopyAll, {0, 0, 1, 1}, {3, 1, 4, 2},
                                     written),
                      StatusOk);
            EXPECT_EQ(table.copyFrom(other.object(), PwDb::RowCopyFormatOnly, {0, 0, 1, 1},
                                     {1, 0, 2, 1}, written),
                      StatusOk);
            EXPECT_EQ(Texts(*other), (Rows{{"x", "y"}, {"z", "w"}})) << "the source stays";
        },
        "copy-between");
    EXPECT_EQ(rows, (Rows{{"REVISIONS", "", ""},
                          {"Rev", "Description", "Date"},
                          {"A", "First issue", "2024-01-05"},
                          {"B", "x", "y"},
                          {"C", "z", "w"}}));
}

TEST_P(Tables, LockedCellsRefuseWritesAndKeepTheirText) {
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.setCellState(2, 1, PwDb::CellStateContentLocked), StatusOk);
            ASSERT_EQ(table.setCellState(3, 1, PwDb::CellStateFormatLocked), StatusOk);
            EXPECT_EQ(table.setCellText(2, 1, u"changed"), Plotwright::StatusCellLocked);
            EXPECT_EQ(table.setCellText(3, 1, u"changed"), Plotwright::StatusCellLocked);
            EXPECT_EQ(table.setCellTextHeight(3, 1, 9.0), Plotwright::StatusCellLocked);
            EXPECT_EQ(table.cellTextHeight(3, 1), 2.5);
            // A content lock leaves the format free.
            EXPECT_EQ(table.setCellTextHeight(2, 1, 3.0), StatusOk);
            // Copying text onto a locked cell is refused whole: row 2 keeps every cell.
            PwCellRange written{-1, -1, -1, -1};
            EXPECT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {4, 0, 4, 2}, {2, 0, 2, 2}, written),
                      Plotwright::StatusCellLocked);
            EXPECT_EQ(written, (PwCellRange{-1, -1, -1, -1}));
            // Unlocked, the cell takes the write.
            ASSERT_EQ(table.setCellState(4, 0, PwDb::CellStateContentReadOnly), StatusOk);
            ASSERT_EQ(table.setCellState(4, 0, PwDb::CellStateNone), StatusOk);
            EXPECT_EQ(table.setCellText(4, 0, u"D"), StatusOk);
        },
        "locked");
    EXPECT_EQ(rows, (Rows{{"REVISIONS", "", ""},
                          {"Rev", "Description", "Date"},
                          {"A", "First issue", "2024-01-05"},
                          {"B", "Doors moved", "2024-02-11"},
                          {"D", "Stairs", "2024-03-02"}}));
    PwDbObjectPointer<PwDbTable> read(Same(*readBack, tableId), PwDb::OpenForWrite);
    ASSERT_EQ(read.openStatus(), StatusOk);
    EXPECT_EQ(read->cellState(2, 1), PwDb::CellStateContentLocked);
    EXPECT_EQ(read->setCellText(2, 1, u"after reading"), Plotwright::StatusCellLocked);
}

TEST_P(Tables, PositionsOutsideTheTableGiveStatusesAndChangeNothing) {
    const unsigned big = std::numeric_limits<unsigned>::max();
    const Rows rows = ChangeAndReadBack(
        [&](PwDbTable& table) {
            PwString text;
            EXPECT_EQ(table.getCellText(5, 0, 0, text), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.getCellText(0, 3, 0, text), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.getCellText(2, 0, 1, text), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.setCellText(5, 0, u"x"), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.setCellText(big, big, u"x"), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.setRowHeight(5, 3.0), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.setRowHeight(2, 0.0), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.setRowHeight(2, std::nan("")), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.insertRows(6, 3.0, 1), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.insertRows(0, 3.0, 0), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.insertRows(0, -1.0, 1), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.insertRows(0, 3.0, big), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.deleteRows(5, 1), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.deleteRows(3, 3), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.deleteRows(1, big), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.deleteRows(0, 0), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.setCellState(0, 3, 1), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.setCellState(2, 0, 64), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.setRowKind(2, 3), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.setColumnWidth(3, 1.0), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.setCellAlignment(2, 0, 10), Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.setCellText(0, 1, u"covered"), Plotwright::StatusNotApplicable);
            PwCellRange written;
            EXPECT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {4, 0, 5, 2}, {0, 0, 1, 2}, written),
                      Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {3, 0, 4, 2}, {4, 0, 4, 0}, written),
                      Plotwright::StatusInvalidIndex)
                << "the target would run past the last row";
            EXPECT_EQ(
                table.copyFrom(&table, PwDb::RowCopyAll, {-1, 0, 0, 0}, {2, 0, 2, 0}, written),
                Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {3, 0, 2, 2}, {2, 0, 2, 0}, written),
                      Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.copyFrom(&table, PwDb::RowCopyAll, {2, 0, 3, 2}, {2, 0, 2, 1}, written),
                      Plotwright::StatusInvalidInput)
                << "sizes disagree";
            EXPECT_EQ(table.copyFrom(&table, 1, {2, 0, 2, 2}, {3, 0, 3, 2}, written),
                      Plotwright::StatusInvalidInput);
            EXPECT_EQ(table.copyFrom(nullptr, 0, {2, 0, 2, 2}, {3, 0, 3, 2}, written),
                      Plotwright::StatusNullDatabase);
            EXPECT_EQ(table.rowHeight(5), 0.0);
            EXPECT_EQ(table.rowKind(big), 0u);
            EXPECT_TRUE(table.cellTextStyle(0, 3).isNull());
            EXPECT_EQ(table.cellState(9, 9), 0);
            EXPECT_EQ(table.cellSpan(9, 0), 0u);
            // One real change, so that the table is modified and the rest is shown unchanged.
            ASSERT_EQ(table.setRowHeight(2, 6.0), StatusOk);
        },
        "outside");
    EXPECT_EQ(rows, kStart);
}

TEST_P(Tables, ChangesNeedTheTableOpenForWrite) {
    PwDbObjectPointer<PwDbTable> table(tableId, PwDb::OpenForRead);
    ASSERT_EQ(table.openStatus(), StatusOk);
    const uint64_t unchanged = drawing->changeCount();
    EXPECT_EQ(table->setCellText(2, 0, u"x"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(table->insertRows(0, 1.0, 1), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(table->deleteRows(0, 1), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(table->setRowHeight(0, 1.0), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(table->setCellState(2, 0, 1), Plotwright::StatusNotOpenForWrite);
    PwCellRange written;
    EXPECT_EQ(table->copyFrom(table.object(), 0, {2, 0, 2, 2}, {3, 0, 3, 2}, written),
              Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(drawing->changeCount(), unchanged);
    EXPECT_EQ(Texts(*table), kStart);
    // Upgraded, the same open takes writes and records them.
    ASSERT_EQ(table->upgradeOpen(), StatusOk);
    const uint64_t changes = drawing->changeCount();
    EXPECT_EQ(table->setCellText(2, 0, u"x"), StatusOk);
    EXPECT_TRUE(table->isModified());
    EXPECT_GT(drawing->changeCount(), changes);
}

TEST_P(Tables, ColumnsInsertAndDelete) {
    const Rows rows = ChangeAndReadBack(
        [](PwDbTable& table) {
            ASSERT_EQ(table.insertColumns(1, 12.0, 1), StatusOk);
            ASSERT_EQ(table.insertColumns(table.columnCount(), 8.0, 1), StatusOk);
            ASSERT_EQ(table.setCellText(2, 1, u"new"), StatusOk);
            ASSERT_EQ(table.deleteColumns(0, 1), StatusOk);
            EXPECT_EQ(table.columnWidth(0), 12.0);
            EXPECT_EQ(table.columnWidth(3), 8.0);
            EXPECT_EQ(table.cellSpan(0, 0), 4u);
            EXPECT_EQ(table.deleteColumns(3, 2), Plotwright::StatusInvalidIndex);
            EXPECT_EQ(table.insertColumns(5, 1.0, 1), Plotwright::StatusInvalidIndex);
        },
        "columns");
    EXPECT_EQ(rows, (Rows{{"", "", "", ""},
                          {"", "Description", "Date", ""},
                          {"new", "First issue", "2024-01-05", ""},
                          {"", "Doors moved", "2024-02-11", ""},
                          {"", "Stairs", "2024-03-02", ""}}));
}

TEST_P(Tables, FormattedTextIsKeptAsWritten) {
    const wstring formatted = u"{\\fserif;\\H2.5;Rev \\L\\{1\\}\\l}\\PNext \\\\ line";
    const Rows rows = ChangeAndReadBack(
        [&](PwDbTable& table) { ASSERT_EQ(table.setCellText(2, 1, formatted.c_str()), StatusOk); },
        "formatted");
    EXPECT_EQ(rows[2][1], pwdbtabletest::Utf8(formatted));
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Tables, testing::Values(Format::Native, Format::Exchange),
                         pwdbtabletest::FormatName);

TEST(TableAuthoring, RefusesWhatATableCannotHold) {
    auto drawing = PwDbAuthoring::createDrawing();
    const size_t before = drawing->numObjects();
    PwDbAuthoring::TableDesign noColumns;
    EXPECT_EQ(PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), noColumns),
              Plotwright::StatusInvalidInput);
    PwDbAuthoring::TableDesign tooWide;
    tooWide.columnWidths = {10};
    tooWide.rows.push_back({PwDb::RowKindData, 5.0, {u"a", u"b"}});
    EXPECT_EQ(PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), tooWide),
              Plotwright::StatusInvalidInput);
    PwDbAuthoring::TableDesign badKind;
    badKind.columnWidths = {10};
    badKind.rows.push_back({7, 5.0, {u"a"}});
    EXPECT_EQ(PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), badKind),
              Plotwright::StatusInvalidInput);
    PwDbAuthoring::TableDesign lockedCell;
    lockedCell.columnWidths = {10};
    lockedCell.rows.push_back({PwDb::RowKindData, 5.0, {u"a"}});
    lockedCell.rows[0].cells[0].state = PwDb::CellStateContentLocked;
    PwDbObjectId id;
    ASSERT_EQ(PwDbAuthoring::addTable(*drawing, drawing->modelSpaceId(), lockedCell, {}, &id),
              StatusOk);
    EXPECT_EQ(drawing->numObjects(), before + 1);
    PwDbObjectPointer<PwDbTable> table(id, PwDb::OpenForRead);
    ASSERT_EQ(table.openStatus(), StatusOk);
    EXPECT_EQ(Texts(*table), (Rows{{"a"}})) << "the state is set after the text";
    EXPECT_EQ(table->cellState(0, 0), PwDb::CellStateContentLocked);
}

TEST(TableClass, IsAnEntityAndDerivable) {
    EXPECT_TRUE(PwRxClass::isDerivedFrom(PwDbTable::desc(), PwDbEntity::desc()));
    PwDbTable table;
    EXPECT_EQ(table.runtimeClass(), PwDbTable::desc());
    EXPECT_NE(PwDbTable::cast(&table), nullptr);
}

}  // namespace
