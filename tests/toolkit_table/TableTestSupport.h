// Shared by the table suite: a drawing saved in either file format and read back, and cell
// texts as plain strings for readable comparisons.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace pwdbtabletest {

enum class Format { Native, Exchange };

inline std::string FormatName(const testing::TestParamInfo<Format>& info) {
    return info.param == Format::Native ? "Native" : "Exchange";
}

/// A fixture run once per file format.
class InBothFormats : public lodeqdbtest::TempFolderTest,
                      public testing::WithParamInterface<Format> {
  protected:
    InBothFormats() : TempFolderTest("lodeqdb-tables") {}

    /// `drawing` saved under `name` in the fixture's format and read into a new drawing.
    std::unique_ptr<PwDbDatabase> ReadBack(PwDbDatabase& drawing, const std::string& name) {
        const bool native = GetParam() == Format::Native;
        const wstring path = Path(name + (native ? ".plw" : ".plx"));
        auto read = std::make_unique<PwDbDatabase>();
        if (native) {
            EXPECT_EQ(drawing.saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent),
                      Plotwright::StatusOk);
            EXPECT_EQ(read->readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate),
                      Plotwright::StatusOk);
        } else {
            EXPECT_EQ(drawing.plxOut(path.c_str(), 17, PwDb::PwDbPlwVersionCurrent),
                      Plotwright::StatusOk);
            EXPECT_EQ(read->plxIn(path.c_str()), Plotwright::StatusOk);
        }
        return read;
    }
};

/// The id in `drawing` of the object that has `id`'s handle.
inline PwDbObjectId Same(PwDbDatabase& drawing, PwDbObjectId id) {
    return drawing.getPwDbObjectId(id.handle());
}

inline std::string Utf8(const wstring& text) {
    return LodeUtil::Utf8FromUtf16(text);
}

/// Every cell's text, row by row, in UTF-8.
inline std::vector<std::vector<std::string>> Texts(const PwDbTable& table) {
    std::vector<std::vector<std::string>> rows;
    for (unsigned r = 0; r < table.rowCount(); ++r) {
        std::vector<std::string> row;
        for (unsigned c = 0; c < table.columnCount(); ++c) {
            PwString text;
            EXPECT_EQ(table.getCellText(r, c, 0, text), Plotwright::StatusOk);
            row.push_back(Utf8(wstring(text.kwszPtr(), text.length())));
        }
        rows.push_back(std::move(row));
    }
    return rows;
}

/// The kind of every row.
inline std::vector<unsigned> Kinds(const PwDbTable& table) {
    std::vector<unsigned> kinds;
    for (unsigned r = 0; r < table.rowCount(); ++r) kinds.push_back(table.rowKind(r));
    return kinds;
}

}  // namespace pwdbtabletest
