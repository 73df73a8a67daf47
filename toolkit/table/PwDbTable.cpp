// The table entity: its rows, columns and cells, their changes under the open protocol, and
// how a table is filed.
#include <lodeqdb/toolkit/table/PwDbTable.h>

#include <cmath>
#include <utility>

#include <lodeqdb/toolkit/core/PwString.h>
#include "toolkit/db/PwDbStub.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbTable, PwDbEntity, u"PwDbTable");

using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

constexpr int kKnownStates =
    PwDb::CellStateContentLocked | PwDb::CellStateFormatLocked | PwDb::CellStateContentReadOnly;
// Far more rows or columns than a drawing's table has: a file that says more is damaged, and
// must not make the reader reserve memory for it.
constexpr int32_t kMaxExtent = 1 << 20;

bool isLength(double value) {
    return std::isfinite(value) && value > 0.0;
}

bool isRowKind(unsigned kind) {
    return kind == PwDb::RowKindData || kind == PwDb::RowKindTitle || kind == PwDb::RowKindHeader;
}

bool isAlignment(int alignment) {
    return alignment >= PwDb::TopLeft && alignment <= PwDb::BottomRight;
}

bool isState(int state) {
    return state >= 0 && (state & ~kKnownStates) == 0;
}

// True when `count` positions from `first` lie inside `size` positions; no overflow.
bool fits(unsigned first, unsigned count, size_t size) {
    return first <= size && count <= size - first;
}

}  // namespace

PwDbTable::PwDbTable() = default;

PwDbTable::~PwDbTable() = default;

bool PwDbTable::hasCell(unsigned row, unsigned column) const {
    return row < m_rows.size() && column < m_columnWidths.size();
}

ErrorStatus PwDbTable::checkCellChange(unsigned row, unsigned column, bool format) const {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (!hasCell(row, column)) return Plotwright::StatusInvalidIndex;
    const int state = m_rows[row].cells[column].state;
    if (format ? (state & PwDb::CellStateFormatLocked) != 0 : state != 0) {
        return Plotwright::StatusCellLocked;
    }
    return StatusOk;
}

ErrorStatus PwDbTable::checkStyle(PwDbObjectId style) const {
    if (style.isNull()) return StatusOk;
    if (database() != nullptr && style.database() != database()) {
        return Plotwright::StatusWrongDatabase;
    }
    if (!style.isValid() || !pwdbStubMayBe(*style.stub(), PwDbTextStyleTableRecord::desc())) {
        return Plotwright::StatusNotThatKindOfClass;
    }
    return StatusOk;
}

// --- The operations in their fixed order ------------------------------------------------------

unsigned PwDbTable::rowCount() const {
    return static_cast<unsigned>(m_rows.size());
}

unsigned PwDbTable::columnCount() const {
    return static_cast<unsigned>(m_columnWidths.size());
}

double PwDbTable::rowHeight(unsigned row) const {
    return row < m_rows.size() ? m_rows[row].height : 0.0;
}

ErrorStatus PwDbTable::setRowHeight(unsigned row, double height) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (row >= m_rows.size()) return Plotwright::StatusInvalidIndex;
    if (!isLength(height)) return Plotwright::StatusInvalidInput;
    return setField(m_rows[row].height, height);
}

PwDbObjectId PwDbTable::cellTextStyle(unsigned row, unsigned column) const {
    if (!hasCell(row, column)) return PwDbObjectId();
    const PwDbObjectId own = m_rows[row].cells[column].style;
    if (!own.isNull()) return own;
    if (!m_textStyle.isNull()) return m_textStyle;
    const PwDbDatabase* drawing = database();
    return drawing != nullptr ? drawing->standardTextStyleId() : PwDbObjectId();
}

unsigned PwDbTable::rowKind(unsigned row) const {
    return row < m_rows.size() ? m_rows[row].kind : 0;
}

ErrorStatus PwDbTable::getCellText(unsigned row, unsigned column, unsigned contentIndex,
                                   PwString& text) const {
    if (!hasCell(row, column) || contentIndex != 0) return Plotwright::StatusInvalidIndex;
    const wstring& stored = m_rows[row].cells[column].text;
    return text.assign(stored.data(), stored.size());
}

