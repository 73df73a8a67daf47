// Building revision blocks, carrying drawings through files, and reading tables back.
#include "RevisionTestSupport.h"

#include <memory>

#include "SpyTable.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/revisionblock/RevisionBlockName.h>
#include "support/DrawingReadBack.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include "toolkit/db/PwDbStub.h"
#include "toolkit/pal/PwHeapFaults.h"
#include <lodeqdb/toolkit/table/PwDbFormattedText.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace revblocktest {
namespace {

// A spy table made by hand from `design`, as addTable makes a plain one.
PwDbTable* SpyFrom(const PwDbAuthoring::TableDesign& design) {
    auto* table = new PwTestSpyTable;
    EXPECT_EQ(table->setPosition(design.position), Plotwright::StatusOk);
    for (double width : design.columnWidths) {
        EXPECT_EQ(table->insertColumns(table->columnCount(), width, 1), Plotwright::StatusOk);
    }
    for (const PwDbAuthoring::TableRowDesign& row : design.rows) {
        const unsigned r = table->rowCount();
        EXPECT_EQ(table->insertRows(r, row.height, 1), Plotwright::StatusOk);
        EXPECT_EQ(table->setRowKind(r, row.kind), Plotwright::StatusOk);
        for (unsigned c = 0; c < row.cells.size(); ++c) {
            const PwDbAuthoring::TableCellDesign& cell = row.cells[c];
            if (table->cellSpan(r, c) != 0) table->setCellText(r, c, cell.text.c_str());
            if (cell.alignment != 0) table->setCellAlignment(r, c, cell.alignment);
            if (cell.state != 0) table->setCellState(r, c, cell.state);
        }
    }
    return table;
}

template <class Visit>
void WithTable(const PwDbDatabase& drawing, Visit&& visit) {
    PwDbObjectPointer<PwDbTable> table(RevisionTableId(drawing), PwDb::OpenForRead);
    ASSERT_EQ(table.openStatus(), Plotwright::StatusOk);
    visit(*table);
}

Cells Texts(const PwDbDatabase& drawing, bool plain, bool dataOnly) {
    Cells rows;
    WithTable(drawing, [&](const PwDbTable& table) {
        for (unsigned r = 0; r < table.rowCount(); ++r) {
            if (dataOnly && table.rowKind(r) != PwDb::RowKindData) continue;
            std::vector<std::string> row;
            for (unsigned c = 0; c < table.columnCount(); ++c) {
                PwString text;
                EXPECT_EQ(table.getCellText(r, c, 0, text), Plotwright::StatusOk);
                const wstring stored = text.toWString();
                row.push_back(Utf8(plain ? pwdbPlainText(stored.c_str()) : stored));
            }
            rows.push_back(std::move(row));
        }
    });
    return rows;
}

}  // namespace

std::string FormatName(const testing::TestParamInfo<Format>& info) {
    return info.param == Format::Native ? "Native" : "Exchange";
}

std::string Utf8(const wstring& text) {
    return LodeUtil::Utf8FromUtf16(text);
}

PwDbAuthoring::TableDesign Design(const std::vector<wstring>& headers,
                                  const std::vector<std::vector<wstring>>& rows) {
    PwDbAuthoring::TableDesign design;
    design.columnWidths.assign(headers.size(), 20.0);
    design.rows.push_back(
        {PwDb::RowKindTitle, 8.0, {PwDbAuthoring::TableCellDesign(u"REVISIONS")}});
    PwDbAuthoring::TableRowDesign header{PwDb::RowKindHeader, 8.0, {}};
    for (const wstring& name : headers) header.cells.emplace_back(name);
    design.rows.push_back(header);
    for (const auto& row : rows) {
        PwDbAuthoring::TableRowDesign data{PwDb::RowKindData, 8.0, {}};
        for (const wstring& text : row) data.cells.emplace_back(text);
        design.rows.push_back(data);
    }
    return design;
}

PwDbAuthoring::TableDesign StandardDesign(const std::vector<std::vector<wstring>>& rows) {
    return Design({u"REV", u"DATE", u"DESCRIPTION", u"BY"}, rows);
}

PwDbObjectId AddRevisionBlock(PwDbDatabase& drawing, const PwDbAuthoring::TableDesign& design,
                              bool placed, bool spy) {
    PwDbObjectId block;
    EXPECT_EQ(PwDbAuthoring::addBlock(drawing, RevisionBlock::RevisionBlockName, &block),
              Plotwright::StatusOk);
    if (spy) {
        EXPECT_EQ(PwDbAuthoring::addEntity(drawing, block, SpyFrom(design)), Plotwright::StatusOk);
    } else {
        EXPECT_EQ(PwDbAuthoring::addTable(drawing, block, design), Plotwright::StatusOk);
    }
    if (placed) {
        EXPECT_EQ(
            PwDbAuthoring::addBlockReference(drawing, drawing.modelSpaceId(), block, {100, 50, 0}),
            Plotwright::StatusOk);
    }
    return block;
}

