// The large update of the revision table, shared by its test and its benchmark: a table of 500
// entries, and wanted rows that reorder, insert, delete and rewrite entries all at once.
//
//   auto drawing = revblockscenario::TableOf500();
//   RevisionBlock::UpdateContext wanted = revblockscenario::Reordered();
//
// Header-only and free of the test framework, so that the benchmark can use it as it is.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include <lodeqdb/revisionblock/RevisionBlockName.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace revblockscenario {

inline constexpr int kEntries = 500;

inline wstring Text(const std::string& text) {
    return LodeUtil::Utf16FromUtf8(text);
}

/// The four texts of entry `i` as the table first holds it.
inline std::vector<wstring> Entry(int i) {
    static const char* const initials[] = {"JM", "AK", "PL", "SR", "TV"};
    const std::string number = std::to_string(1000 + i).substr(1);
    return {Text("R" + number),
            Text("2024-" + std::to_string(1 + i % 12) + "-" + std::to_string(1 + i % 28)),
            Text("Change " + std::to_string(i) + " of the plan"), Text(initials[i % 5])};
}

/// A drawing whose placed revision block holds a title, a header row "REV", "DATE",
/// "DESCRIPTION", "BY" and the 500 entries in order.
inline std::unique_ptr<PwDbDatabase> TableOf500() {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbAuthoring::TableDesign design;
    design.columnWidths = {15, 25, 80, 20};
    design.rows.push_back({PwDb::RowKindTitle, 10.0, {u"REVISIONS"}});
    design.rows.push_back({PwDb::RowKindHeader, 8.0, {u"REV", u"DATE", u"DESCRIPTION", u"BY"}});
    for (int i = 0; i < kEntries; ++i) {
        PwDbAuthoring::TableRowDesign row{PwDb::RowKindData, 8.0, {}};
        for (const wstring& text : Entry(i)) row.cells.emplace_back(text);
        design.rows.push_back(std::move(row));
    }
    PwDbObjectId block;
    PwDbAuthoring::addBlock(*drawing, RevisionBlock::RevisionBlockName, &block);
    PwDbAuthoring::addTable(*drawing, block, design);
    PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), block, {0, 0, 0});
    return drawing;
}

/// The wanted rows: every sixth entry (from the third) deleted, every fifth rewritten, the
/// rest shuffled by a fixed sequence, and a new entry before every seventh place.
inline RevisionBlock::UpdateContext Reordered() {
    static const wstring names[] = {u"REV", u"DATE", u"DESCRIPTION", u"BY"};
    std::vector<std::vector<wstring>> kept;
    for (int i = 0; i < kEntries; ++i) {
        if (i % 6 == 2) continue;
        std::vector<wstring> entry = Entry(i);
        if (i % 5 == 0) entry[2] += u", revised";
        kept.push_back(std::move(entry));
    }
    // Fisher-Yates with a linear congruential sequence: the same order on every platform.
    uint32_t state = 12345;
    for (size_t i = kept.size() - 1; i > 0; --i) {
        state = state * 1664525u + 1013904223u;
        std::swap(kept[i], kept[state % (i + 1)]);
    }
    RevisionBlock::UpdateContext context;
    context.columns.assign(std::begin(names), std::end(names));
    context.keyColumns = {u"REV"};
    for (size_t i = 0; i < kept.size(); ++i) {
        if (i % 7 == 0) {
            const std::string number = std::to_string(1000 + i).substr(1);
            context.rows.push_back({{u"REV", Text("N" + number)},
                                    {u"DATE", u"2025-01-01"},
                                    {u"DESCRIPTION", Text("New entry " + number)},
                                    {u"BY", u"QA"}});
        }
        std::map<wstring, wstring> row;
        for (int c = 0; c < 4; ++c) row[names[c]] = kept[i][c];
        context.rows.push_back(std::move(row));
    }
    return context;
}

}  // namespace revblockscenario