ErrorStatus PwDbTable::setCellText(unsigned row, unsigned column, const char16_t* text) {
    if (auto status = checkCellChange(row, column, false)) return status;
    if (cellSpan(row, column) == 0) return Plotwright::StatusNotApplicable;
    return setField(m_rows[row].cells[column].text, text != nullptr ? text : u"");
}

ErrorStatus PwDbTable::insertRows(unsigned row, double height, unsigned count) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (row > m_rows.size()) return Plotwright::StatusInvalidIndex;
    if (count == 0 || !isLength(height)) return Plotwright::StatusInvalidInput;
    if (m_rows.size() + count > static_cast<size_t>(kMaxExtent)) {
        return Plotwright::StatusInvalidInput;
    }
    Row made;
    made.kind = PwDb::RowKindData;
    made.height = height;
    made.cells.resize(m_columnWidths.size());
    assertWriteEnabled();
    m_rows.insert(m_rows.begin() + row, count, made);
    return StatusOk;
}

ErrorStatus PwDbTable::deleteRows(unsigned row, unsigned count) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (count == 0) return Plotwright::StatusInvalidInput;
    if (!fits(row, count, m_rows.size()) || row >= m_rows.size()) {
        return Plotwright::StatusInvalidIndex;
    }
    assertWriteEnabled();
    m_rows.erase(m_rows.begin() + row, m_rows.begin() + row + count);
    return StatusOk;
}

int PwDbTable::cellState(unsigned row, unsigned column) const {
    return hasCell(row, column) ? m_rows[row].cells[column].state : PwDb::CellStateNone;
}

ErrorStatus PwDbTable::setCellState(unsigned row, unsigned column, int state) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (!hasCell(row, column)) return Plotwright::StatusInvalidIndex;
    if (!isState(state)) return Plotwright::StatusInvalidInput;
    return setField(m_rows[row].cells[column].state, state);
}

ErrorStatus PwDbTable::copyFrom(const PwDbTable* source, int option, const PwCellRange& sourceRange,
                                const PwCellRange& targetRange, PwCellRange& newTargetRange) {
    if (source == nullptr) return Plotwright::StatusNullDatabase;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (!source->isReadEnabled()) return Plotwright::StatusNotOpenForRead;
    if (option != PwDb::RowCopyAll && option != PwDb::RowCopyFormatOnly) {
        return Plotwright::StatusInvalidInput;
    }
    const PwCellRange& s = sourceRange;
    const PwCellRange& t = targetRange;
    if (s.topRow > s.bottomRow || s.leftColumn > s.rightColumn || t.topRow > t.bottomRow ||
        t.leftColumn > t.rightColumn) {
        return Plotwright::StatusInvalidInput;
    }
    // In 64 bits: the differences of any two 32-bit bounds fit.
    const int64_t rows = int64_t{s.bottomRow} - s.topRow + 1;
    const int64_t columns = int64_t{s.rightColumn} - s.leftColumn + 1;
    const bool singleCell = t.topRow == t.bottomRow && t.leftColumn == t.rightColumn;
    if (!singleCell && (int64_t{t.bottomRow} - t.topRow + 1 != rows ||
                        int64_t{t.rightColumn} - t.leftColumn + 1 != columns)) {
        return Plotwright::StatusInvalidInput;
    }
    if (s.topRow < 0 || s.leftColumn < 0 || s.bottomRow >= int64_t{source->rowCount()} ||
        s.rightColumn >= int64_t{source->columnCount()}) {
        return Plotwright::StatusInvalidIndex;
    }
    const PwCellRange written{t.topRow, t.leftColumn, static_cast<int32_t>(t.topRow + rows - 1),
                              static_cast<int32_t>(t.leftColumn + columns - 1)};
    if (t.topRow < 0 || t.leftColumn < 0 || written.bottomRow >= int64_t{rowCount()} ||
        written.rightColumn >= int64_t{columnCount()}) {
        return Plotwright::StatusInvalidIndex;
    }
    const bool withText = option == PwDb::RowCopyAll;
    // Styles are ids of the source's drawing: another drawing's mean nothing here.
    const bool sameDrawing = source->database() == database();
    // The source first, whole, so that overlapping ranges of one table copy correctly.
    std::vector<Cell> copied;
    copied.reserve(static_cast<size_t>(rows * columns));
    for (int64_t r = 0; r < rows; ++r) {
        for (int64_t c = 0; c < columns; ++c) {
            copied.push_back(source->m_rows[static_cast<size_t>(s.topRow + r)]
                                 .cells[static_cast<size_t>(s.leftColumn + c)]);
        }
    }
    for (int64_t r = 0; r < rows; ++r) {
        for (int64_t c = 0; c < columns; ++c) {
            const Cell& target = m_rows[static_cast<size_t>(written.topRow + r)]
                                     .cells[static_cast<size_t>(written.leftColumn + c)];
            const bool blocked =
                withText ? target.state != 0 : (target.state & PwDb::CellStateFormatLocked) != 0;
            if (blocked) return Plotwright::StatusCellLocked;
        }
    }
    assertWriteEnabled();
    size_t next = 0;
    for (int64_t r = 0; r < rows; ++r) {
        for (int64_t c = 0; c < columns; ++c) {
            Cell& target = m_rows[static_cast<size_t>(written.topRow + r)]
                               .cells[static_cast<size_t>(written.leftColumn + c)];
            Cell& from = copied[next++];
            if (!sameDrawing) from.style = PwDbObjectId();
            if (!withText) from.text = std::move(target.text);
            target = std::move(from);
        }
    }
    newTargetRange = written;
    return StatusOk;
}

