// PwDbTable: a table entity: rows by columns of cells holding formatted text.
//
//   auto* table = new PwDbTable;
//   table->insertColumns(0, 30.0, 3);                        // three columns 30 units wide
//   table->insertRows(0, 8.0, 2);                            // two data rows 8 units high
//   table->setRowKind(0, PwDb::RowKindHeader);
//   table->setCellText(0, 0, u"Rev");
//   table->setCellState(1, 0, PwDb::CellStateContentLocked); // row 1, column 0 refuses text
//
// Rows and columns are numbered from 0, top and left first. A row has a kind (data, title,
// header) and a height; a column a width; a cell its text (with inline formatting, see
// docs/formatted-text.md), text style, text height, alignment and state. The first cell of a
// title row spans all columns: the others are covered and take no text.
//
// Every change needs the table writable (open for write, or in no database) and marks it
// modified; StatusNotOpenForWrite otherwise. A row or column outside the table gives
// StatusInvalidIndex and changes nothing; the getters that return a value give a neutral one
// for it (0, the null id, the empty state) and never read outside the table.
#pragma once

#include <cstdint>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwString;

/// A rectangle of cells, all four bounds included.
struct PwCellRange {
    int32_t topRow = 0;
    int32_t leftColumn = 0;
    int32_t bottomRow = 0;
    int32_t rightColumn = 0;
    bool operator==(const PwCellRange&) const = default;
};

