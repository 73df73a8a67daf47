// Putting every wanted entry of an update at its place, from the first data row down: a kept
// row that stands elsewhere is copied to its place and deleted where it was; an entry without
// a row gets a new one, formatted like its neighbour.
//
// RowMap stays true through every insertion and deletion: each of them shifts the rows below
// it, and the map's rows with them.
#include <lodeqdb/platform/LodeExceptions.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/revisionblock/RowNotFoundException.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {

bool BlockMgrImpl::PlaceRows(const UpdateContext& context, const ColumnMap& columns,
                             const KeyEntry& keyEntry, RowMap& rowMap) {
    unsigned target = FirstDataRow();
    bool result = false;
    for (size_t index = 0; index < context.rows.size(); ++index, ++target) {
        const auto held = rowMap.find(index);
        if (held != rowMap.end()) {
            const unsigned source = held->second;
            bool moved = false;
            if (source != target) {
                InsertRowFrom(target, source, true, rowMap);
                const unsigned stale = source + (target < source ? 1 : 0);
                for (auto& entry : rowMap) {
                    if (entry.second == stale) entry.second = target;
                }
                RemoveRow(stale, rowMap);
                moved = true;
            }
            if (UpdateRow(target, context.rows[index], columns, keyEntry, false) || moved) {
                result = true;
            }
            continue;
        }
        InsertRowFrom(target, ChooseFormatRow(index, rowMap, context.rows.size()), false, rowMap);
        UpdateRow(target, context.rows[index], columns, keyEntry, false);
        rowMap[index] = target;
        result = true;
    }
    return result;
}

// A table whose data rows were all deleted gets its first entry right under the header.
unsigned BlockMgrImpl::FirstDataRow() const {
    try {
        return FindFirstRowOfKind(PwDb::RowKindData);
    } catch (const RowNotFoundException&) {
        return FindFirstRowOfKind(PwDb::RowKindHeader) + 1;
    }
}

// The row above when there is one (PlaceRows has just placed the entry before), else the first
// kept row below, else the header row: a new row always looks like the rows around it.
unsigned BlockMgrImpl::ChooseFormatRow(size_t index, const RowMap& rowMap,
                                       size_t entryCount) const {
    for (size_t above = index; above-- > 0;) {
        const auto held = rowMap.find(above);
        if (held != rowMap.end()) return held->second;
    }
    for (size_t below = index; below < entryCount; ++below) {
        const auto held = rowMap.find(below);
        if (held != rowMap.end()) return held->second;
    }
    return FindFirstRowOfKind(PwDb::RowKindHeader);
}

// A new row at `target`, as high as `source`, with `source`'s format and, with `copyText`, its
// text. Rows keep their kinds when copied: a row copied from the header is a data row still.
void BlockMgrImpl::InsertRowFrom(unsigned target, unsigned source, bool copyText, RowMap& rowMap) {
    const double height = table->rowHeight(source);
    Plotwright::ErrorStatus status = table->insertRows(target, height, 1);
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
    const unsigned from = source >= target ? source + 1 : source;
    for (auto& entry : rowMap) {
        if (entry.second >= target) ++entry.second;
    }
    const int32_t lastColumn = static_cast<int32_t>(table->columnCount()) - 1;
    const PwCellRange sourceRange{static_cast<int32_t>(from), 0, static_cast<int32_t>(from),
                                  lastColumn};
    const PwCellRange targetRange{static_cast<int32_t>(target), 0, static_cast<int32_t>(target),
                                  lastColumn};
    PwCellRange written;
    status = table->copyFrom(table.object(), copyText ? PwDb::RowCopyAll : PwDb::RowCopyFormatOnly,
                             sourceRange, targetRange, written);
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
}

void BlockMgrImpl::RemoveRow(unsigned row, RowMap& rowMap) {
    const Plotwright::ErrorStatus status = table->deleteRows(row, 1);
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
    for (auto& entry : rowMap) {
        if (entry.second >= row) --entry.second;
    }
}

}  // namespace RevisionBlock
