// Building table entities from a description: the authoring step for tables, beside
// PwDbAuthoring's steps for layers, blocks and texts.
//
//   PwDbAuthoring::TableDesign design;
//   design.columnWidths = {20, 60, 30};
//   design.rows.push_back({PwDb::RowKindTitle, 10.0, {u"REVISIONS"}});
//   design.rows.push_back({PwDb::RowKindHeader, 8.0, {u"Rev", u"Description", u"Date"}});
//   design.rows.push_back({PwDb::RowKindData, 8.0, {u"A", u"First issue", u"2024-01-05"}});
//   PwDbObjectId table;
//   PwDbAuthoring::addTable(*drawing, block, design, {}, &table);
#pragma once

#include <utility>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

namespace PwDbAuthoring {

/// One cell: its text (formatted text, see docs/formatted-text.md) and, where not 0 or null,
/// its own format and state.
struct TableCellDesign {
    TableCellDesign() = default;
    TableCellDesign(const char16_t* cellText) : text(cellText != nullptr ? cellText : u"") {}
    TableCellDesign(wstring cellText) : text(std::move(cellText)) {}

    wstring text;
    /// PwDb::CellState flags, set after the text.
    int state = 0;
    /// Null: the table's style.
    PwDbObjectId textStyle;
    /// 0: the table's text height.
    double textHeight = 0.0;
    /// 0: the default alignment (PwDb::MiddleLeft).
    int alignment = 0;
};

/// One row: its kind, height and cells from column 0 on; missing cells stay empty.
struct TableRowDesign {
    unsigned kind = PwDb::RowKindData;
    double height = 8.0;
    std::vector<TableCellDesign> cells;
};

struct TableDesign {
    PwGePoint3d position;
    /// One width per column.
    std::vector<double> columnWidths;
    std::vector<TableRowDesign> rows;
    /// Null: the drawing's "Standard".
    PwDbObjectId textStyle;
    /// The text height of cells that don't give their own.
    double textHeight = 2.5;
};

/// Adds a table built from `design` to the block `block`, on `layer` (null: the current layer).
/// StatusInvalidInput for a design with no columns, a row with more cells than columns, or a
/// value a table refuses (see PwDbTable); StatusWrongDatabase for a block or style of another
/// drawing. Nothing is added on failure.
Plotwright::ErrorStatus addTable(PwDbDatabase& drawing, PwDbObjectId block,
                                 const TableDesign& design, PwDbObjectId layer = {},
                                 PwDbObjectId* id = nullptr);

}  // namespace PwDbAuthoring