// --- Rows and columns -------------------------------------------------------------------------

ErrorStatus PwDbTable::setRowKind(unsigned row, unsigned kind) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (row >= m_rows.size()) return Plotwright::StatusInvalidIndex;
    if (!isRowKind(kind)) return Plotwright::StatusInvalidInput;
    return setField(m_rows[row].kind, kind);
}

double PwDbTable::columnWidth(unsigned column) const {
    return column < m_columnWidths.size() ? m_columnWidths[column] : 0.0;
}

ErrorStatus PwDbTable::setColumnWidth(unsigned column, double width) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (column >= m_columnWidths.size()) return Plotwright::StatusInvalidIndex;
    if (!isLength(width)) return Plotwright::StatusInvalidInput;
    return setField(m_columnWidths[column], width);
}

ErrorStatus PwDbTable::insertColumns(unsigned column, double width, unsigned count) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (column > m_columnWidths.size()) return Plotwright::StatusInvalidIndex;
    if (count == 0 || !isLength(width)) return Plotwright::StatusInvalidInput;
    if (m_columnWidths.size() + count > static_cast<size_t>(kMaxExtent)) {
        return Plotwright::StatusInvalidInput;
    }
    assertWriteEnabled();
    m_columnWidths.insert(m_columnWidths.begin() + column, count, width);
    for (Row& row : m_rows) row.cells.insert(row.cells.begin() + column, count, Cell{});
    return StatusOk;
}

ErrorStatus PwDbTable::deleteColumns(unsigned column, unsigned count) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (count == 0) return Plotwright::StatusInvalidInput;
    if (!fits(column, count, m_columnWidths.size()) || column >= m_columnWidths.size()) {
        return Plotwright::StatusInvalidIndex;
    }
    assertWriteEnabled();
    m_columnWidths.erase(m_columnWidths.begin() + column, m_columnWidths.begin() + column + count);
    for (Row& row : m_rows) {
        row.cells.erase(row.cells.begin() + column, row.cells.begin() + column + count);
    }
    return StatusOk;
}

unsigned PwDbTable::cellSpan(unsigned row, unsigned column) const {
    if (!hasCell(row, column)) return 0;
    if (m_rows[row].kind != PwDb::RowKindTitle) return 1;
    return column == 0 ? columnCount() : 0;
}

// --- Cell format ------------------------------------------------------------------------------

ErrorStatus PwDbTable::setCellTextStyle(unsigned row, unsigned column, PwDbObjectId style) {
    if (auto status = checkCellChange(row, column, true)) return status;
    if (auto status = checkStyle(style)) return status;
    return setField(m_rows[row].cells[column].style, style);
}

double PwDbTable::cellTextHeight(unsigned row, unsigned column) const {
    return hasCell(row, column) ? m_rows[row].cells[column].textHeight : 0.0;
}

ErrorStatus PwDbTable::setCellTextHeight(unsigned row, unsigned column, double height) {
    if (auto status = checkCellChange(row, column, true)) return status;
    if (!isLength(height)) return Plotwright::StatusInvalidInput;
    return setField(m_rows[row].cells[column].textHeight, height);
}

