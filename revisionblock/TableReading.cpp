// Reading the revision table: the header row's names and every data row as a map from header
// text to cell text.
#include <lodeqdb/platform/LodeExceptions.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/revisionblock/RowNotFoundException.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {

// A table that lost its header row has no headers: that answer is an empty list, not a
// failure. Any other failure drops what was read.
std::vector<wstring> BlockMgrImpl::GetColumnHeaders() const {
    std::vector<wstring> headers;
    try {
        const unsigned headerRow = FindFirstRowOfKind(PwDb::RowKindHeader);
        const unsigned columns = table->columnCount();
        for (unsigned column = 0; column < columns; ++column) {
            headers.push_back(ReadCell(headerRow, column));
        }
    } catch (const RowNotFoundException&) {
        return {};
    }
    return headers;
}

// Every data row counts, wherever it stands, above the header included. The header cell is
// read again for every value: a row's map always has one entry per distinct header, the
// rightmost column winning for headers that repeat.
std::vector<std::map<wstring, wstring>> BlockMgrImpl::GetData() const {
    if (table->rowCount() == 0) throw RowNotFoundException();
    const unsigned headerRow = FindFirstRowOfKind(PwDb::RowKindHeader);
    const unsigned rows = table->rowCount();
    const unsigned columns = table->columnCount();
    std::vector<std::map<wstring, wstring>> data;
    for (unsigned row = 0; row < rows; ++row) {
        if (table->rowKind(row) != PwDb::RowKindData) continue;
        std::map<wstring, wstring> values;
        for (unsigned column = 0; column < columns; ++column) {
            wstring value = ReadCell(row, column);
            values[ReadCell(headerRow, column)] = std::move(value);
        }
        data.push_back(std::move(values));
    }
    return data;
}

}  // namespace RevisionBlock
