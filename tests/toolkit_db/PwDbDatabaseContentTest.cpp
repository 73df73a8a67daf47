// The contents of a new drawing, and the database's ways to its tables and dictionaries.
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/db/PwDbStub.h"

#include <gtest/gtest.h>

#include <memory>
#include <set>
#include <vector>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

struct Entry {
    wstring key;
    PwDbObjectId id;
    bool operator==(const Entry&) const = default;
};

std::vector<Entry> entriesOf(PwDbObjectId dictionaryId) {
    std::vector<Entry> entries;
    PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
    EXPECT_EQ(dictionary.openStatus(), Plotwright::StatusOk);
    if (!dictionary) return entries;
    std::unique_ptr<PwDbDictionaryIterator> it(dictionary->newIterator());
    for (; !it->atEnd(); it->advance()) entries.push_back({it->name(), it->entryId()});
    return entries;
}

template <class Table, class Iterator>
std::vector<Entry> recordsOf(PwDbDatabase& db) {
    std::vector<Entry> records;
    PwDbSymbolTablePointer<Table> table(&db, PwDb::OpenForRead);
    EXPECT_EQ(table.openStatus(), Plotwright::StatusOk);
    if (!table) return records;
    Iterator* raw = nullptr;
    table->newIterator(raw);
    std::unique_ptr<Iterator> it(raw);
    for (; !it->done(); it->step()) {
        PwDbSymbolTableRecord* record = nullptr;
        EXPECT_EQ(it->getRecord(record, PwDb::OpenForRead), Plotwright::StatusOk);
        if (record == nullptr) continue;
        const char16_t* name = nullptr;
        record->getName(name);
        records.push_back({name, record->objectId()});
        EXPECT_EQ(record->ownerId(), table->objectId());
        record->close();
    }
    return records;
}

PwDbObjectId ownerOf(PwDbObjectId id) {
    PwDbObjectPointer<PwDbObject> object(id, PwDb::OpenForRead);
    EXPECT_EQ(object.openStatus(), Plotwright::StatusOk);
    return object ? object->ownerId() : PwDbObjectId();
}

void expectLayout(PwDbObjectId id, const wstring& name, PwDbObjectId block, int tabOrder,
                  bool modelType, double width, double height) {
    PwDbObjectPointer<PwDbLayout> layout(id, PwDb::OpenForRead);
    ASSERT_EQ(layout.openStatus(), Plotwright::StatusOk);
    const char16_t* text = nullptr;
    layout->getLayoutName(text);
    EXPECT_EQ(wstring(text), name);
    EXPECT_EQ(layout->getBlockTableRecordId(), block);
    EXPECT_EQ(layout->getTabOrder(), tabOrder);
    EXPECT_EQ(layout->modelType(), modelType);
    double w = -1.0;
    double h = -1.0;
    layout->getPlotPaperSize(w, h);
    EXPECT_EQ(w, width);
    EXPECT_EQ(h, height);
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    ASSERT_EQ(record.openStatus(), Plotwright::StatusOk);
    EXPECT_EQ(record->getLayoutId(), id);
}

bool inUse(PwDbObjectId layer) {
    PwDbObjectPointer<PwDbLayerTableRecord> record(layer, PwDb::OpenForRead);
    return record && record->isInUse();
}

TEST(PwDbDatabaseContent, TheBlockTableHoldsTheModelAndPaperSpaces) {
    PwDbDatabase db;
    EXPECT_EQ((recordsOf<PwDbBlockTable, PwDbBlockTableIterator>(db)),
              (std::vector<Entry>{{u"*Model_Space", db.modelSpaceId()},
                                  {u"*Paper_Space", db.paperSpaceId()}}));
    EXPECT_TRUE(ownerOf(db.blockTableId()).isNull());
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    EXPECT_TRUE(model->isModelSpace());
    EXPECT_EQ(model->numEntities(), 0u);
}

TEST(PwDbDatabaseContent, TheLayerTableHoldsLayerZeroWhichIsCurrent) {
    PwDbDatabase db;
    EXPECT_EQ((recordsOf<PwDbLayerTable, PwDbLayerTableIterator>(db)),
              (std::vector<Entry>{{u"0", db.layerZeroId()}}));
    EXPECT_TRUE(ownerOf(db.layerTableId()).isNull());
    EXPECT_EQ(db.clayer(), db.layerZeroId());
    PwDbObjectPointer<PwDbLayerTableRecord> zero(db.layerZeroId(), PwDb::OpenForRead);
    EXPECT_EQ(zero->colorIndex(), 7);
    EXPECT_FALSE(zero->isOff() || zero->isFrozen() || zero->isLocked() || zero->isHidden());
}

TEST(PwDbDatabaseContent, TheNamedObjectsDictionaryIsARootHoldingTwoDictionaries) {
    PwDbDatabase db;
    EXPECT_TRUE(ownerOf(db.namedObjectsDictionaryId()).isNull());
    EXPECT_EQ(entriesOf(db.namedObjectsDictionaryId()),
              (std::vector<Entry>{{u"PLOTWRIGHT_LAYOUT", db.layoutDictionaryId()},
                                  {u"PLOTWRIGHT_PLOTSETTINGS", db.plotSettingsDictionaryId()}}));
    EXPECT_EQ(ownerOf(db.layoutDictionaryId()), db.namedObjectsDictionaryId());
    EXPECT_EQ(ownerOf(db.plotSettingsDictionaryId()), db.namedObjectsDictionaryId());
    EXPECT_TRUE(entriesOf(db.plotSettingsDictionaryId()).empty());
}