int PwDbTable::cellAlignment(unsigned row, unsigned column) const {
    return hasCell(row, column) ? m_rows[row].cells[column].alignment : 0;
}

ErrorStatus PwDbTable::setCellAlignment(unsigned row, unsigned column, int alignment) {
    if (auto status = checkCellChange(row, column, true)) return status;
    if (!isAlignment(alignment)) return Plotwright::StatusInvalidInput;
    return setField(m_rows[row].cells[column].alignment, alignment);
}

// --- The table as a whole ---------------------------------------------------------------------

ErrorStatus PwDbTable::setTextStyle(PwDbObjectId style) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (auto status = checkStyle(style)) return status;
    return setField(m_textStyle, style);
}

ErrorStatus PwDbTable::setPosition(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_position, point);
}

ErrorStatus PwDbTable::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwGePoint3d position;
    PwDbObjectId style;
    int32_t columns = 0;
    if (auto status = filer->readPoint3d(position)) return status;
    if (auto status = filer->readObjectId(style)) return status;
    if (auto status = filer->readInt32(columns)) return status;
    if (!position.isFinite() || columns < 0 || columns > kMaxExtent) {
        return Plotwright::StatusFilerError;
    }
    // Grown as items arrive: a count that promises more than the filer holds fails at the
    // first missing item, before it could cost memory.
    std::vector<double> widths;
    for (int32_t c = 0; c < columns; ++c) {
        double width = 0.0;
        if (auto status = filer->readDouble(width)) return status;
        if (!isLength(width)) return Plotwright::StatusFilerError;
        widths.push_back(width);
    }
    int32_t rows = 0;
    if (auto status = filer->readInt32(rows)) return status;
    if (rows < 0 || rows > kMaxExtent) return Plotwright::StatusFilerError;
    std::vector<Row> read;
    for (int32_t r = 0; r < rows; ++r) {
        Row row;
        int32_t kind = 0;
        if (auto status = filer->readInt32(kind)) return status;
        if (auto status = filer->readDouble(row.height)) return status;
        if (kind < 0 || !isRowKind(static_cast<unsigned>(kind)) || !isLength(row.height)) {
            return Plotwright::StatusFilerError;
        }
        row.kind = static_cast<unsigned>(kind);
        for (int32_t c = 0; c < columns; ++c) {
            Cell cell;
            if (auto status = filer->readString(cell.text)) return status;
            if (auto status = filer->readObjectId(cell.style)) return status;
            if (auto status = filer->readDouble(cell.textHeight)) return status;
            if (auto status = filer->readInt32(cell.alignment)) return status;
            if (auto status = filer->readInt32(cell.state)) return status;
            if (!isLength(cell.textHeight) || !isAlignment(cell.alignment) ||
                !isState(cell.state)) {
                return Plotwright::StatusFilerError;
            }
            row.cells.push_back(std::move(cell));
        }
        read.push_back(std::move(row));
    }
    m_position = position;
    m_textStyle = style;
    m_columnWidths = std::move(widths);
    m_rows = std::move(read);
    return StatusOk;
}

ErrorStatus PwDbTable::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writePoint3d(m_position)) return status;
    if (auto status = filer->writeObjectId(m_textStyle)) return status;
    if (auto status = filer->writeInt32(static_cast<int32_t>(m_columnWidths.size()))) {
        return status;
    }
    for (const double width : m_columnWidths) {
        if (auto status = filer->writeDouble(width)) return status;
    }
    if (auto status = filer->writeInt32(static_cast<int32_t>(m_rows.size()))) return status;
    for (const Row& row : m_rows) {
        if (auto status = filer->writeInt32(static_cast<int32_t>(row.kind))) return status;
        if (auto status = filer->writeDouble(row.height)) return status;
        for (const Cell& cell : row.cells) {
            if (auto status = filer->writeString(cell.text)) return status;
            if (auto status = filer->writeObjectId(cell.style)) return status;
            if (auto status = filer->writeDouble(cell.textHeight)) return status;
            if (auto status = filer->writeInt32(cell.alignment)) return status;
            if (auto status = filer->writeInt32(cell.state)) return status;
        }
    }
    return StatusOk;
}