class PwDbTable : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbTable);

  public:
    /// The height of a new cell's text.
    static constexpr double kDefaultTextHeight = 2.5;

    /// An empty table: no rows, no columns, at the origin.
    PwDbTable();
    ~PwDbTable() override;

    // The operations that tables of other kinds may refine, in a fixed order.

    virtual unsigned rowCount() const;
    virtual unsigned columnCount() const;
    /// The row's height; 0 for a row outside the table.
    virtual double rowHeight(unsigned row) const;
    /// StatusInvalidInput unless finite and above 0.
    virtual Plotwright::ErrorStatus setRowHeight(unsigned row, double height);
    /// The cell's text style: its own, else the table's, else the drawing's "Standard"; null
    /// for a cell outside the table, or when none of the three exists.
    virtual PwDbObjectId cellTextStyle(unsigned row, unsigned column) const;
    /// The row's kind (PwDb::RowKind); 0 for a row outside the table.
    virtual unsigned rowKind(unsigned row) const;
    /// Copies the cell's text, formatting codes included, into `text`. The one content of a
    /// cell has index 0: any other is StatusInvalidIndex.
    virtual Plotwright::ErrorStatus getCellText(unsigned row, unsigned column,
                                                unsigned contentIndex, PwString& text) const;
    /// Sets the cell's text (null sets the empty text). StatusCellLocked when the cell's
    /// state isn't 0, StatusNotApplicable for a cell covered by a title, StatusInvalidIndex.
    virtual Plotwright::ErrorStatus setCellText(unsigned row, unsigned column,
                                                const char16_t* text);
    /// Inserts `count` data rows of `height` before `row`; `row` == rowCount() appends. The
    /// new cells are empty, in the table's default format, with state 0.
    /// StatusInvalidIndex past rowCount(), StatusInvalidInput for a bad height or a count of 0.
    virtual Plotwright::ErrorStatus insertRows(unsigned row, double height, unsigned count);
    /// Deletes `count` rows from `row` on. StatusInvalidIndex unless all of them exist,
    /// StatusInvalidInput for a count of 0.
    virtual Plotwright::ErrorStatus deleteRows(unsigned row, unsigned count);

    /// The cell's state (PwDb::CellState flags); 0 for a cell outside the table.
    virtual int cellState(unsigned row, unsigned column) const;
    /// StatusInvalidInput for flags this toolkit doesn't know.
    virtual Plotwright::ErrorStatus setCellState(unsigned row, unsigned column, int state);
    /// Copies the cells of `sourceRange` of `source` (this table, or another one that is
    /// readable) onto this table with their top left cell at the top left of `targetRange`.
    /// `targetRange` is either of the source range's size or a single cell. What is copied
    /// depends on `option` (PwDb::TableCopyOption); rows keep their kinds and heights.
    /// Overlapping ranges of one table copy as if the source were read first. On success
    /// `newTargetRange` holds the cells written. StatusNullDatabase for a null source,
    /// StatusNotOpenForRead for a source that can't be read, StatusInvalidInput for an
    /// unknown option or a range whose bounds are reversed or whose sizes disagree,
    /// StatusInvalidIndex for a range outside its table, StatusCellLocked when a target
    /// cell's state forbids what would be written. On failure nothing changes.
    virtual Plotwright::ErrorStatus copyFrom(const PwDbTable* source, int option,
                                             const PwCellRange& sourceRange,
                                             const PwCellRange& targetRange,
                                             PwCellRange& newTargetRange);

    // --- Rows and columns ---------------------------------------------------------------

    /// StatusInvalidInput for a value that is no PwDb::RowKind.
    Plotwright::ErrorStatus setRowKind(unsigned row, unsigned kind);
    /// The column's width; 0 for a column outside the table.
    double columnWidth(unsigned column) const;
    /// StatusInvalidInput unless finite and above 0.
    Plotwright::ErrorStatus setColumnWidth(unsigned column, double width);
    /// Inserts `count` columns of `width` before `column`; `column` == columnCount()
    /// appends. Every row gets empty cells there. Statuses as insertRows.
    Plotwright::ErrorStatus insertColumns(unsigned column, double width, unsigned count);
    /// Deletes `count` columns from `column` on. Statuses as deleteRows.
    Plotwright::ErrorStatus deleteColumns(unsigned column, unsigned count);
    /// The number of columns the cell spans: all of them for the first cell of a title row,
    /// 0 for a cell that a title covers, else 1; 0 outside the table.
    unsigned cellSpan(unsigned row, unsigned column) const;

    // --- Cell format ----------------------------------------------------------------------

    /// Sets the cell's own text style (null: the table's). StatusCellLocked when the cell's
    /// format is locked, StatusWrongDatabase for a style of another drawing,
    /// StatusNotThatKindOfClass for an object that is no text style.
    Plotwright::ErrorStatus setCellTextStyle(unsigned row, unsigned column, PwDbObjectId style);
    /// The cell's text height; 0 outside the table.
    double cellTextHeight(unsigned row, unsigned column) const;
    /// StatusInvalidInput unless finite and above 0; StatusCellLocked as setCellTextStyle.
    Plotwright::ErrorStatus setCellTextHeight(unsigned row, unsigned column, double height);
    /// The cell's alignment (PwDb::CellAlignment); 0 outside the table.
    int cellAlignment(unsigned row, unsigned column) const;
    /// StatusInvalidInput for a value that is no PwDb::CellAlignment; StatusCellLocked as
    /// setCellTextStyle.
    Plotwright::ErrorStatus setCellAlignment(unsigned row, unsigned column, int alignment);

    // --- The table as a whole -------------------------------------------------------------

    /// The style of cells that have none of their own; null: the drawing's "Standard".
    PwDbObjectId textStyle() const { return m_textStyle; }
    Plotwright::ErrorStatus setTextStyle(PwDbObjectId style);
    /// The top left corner of the table.
    PwGePoint3d position() const { return m_position; }
    /// StatusInvalidInput for a non-finite coordinate.
    Plotwright::ErrorStatus setPosition(const PwGePoint3d& point);

    /// Position, default style, column widths, then each row: kind, height and its cells
    /// (text, own style, text height, alignment, state).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    struct Cell {
        wstring text;
        PwDbObjectId style;
        double textHeight = kDefaultTextHeight;
        int32_t alignment = 4;
        int32_t state = 0;
    };
    struct Row {
        unsigned kind = 1;
        double height = 1.0;
        std::vector<Cell> cells;
    };

    bool hasCell(unsigned row, unsigned column) const;
    /// The common checks of a change to one cell: writable, inside, and for a format change
    /// not format locked.
    Plotwright::ErrorStatus checkCellChange(unsigned row, unsigned column, bool format) const;
    Plotwright::ErrorStatus checkStyle(PwDbObjectId style) const;

    PwGePoint3d m_position;
    PwDbObjectId m_textStyle;
    std::vector<double> m_columnWidths;
    std::vector<Row> m_rows;
};
