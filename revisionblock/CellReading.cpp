// Reading one cell as people see it, and the comparisons of cell texts and column names.
//
// Three ways of comparing text, each with its place: map keys exactly by code unit; a cell's
// text against a wanted text with TrimmedEquals (blanks at the ends don't count, case does);
// a wanted column name against a header with ColumnNameMatches (blanks and case don't count).
#include <memory>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/revisionblock/RevisionBlockCodes.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/table/PwDbFormattedText.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {
namespace {

struct BufferRelease {
    void operator()(char16_t* buffer) const { pwutDelBuffer(buffer); }
};

}  // namespace

// The status of a failed read isn't kept: the table's cells are the manager's business, and
// the caller only needs to know that the table is unreadable.
wstring BlockMgrImpl::ReadCell(unsigned row, unsigned column) const {
    PwString text;
    if (table->getCellText(row, column, 0, text) != Plotwright::StatusOk) {
        throw lode::LodeException(CellReadFailed);
    }
    const PwDbObjectId style = table->cellTextStyle(row, column);
    return StripCellText(text.toWString(), style);
}

// A stripper that can't give its buffer leaves the cell empty rather than failing the read.
wstring BlockMgrImpl::StripCellText(const wstring& text, PwDbObjectId style) {
    const std::unique_ptr<char16_t, BufferRelease> plain(
        pwdbStripMTextFormatting(text.c_str(), style, 0));
    if (plain == nullptr) return {};
    return wstring(plain.get());
}

wstring BlockMgrImpl::TrimmedCopy(const wstring& text) {
    wstring copy = text;
    LodeUtil::PathUtil::TrimString(copy);
    return copy;
}

bool BlockMgrImpl::TrimmedEquals(const wstring& a, const wstring& b) {
    return TrimmedCopy(a) == TrimmedCopy(b);
}

// Headers may have been written in upper case (ApplyColumnHeaders in some drawings), and must
// still be found under the names the caller uses.
bool BlockMgrImpl::ColumnNameMatches(const wstring& name, const wstring& headerText) {
    return LodeUtil::Order(TrimmedCopy(name), TrimmedCopy(headerText),
                           LodeUtil::StringOrder::Natural, LodeUtil::StringCase::Ignore) == 0;
}

bool BlockMgrImpl::RowKeyMatches(const std::map<wstring, wstring>& rowData, const wstring& keyName,
                                 const wstring& cellText) {
    const auto entry = rowData.find(keyName);
    return entry != rowData.end() && TrimmedEquals(entry->second, cellText);
}

}  // namespace RevisionBlock