TEST(PwDbDatabaseContent, TheLayoutsShowTheSpacesAndPointBack) {
    PwDbDatabase db;
    const std::vector<Entry> layouts = entriesOf(db.layoutDictionaryId());
    ASSERT_EQ(layouts.size(), 2u);
    EXPECT_EQ(layouts[0].key, u"Model");
    EXPECT_EQ(layouts[1].key, u"Layout1");
    expectLayout(layouts[0].id, u"Model", db.modelSpaceId(), 0, true, 0.0, 0.0);
    expectLayout(layouts[1].id, u"Layout1", db.paperSpaceId(), 1, false, 297.0, 210.0);
    for (const Entry& entry : layouts) {
        EXPECT_EQ(ownerOf(entry.id), db.layoutDictionaryId());
        PwDbObjectPointer<PwDbObject> layout(entry.id, PwDb::OpenForRead);
        EXPECT_EQ(layout->runtimeClass(), PwDbLayout::desc());
    }
}

TEST(PwDbDatabaseContent, NothingIsLeftOpenAndEveryObjectHasItsOwnHandle) {
    PwDbDatabase db;
    std::set<PwDbHandle> handles;
    size_t objects = 0;
    pwdbForEachStub(db, [&](const PwDbStub& stub) {
        ASSERT_NE(stub.object, nullptr);
        ++objects;
        EXPECT_NE(stub.handle, 0u);
        handles.insert(stub.handle);
        EXPECT_FALSE(stub.object->isWriteEnabled());
        EXPECT_EQ(stub.object->numReaders(), 0u);
        EXPECT_FALSE(stub.object->isErased());
    });
    // Three tables, two blocks, one layer, three dictionaries, two layouts, one text style.
    EXPECT_EQ(objects, 12u);
    EXPECT_EQ(db.numObjects(), 12u);
    EXPECT_EQ(handles.size(), objects);
}

TEST(PwDbDatabaseContent, TheGettersOpenForTheModeAsked) {
    PwDbDatabase db;
    PwDbBlockTable* blocks = nullptr;
    ASSERT_EQ(db.getSymbolTable(blocks, PwDb::OpenForWrite), Plotwright::StatusOk);
    EXPECT_EQ(blocks->objectId(), db.blockTableId());
    EXPECT_TRUE(blocks->isWriteEnabled());
    PwDbBlockTable* second = blocks;
    EXPECT_EQ(db.getSymbolTable(second, PwDb::OpenForRead), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(second, nullptr);
    blocks->close();

    PwDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getSymbolTable(layers, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(layers->objectId(), db.layerTableId());
    PwDbLayerTable* writer = layers;
    EXPECT_EQ(db.getSymbolTable(writer, PwDb::OpenForWrite), Plotwright::StatusWasOpenForRead);
    EXPECT_EQ(writer, nullptr);
    layers->close();

    PwDbDictionary* dictionary = nullptr;
    ASSERT_EQ(db.getNamedObjectsDictionary(dictionary, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->objectId(), db.namedObjectsDictionaryId());
    EXPECT_FALSE(dictionary->isWriteEnabled());
    dictionary->close();
    ASSERT_EQ(db.getLayoutDictionary(dictionary, PwDb::OpenForWrite), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->objectId(), db.layoutDictionaryId());
    EXPECT_TRUE(dictionary->isWriteEnabled());
    dictionary->close();
    ASSERT_EQ(db.getPlotSettingsDictionary(dictionary, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->objectId(), db.plotSettingsDictionaryId());
    dictionary->close();
}

TEST(PwDbDatabaseContent, LayerZeroIsInUseAndAFreshLayerOnlyOnceAnEntityIsOnIt) {
    PwDbDatabase db;
    EXPECT_TRUE(inUse(db.layerZeroId()));
    PwDbObjectId fresh;
    {
        PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForWrite);
        auto* layer = new PwDbLayerTableRecord;
        layer->setName(u"Fresh");
        ASSERT_EQ(layers->add(fresh, layer), Plotwright::StatusOk);
        layer->close();
    }
    EXPECT_FALSE(inUse(fresh));
    {
        PwDbObjectPointer<PwDbBlockTableRecord> paper(db.paperSpaceId(), PwDb::OpenForWrite);
        auto* reference = new PwDbBlockReference;
        reference->setLayer(fresh);
        ASSERT_EQ(paper->appendPwDbEntity(reference), Plotwright::StatusOk);
        reference->close();
    }
    EXPECT_TRUE(inUse(fresh));
}

TEST(PwDbDatabaseContent, EachDrawingHasItsOwnObjects) {
    PwDbDatabase first;
    PwDbDatabase second;
    EXPECT_NE(first.modelSpaceId(), second.modelSpaceId());
    EXPECT_EQ(first.modelSpaceId().database(), &first);
    EXPECT_EQ(second.layerZeroId().database(), &second);
    EXPECT_EQ(first.setClayer(second.layerZeroId()), Plotwright::StatusWrongDatabase);
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&first, PwDb::OpenForRead);
    EXPECT_FALSE(layers->has(second.layerZeroId()));
    EXPECT_TRUE(layers->has(first.layerZeroId()));
}

}  // namespace
