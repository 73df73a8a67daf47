// Tables made from their description, cell by cell, through the table's own setters.
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace PwDbAuthoring {
namespace {

using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

ErrorStatus FillCell(PwDbTable& table, unsigned row, unsigned column, const TableCellDesign& cell,
                     double textHeight) {
    if (!cell.textStyle.isNull()) {
        if (auto status = table.setCellTextStyle(row, column, cell.textStyle)) return status;
    }
    const double height = cell.textHeight != 0.0 ? cell.textHeight : textHeight;
    if (auto status = table.setCellTextHeight(row, column, height)) return status;
    if (cell.alignment != 0) {
        if (auto status = table.setCellAlignment(row, column, cell.alignment)) return status;
    }
    if (!cell.text.empty()) {
        if (auto status = table.setCellText(row, column, cell.text.c_str())) return status;
    }
    // Last: a locked cell refuses the text above.
    return table.setCellState(row, column, cell.state);
}

ErrorStatus Fill(PwDbTable& table, const TableDesign& design) {
    if (design.columnWidths.empty()) return Plotwright::StatusInvalidInput;
    if (auto status = table.setPosition(design.position)) return status;
    if (auto status = table.setTextStyle(design.textStyle)) return status;
    for (unsigned c = 0; c < design.columnWidths.size(); ++c) {
        if (auto status = table.insertColumns(c, design.columnWidths[c], 1)) return status;
    }
    for (unsigned r = 0; r < design.rows.size(); ++r) {
        const TableRowDesign& row = design.rows[r];
        if (row.cells.size() > design.columnWidths.size()) return Plotwright::StatusInvalidInput;
        if (auto status = table.insertRows(r, row.height, 1)) return status;
        if (auto status = table.setRowKind(r, row.kind)) return status;
        for (unsigned c = 0; c < design.columnWidths.size(); ++c) {
            const TableCellDesign cell = c < row.cells.size() ? row.cells[c] : TableCellDesign();
            if (auto status = FillCell(table, r, c, cell, design.textHeight)) return status;
        }
    }
    return StatusOk;
}

}  // namespace

ErrorStatus addTable(PwDbDatabase& drawing, PwDbObjectId block, const TableDesign& design,
                     PwDbObjectId layer, PwDbObjectId* id) {
    if (!design.textStyle.isNull() && design.textStyle.database() != &drawing) {
        return Plotwright::StatusWrongDatabase;
    }
    auto* table = new PwDbTable;
    if (ErrorStatus status = Fill(*table, design)) {
        delete table;
        return status;
    }
    return addEntity(drawing, block, table, layer, id);
}

}  // namespace PwDbAuthoring
