// Bringing the revision table to a wanted state: resolving the columns, then keeping or
// deleting the table's data rows (PruneRows) and putting every wanted entry in its place
// (PlaceRows, RowPlacement.cpp); for no wanted rows at all, clearing the table down to one
// blank data row (ClearRows).
//
// The row model: a title row and a header row stand above the data and are left alone; every
// row of RowKindData is one entry; the key column identifies an entry across updates. After
// an update the table holds as many data rows as were wanted, or one blank row for none. The
// order is the caller's: nothing is sorted here.
#include <optional>

#include <lodeqdb/platform/AutoObjectUpgrader.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/revisionblock/RevisionBlockCodes.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {

bool BlockMgrImpl::Update(const UpdateContext& context) {
    pwdb::AutoObjectUpgrader writable(*table);
    if (writable.GetStatus() != Plotwright::StatusOk) {
        throw lode::PlotwrightException(writable.GetStatus());
    }
    const ColumnMap columns = ResolveColumns(context.columns);
    if (columns.empty()) throw lode::LodeException(NoMatchingColumn);
    const KeyEntry* keyEntry = nullptr;
    for (const wstring& name : context.keyColumns) {
        const auto found = columns.find(name);
        if (found != columns.end()) {
            keyEntry = &*found;
            break;
        }
    }
    if (keyEntry == nullptr) throw lode::LodeException(NoMatchingColumn);
    bool changed = false;
    if (context.rows.empty()) {
        changed = ClearRows(columns, *keyEntry);
    } else {
        RowMap rowMap;
        const bool pruned = PruneRows(context, *keyEntry, rowMap);
        const bool placed = PlaceRows(context, columns, *keyEntry, rowMap);
        changed = pruned || placed;
    }
    if (changed) TouchReferences();
    return changed;
}

// The wanted name is what the map keeps, not the header's text: supplied rows are looked up by
// the caller's spelling, whatever case the header was written in. For two columns with the
// same header the leftmost wins.
ColumnMap BlockMgrImpl::ResolveColumns(const std::vector<wstring>& columns) const {
    const unsigned headerRow = FindFirstRowOfKind(PwDb::RowKindHeader);
    const unsigned count = table->columnCount();
    ColumnMap resolved;
    for (unsigned column = 0; column < count; ++column) {
        const wstring headerText = ReadCell(headerRow, column);
        for (const wstring& name : columns) {
            if (!ColumnNameMatches(name, headerText)) continue;
            resolved.emplace(name, static_cast<int>(column));
            break;
        }
    }
    return resolved;
}

// Keeps each data row that holds a wanted entry (the first row for a key), deletes the rest,
// and records in `rowMap` where each kept entry stands. The table's last data row is kept
// for the last wanted entry when it matches nothing, so that its format survives. A deletion
// the toolkit refuses is ignored and the row counts as deleted; the walk then steps past it.
bool BlockMgrImpl::PruneRows(const UpdateContext& context, const KeyEntry& keyEntry,
                             RowMap& rowMap) {
    const size_t last = context.rows.size() - 1;
    if (table->rowCount() == 0) return false;
    bool result = false;
    unsigned row = 0;
    while (row < table->rowCount()) {
        if (table->rowKind(row) != PwDb::RowKindData) {
            ++row;
            continue;
        }
        const wstring keyText = ReadCell(row, static_cast<unsigned>(keyEntry.second));
        std::optional<size_t> entry;
        for (size_t index = 0; index < context.rows.size(); ++index) {
            if (RowKeyMatches(context.rows[index], keyEntry.first, keyText)) {
                entry = index;
                break;
            }
        }
        bool remove = false;
        if (!entry) {
            if (HasDataRowBelow(row)) {
                remove = true;
            } else {
                entry = last;
            }
        }
        if (!remove && rowMap.count(*entry) != 0) remove = true;
        if (remove) {
            DeleteDataRow(row);  // a refused deletion counts as done
            result = true;
            continue;
        }
        rowMap[*entry] = row;
        ++row;
    }
    return result;
}

Plotwright::ErrorStatus BlockMgrImpl::DeleteDataRow(unsigned& row) {
    const unsigned before = table->rowCount();
    const Plotwright::ErrorStatus status = table->deleteRows(row, 1);
    if (table->rowCount() >= before) ++row;
    return status;
}

// With nothing wanted, every data row but the last goes; the last is kept, blank in every
// resolved column and unchanged in the others, so the table keeps a row to format new ones by.
bool BlockMgrImpl::ClearRows(const ColumnMap& columns, const KeyEntry& keyEntry) {
    if (table->rowCount() == 0) return false;
    bool result = false;
    unsigned row = 0;
    while (row < table->rowCount()) {
        if (table->rowKind(row) != PwDb::RowKindData) {
            ++row;
            continue;
        }
        if (HasDataRowBelow(row)) {
            if (auto status = DeleteDataRow(row)) throw lode::PlotwrightException(status);
            result = true;
            continue;
        }
        if (UpdateRow(row, {}, columns, keyEntry, true)) result = true;
        break;
    }
    return result;
}

}  // namespace RevisionBlock
