// Writing a row's wanted texts into the table: only cells whose text differs are written, and
// a locked cell is unlocked for its write and locked again as it was.
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {

// The key column first, then the others in map order. Without `writeEmpty` a column that the
// wanted row doesn't name keeps its text; with it, the cell is blanked. A row that changed
// goes back to the header row's height, undoing a row that had grown.
bool BlockMgrImpl::UpdateRow(unsigned row, const std::map<wstring, wstring>& rowData,
                             const ColumnMap& columns, const KeyEntry& keyEntry, bool writeEmpty) {
    bool result = false;
    const auto updateColumn = [&](const wstring& name, int column) {
        const auto wanted = rowData.find(name);
        if (wanted != rowData.end()) {
            if (UpdateCell(row, static_cast<unsigned>(column), wanted->second)) result = true;
        } else if (writeEmpty) {
            if (UpdateCell(row, static_cast<unsigned>(column), wstring())) result = true;
        }
    };
    updateColumn(keyEntry.first, keyEntry.second);
    for (const auto& [name, column] : columns) {
        if (name != keyEntry.first) updateColumn(name, column);
    }
    // Compared as they are: a height that is not a number counts as different.
    if (result && !(table->rowHeight(row) == headerRowHeight)) {
        table->setRowHeight(row, headerRowHeight);
    }
    return result;
}

// A cell whose text already reads as wanted (blanks at the ends aside) isn't touched at all,
// its state included. A state that can't be cleared stops the update; one that can't be put
// back is let be, since the text is written by then.
bool BlockMgrImpl::UpdateCell(unsigned row, unsigned column, const wstring& wanted) {
    if (TrimmedEquals(ReadCell(row, column), wanted)) return false;
    const int savedState = table->cellState(row, column);
    const bool unlocked = savedState != 0;
    if (unlocked) {
        const Plotwright::ErrorStatus status = table->setCellState(row, column, 0);
        if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
    }
    const bool written = WriteCell(row, column, wanted);
    if (unlocked) table->setCellState(row, column, savedState);
    return written;
}

// A cell that refuses its text counts as unchanged; that is no failure.
bool BlockMgrImpl::WriteCell(unsigned row, unsigned column, const wstring& text) {
    return table->setCellText(row, column, EscapeCellText(text).c_str()) == Plotwright::StatusOk;
}

// The backslash first, so that the escapes of the braces stay single.
wstring BlockMgrImpl::EscapeCellText(const wstring& text) {
    wstring escaped = text;
    LodeUtil::Replace(escaped, u"\\", u"\\\\");
    LodeUtil::Replace(escaped, u"{", u"\\{");
    LodeUtil::Replace(escaped, u"}", u"\\}");
    return escaped;
}

}  // namespace RevisionBlock
