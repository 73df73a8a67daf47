// Writing the revision table's title and column names, in upper case for drawings whose
// measurement() is 0.
#include <locale>
#include <stdexcept>

#include <lodeqdb/lodeutil/Format.h>
#include <lodeqdb/lodeutil/Resources.h>
#include <lodeqdb/platform/AutoObjectUpgrader.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/MessageTexts.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/revisionblock/RevisionBlockCodes.h>
#include <lodeqdb/revisionblock/RowNotFoundException.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {
namespace {

// Loaded at the first use and kept for the process: a later change of the product's language
// doesn't reach a title already loaded. The runtime guards the first use between threads.
const wstring& TitleText() {
    static const wstring title = [] {
        const wstring format = LodeUtil::LoadStrW(LodeQDBUtil::ResourceModule::Instance().Get(),
                                                  static_cast<unsigned>(TitleStringId));
        wstring formatted;
        LodeUtil::FormatMsg(formatted, format, {});
        return formatted;
    }();
    return title;
}

// The user's environment locale. An environment that names a locale this system doesn't have
// gets the classic one, as the C library gives such programs, rather than a failure.
std::locale UserLocale() {
    try {
        return std::locale("");
    } catch (const std::runtime_error&) {
        return std::locale::classic();
    }
}

bool IsSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

}  // namespace

// One unit to one unit, so the text keeps its length: a unit whose upper case lies outside the
// 16-bit range, and any surrogate, stays as it is. The locale is made once per text rather
// than once per character; the environment can't change in between.
wstring BlockMgrImpl::ToUpperUserLocale(const wstring& text) {
    const std::locale locale = UserLocale();
    const auto& ctype = std::use_facet<std::ctype<wchar_t>>(locale);
    wstring upper(text.size(), u'\0');
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        upper[i] = unit;
        if (IsSurrogate(unit)) continue;
        const auto mapped = static_cast<char32_t>(ctype.toupper(static_cast<wchar_t>(unit)));
        if (mapped <= 0xFFFF && !IsSurrogate(mapped)) upper[i] = static_cast<char16_t>(mapped);
    }
    return upper;
}

// The writes don't look at their statuses: a cell that refuses its text (a locked one, or the
// one write past the last column that a long list of names makes) keeps what it has, and no
// failure is reported. A table without a title row or a header row is fine.
void BlockMgrImpl::ApplyColumnHeaders(const std::vector<wstring>& headers) {
    pwdb::AutoObjectUpgrader writable(*table);
    if (writable.GetStatus() != Plotwright::StatusOk) {
        throw lode::PlotwrightException(writable.GetStatus());
    }
    const bool upper = table->database()->measurement() == 0;
    const wstring& title = TitleText();
    try {
        const unsigned titleRow = FindFirstRowOfKind(PwDb::RowKindTitle);
        const wstring text = upper ? ToUpperUserLocale(title) : title;
        table->setCellText(titleRow, 0, EscapeCellText(text).c_str());
    } catch (const RowNotFoundException&) {
    }
    try {
        const unsigned headerRow = FindFirstRowOfKind(PwDb::RowKindHeader);
        const unsigned columns = table->columnCount();
        unsigned column = 0;
        for (const wstring& name : headers) {
            if (column > columns) break;
            const wstring text = upper ? ToUpperUserLocale(name) : name;
            table->setCellText(headerRow, column, EscapeCellText(text).c_str());
            ++column;
        }
    } catch (const RowNotFoundException&) {
    }
}

}  // namespace RevisionBlock