PwDbObjectId RevisionTableId(const PwDbDatabase& drawing) {
    const PwDbObjectId block = lodeqdbtest::BlockNamed(drawing, RevisionBlock::RevisionBlockName);
    for (const PwDbObjectId id : lodeqdbtest::Entities(block)) {
        PwDbObjectPointer<PwDbTable> table(id, PwDb::OpenForRead);
        if (table) return id;
    }
    return PwDbObjectId();
}

std::vector<PwDbObjectId> RevisionReferences(const PwDbDatabase& drawing) {
    std::vector<PwDbObjectId> references;
    PwDbObjectPointer<PwDbBlockTableRecord> block(
        lodeqdbtest::BlockNamed(drawing, RevisionBlock::RevisionBlockName), PwDb::OpenForRead);
    if (!block) return references;
    PwArray<PwDbObjectId> ids;
    EXPECT_EQ(block->getBlockReferenceIds(ids, true, false), Plotwright::StatusOk);
    for (size_t i = 0; i < ids.length(); ++i) references.push_back(ids.at(i));
    return references;
}

Cells StoredTexts(const PwDbDatabase& drawing) {
    return Texts(drawing, false, false);
}

Cells PlainTexts(const PwDbDatabase& drawing) {
    return Texts(drawing, true, false);
}

Cells DataTexts(const PwDbDatabase& drawing) {
    return Texts(drawing, true, true);
}

std::vector<unsigned> RowKinds(const PwDbDatabase& drawing) {
    std::vector<unsigned> kinds;
    WithTable(drawing, [&](const PwDbTable& table) {
        for (unsigned r = 0; r < table.rowCount(); ++r) kinds.push_back(table.rowKind(r));
    });
    return kinds;
}

std::vector<double> RowHeights(const PwDbDatabase& drawing) {
    std::vector<double> heights;
    WithTable(drawing, [&](const PwDbTable& table) {
        for (unsigned r = 0; r < table.rowCount(); ++r) heights.push_back(table.rowHeight(r));
    });
    return heights;
}

int CellState(const PwDbDatabase& drawing, unsigned row, unsigned column) {
    int state = -1;
    WithTable(drawing, [&](const PwDbTable& table) { state = table.cellState(row, column); });
    return state;
}

double CellTextHeight(const PwDbDatabase& drawing, unsigned row, unsigned column) {
    double height = -1;
    WithTable(drawing, [&](const PwDbTable& table) { height = table.cellTextHeight(row, column); });
    return height;
}

int CellAlignment(const PwDbDatabase& drawing, unsigned row, unsigned column) {
    int alignment = -1;
    WithTable(drawing,
              [&](const PwDbTable& table) { alignment = table.cellAlignment(row, column); });
    return alignment;
}

bool AnyObjectModified(const PwDbDatabase& drawing) {
    bool modified = false;
    pwdbForEachStub(drawing, [&](const PwDbStub& stub) {
        if (stub.object != nullptr && stub.object->isModified()) modified = true;
    });
    return modified;
}

RevisionBlock::UpdateContext StandardContext(const std::vector<std::vector<wstring>>& rows) {
    static const std::vector<wstring> names = {u"REV", u"DATE", u"DESCRIPTION", u"BY"};
    RevisionBlock::UpdateContext context;
    for (const auto& row : rows) {
        RowData data;
        for (size_t c = 0; c < row.size() && c < names.size(); ++c) data[names[c]] = row[c];
        context.rows.push_back(std::move(data));
    }
    context.keyColumns = {u"REV"};
    context.columns = names;
    return context;
}

void RevisionFiles::SetUp() {
    TempFolderTest::SetUp();
    PwTestSpyTable::ResetKnobs();
}

void RevisionFiles::TearDown() {
    PwTestSpyTable::ResetKnobs();
    pwHeapFailReset();
    TempFolderTest::TearDown();
}

std::string RevisionFiles::FileName(const std::string& name) const {
    return name + (GetParam() == Format::Native ? ".plw" : ".plx");
}

wstring RevisionFiles::WriteToDisk(PwDbDatabase& drawing, const std::string& name) {
    const wstring path = Path(FileName(name));
    EXPECT_EQ(LodeQDBUtil::DbSaveAsOriginalVersion(drawing, path), Plotwright::StatusOk);
    return path;
}

std::unique_ptr<PwDbDatabase> RevisionFiles::ReadFromDisk(const wstring& path) {
    auto drawing = std::make_unique<PwDbDatabase>(false, true);
    LodeQDBUtil::ReadFileToDatabase(path, *drawing, true, false);
    return drawing;
}

void RevisionFiles::SaveToDisk(PwDbDatabase& drawing, const wstring& path) {
    EXPECT_EQ(LodeQDBUtil::DbSaveAsOriginalVersion(drawing, path), Plotwright::StatusOk);
}

}  // namespace revblocktest
