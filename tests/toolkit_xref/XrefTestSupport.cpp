#include "XrefTestSupport.h"

#include <gtest/gtest.h>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace pwdbxreftest {

void XrefFolderTest::WriteDrawing(const std::string& name, const std::vector<Reference>& references,
                                  const wstring& marker) {
    auto drawing = PwDbAuthoring::createDrawing();
    if (!marker.empty()) {
        ASSERT_EQ(PwDbAuthoring::addText(*drawing, drawing->modelSpaceId(), {0, 0, 0}, 1.0, marker),
                  Plotwright::StatusOk);
    }
    for (const Reference& reference : references) {
        ASSERT_EQ(PwDbAuthoring::addXref(*drawing, reference.block, reference.path),
                  Plotwright::StatusOk);
    }
    const wstring path = Path(name);
    if (name.size() > 4 && name.substr(name.size() - 4) == ".plx") {
        ASSERT_EQ(drawing->plxOut(path.c_str(), 16, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
    } else {
        ASSERT_EQ(drawing->saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
    }
}

std::unique_ptr<PwDbDatabase> XrefFolderTest::OpenResolved(const std::string& name) {
    auto database = std::make_unique<PwDbDatabase>(false, true);
    EXPECT_EQ(database->readPlwFile(Path(name).c_str(), PwDbDatabase::OpenModeAlternate),
              Plotwright::StatusOk);
    EXPECT_EQ(pwdbResolveCurrentXRefs(database.get(), false, true), Plotwright::StatusOk);
    return database;
}

void XrefFolderTest::MakeFolder(const std::string& name) const {
    ASSERT_EQ(system(("mkdir -p '" + folder + "/" + name + "'").c_str()), 0);
}

wstring MarkerOf(const PwDbDatabase* database) {
    if (database == nullptr) return wstring();
    PwDbObjectPointer<PwDbBlockTableRecord> space(database->modelSpaceId(), PwDb::OpenForRead);
    if (space.openStatus() != Plotwright::StatusOk) return wstring();
    PwDbBlockTableRecordIterator* iterator = nullptr;
    space->newIterator(iterator);
    wstring marker;
    for (; !iterator->done() && marker.empty(); iterator->step()) {
        PwDbObjectId id;
        iterator->getEntityId(id);
        PwDbObjectPointer<PwDbText> text(id, PwDb::OpenForRead);
        if (text.openStatus() == Plotwright::StatusOk) marker = text->textString();
    }
    delete iterator;
    return marker;
}

PwDbBlockTableRecord* Block(const PwDbDatabase& database, const wstring& name) {
    PwDbSymbolTablePointer<PwDbBlockTable> table(const_cast<PwDbDatabase*>(&database),
                                                 PwDb::OpenForRead);
    if (table.openStatus() != Plotwright::StatusOk) return nullptr;
    PwDbObjectId id;
    if (table->getIdAt(name.c_str(), id) != Plotwright::StatusOk) return nullptr;
    PwDbBlockTableRecord* block = nullptr;
    if (pwdbOpenObject(block, id, PwDb::OpenForRead) != Plotwright::StatusOk) return nullptr;
    block->close();
    return block;
}

PwDb::XrefStatus StatusOf(const PwDbDatabase& database, const wstring& name) {
    PwDbBlockTableRecord* block = Block(database, name);
    return block != nullptr ? block->xrefStatus() : PwDb::XrefNotAnXref;
}

PwDbDatabase* LoadedFor(const PwDbDatabase& database, const wstring& name) {
    PwDbBlockTableRecord* block = Block(database, name);
    return block != nullptr ? block->xrefDatabase() : nullptr;
}

}  // namespace pwdbxreftest
