// Layers: stored flags, colour, description, whether the drawing uses them, their persistent
// data, and the layer table's typed access.
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

using Plotwright::ErrorStatus;

PwDbObjectId addLayer(PwDbDatabase& db, const char16_t* name) {
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForWrite);
    if (!layers) return PwDbObjectId();
    auto* layer = new PwDbLayerTableRecord;
    EXPECT_EQ(layer->setName(name), Plotwright::StatusOk);
    PwDbObjectId id;
    if (layers->add(id, layer) != Plotwright::StatusOk) {
        delete layer;
        return PwDbObjectId();
    }
    layer->close();
    return id;
}

bool inUse(PwDbObjectId layer) {
    PwDbObjectPointer<PwDbLayerTableRecord> record(layer, PwDb::OpenForRead);
    EXPECT_EQ(record.openStatus(), Plotwright::StatusOk);
    return record && record->isInUse();
}

// A layer with every stored value away from its default.
void fillIn(PwDbLayerTableRecord& layer) {
    ASSERT_EQ(layer.setName(u"Hatching"), Plotwright::StatusOk);
    ASSERT_EQ(layer.setIsFrozen(true), Plotwright::StatusOk);
    ASSERT_EQ(layer.setIsHidden(true), Plotwright::StatusOk);
    ASSERT_EQ(layer.setIsLocked(true), Plotwright::StatusOk);
    ASSERT_EQ(layer.setIsOff(true), Plotwright::StatusOk);
    ASSERT_EQ(layer.setIsReconciled(true), Plotwright::StatusOk);
    ASSERT_EQ(layer.setDescription(u"Section fills, 0.18 mm"), Plotwright::StatusOk);
    ASSERT_EQ(layer.setColorIndex(42), Plotwright::StatusOk);
}

void expectFilledIn(const PwDbLayerTableRecord& layer) {
    const char16_t* name = nullptr;
    layer.getName(name);
    EXPECT_EQ(wstring(name), u"Hatching");
    EXPECT_TRUE(layer.isFrozen());
    EXPECT_TRUE(layer.isHidden());
    EXPECT_TRUE(layer.isLocked());
    EXPECT_TRUE(layer.isOff());
    EXPECT_TRUE(layer.isReconciled());
    PwString description;
    ASSERT_EQ(layer.description(description), Plotwright::StatusOk);
    EXPECT_EQ(description, u"Section fills, 0.18 mm");
    EXPECT_EQ(layer.colorIndex(), 42);
}

TEST(PwDbLayerTableRecord, StartsVisibleUnlockedInColourSeven) {
    PwDbLayerTableRecord layer;
    EXPECT_FALSE(layer.isFrozen());
    EXPECT_FALSE(layer.isHidden());
    EXPECT_FALSE(layer.isLocked());
    EXPECT_FALSE(layer.isOff());
    EXPECT_FALSE(layer.isReconciled());
    EXPECT_EQ(layer.colorIndex(), 7);
    PwString description(u"x");
    ASSERT_EQ(layer.description(description), Plotwright::StatusOk);
    EXPECT_TRUE(description.isEmpty());
}

TEST(PwDbLayerTableRecord, KeepsEachFlagApart) {
    PwDbLayerTableRecord layer;
    ASSERT_EQ(layer.setIsLocked(true), Plotwright::StatusOk);
    EXPECT_TRUE(layer.isLocked());
    EXPECT_FALSE(layer.isFrozen() || layer.isHidden() || layer.isOff() || layer.isReconciled());
    ASSERT_EQ(layer.setIsOff(true), Plotwright::StatusOk);
    ASSERT_EQ(layer.setIsLocked(false), Plotwright::StatusOk);
    EXPECT_TRUE(layer.isOff());
    EXPECT_FALSE(layer.isLocked());
    fillIn(layer);
    expectFilledIn(layer);
}

TEST(PwDbLayerTableRecord, RefusesChangesUnlessOpenForWrite) {
    PwDbDatabase db;
    PwDbObjectPointer<PwDbLayerTableRecord> zero(db.layerZeroId(), PwDb::OpenForRead);
    ASSERT_TRUE(zero);
    EXPECT_EQ(zero->setIsFrozen(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setIsHidden(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setIsLocked(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setIsOff(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setIsReconciled(true), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setDescription(u"no"), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setColorIndex(1), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(zero->setName(u"Zero"), Plotwright::StatusNotOpenForWrite);
    EXPECT_FALSE(zero->isFrozen() || zero->isHidden() || zero->isLocked() || zero->isOff() ||
                 zero->isReconciled());
    EXPECT_EQ(zero->colorIndex(), 7);
    ASSERT_EQ(zero->upgradeOpen(), Plotwright::StatusOk);
    EXPECT_EQ(zero->setIsFrozen(true), Plotwright::StatusOk);
    EXPECT_TRUE(zero->isFrozen());
    EXPECT_TRUE(zero->isModified());
}

TEST(PwDbLayerTableRecord, ColoursStayWithinOneTo255) {
    PwDbLayerTableRecord layer;
    for (const int16_t refused : {int16_t{0}, int16_t{256}, int16_t{-7}}) {
        EXPECT_EQ(layer.setColorIndex(refused), Plotwright::StatusInvalidInput);
    }
    EXPECT_EQ(layer.colorIndex(), 7);
    EXPECT_EQ(layer.setColorIndex(1), Plotwright::StatusOk);
    EXPECT_EQ(layer.colorIndex(), 1);
    EXPECT_EQ(layer.setColorIndex(255), Plotwright::StatusOk);
    EXPECT_EQ(layer.colorIndex(), 255);
}

TEST(PwDbLayerTableRecord, ANullDescriptionClearsIt) {
    PwDbLayerTableRecord layer;
    ASSERT_EQ(layer.setDescription(u"Walls, cut"), Plotwright::StatusOk);
    PwString description;
    layer.description(description);
    EXPECT_EQ(description, u"Walls, cut");
    ASSERT_EQ(layer.setDescription(nullptr), Plotwright::StatusOk);
    layer.description(description);
    EXPECT_TRUE(description.isEmpty());
}

TEST(PwDbLayerTableRecord, InUseFollowsLayerZeroTheCurrentLayerAndEntities) {
    PwDbDatabase db;
    EXPECT_TRUE(inUse(db.layerZeroId()));
    const PwDbObjectId fresh = addLayer(db, u"Fresh");
    const PwDbObjectId current = addLayer(db, u"Current");
    EXPECT_FALSE(inUse(fresh));
    EXPECT_FALSE(inUse(current));
    ASSERT_EQ(db.setClayer(current), Plotwright::StatusOk);
    EXPECT_TRUE(inUse(current));
    EXPECT_TRUE(inUse(db.layerZeroId()));

    PwDbObjectId placed;
    {
        PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForWrite);
        auto* reference = new PwDbBlockReference;
        ASSERT_EQ(reference->setLayer(fresh), Plotwright::StatusOk);
        ASSERT_EQ(model->appendPwDbEntity(placed, reference), Plotwright::StatusOk);
        reference->close();
    }
    EXPECT_TRUE(inUse(fresh));
    {
        PwDbObjectPointer<PwDbEntity> entity(placed, PwDb::OpenForWrite);
        ASSERT_EQ(entity->erase(), Plotwright::StatusOk);
    }
    EXPECT_FALSE(inUse(fresh));

    PwDbLayerTableRecord loose;
    EXPECT_FALSE(loose.isInUse());
}

TEST(PwDbLayerTableRecord, RoundTripsEveryValueThroughAFiler) {
    PwDbDatabase db;
    PwDbLayerTableRecord layer;
    fillIn(layer);
    ASSERT_EQ(layer.setOwnerId(db.layerTableId()), Plotwright::StatusOk);
    PwDbMemoryFiler filer(&db);
    ASSERT_EQ(layer.plwOutFields(&filer), Plotwright::StatusOk);
    std::unique_ptr<PwRxObject> made(PwDbLayerTableRecord::desc()->create());
    auto* copy = PwDbLayerTableRecord::cast(made.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->plwInFields(&filer), Plotwright::StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);
    expectFilledIn(*copy);
    EXPECT_EQ(copy->ownerId(), db.layerTableId());

    std::unique_ptr<PwDbObject> cloned(layer.clone());
    auto* twin = PwDbLayerTableRecord::cast(cloned.get());
    ASSERT_NE(twin, nullptr);
    expectFilledIn(*twin);
    EXPECT_FALSE(twin->isModified());
}

TEST(PwDbLayerTableRecord, StoredColoursOutsideTheRangeAreRefused) {
    PwDbMemoryFiler filer;
    filer.writeObjectId(PwDbObjectId());
    filer.writeInt32(0);  // no persistent reactors
    filer.writeString(u"Bad");
    for (int i = 0; i < 5; ++i) filer.writeBool(false);
    filer.writeString(u"");
    filer.writeInt32(0);
    PwDbLayerTableRecord layer;
    EXPECT_EQ(layer.plwInFields(&filer), Plotwright::StatusFilerError);
    EXPECT_EQ(layer.colorIndex(), 7);

    PwDbMemoryFiler shortened;
    shortened.writeObjectId(PwDbObjectId());
    shortened.writeInt32(0);  // no persistent reactors
    shortened.writeString(u"Short");
    shortened.writeBool(true);
    EXPECT_EQ(layer.plwInFields(&shortened), Plotwright::StatusFilerError);
    EXPECT_FALSE(layer.isFrozen());
}

TEST(PwDbLayerTable, GivesTypedRecordsByNameAndByIterator) {
    PwDbDatabase db;
    const PwDbObjectId walls = addLayer(db, u"Walls");
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
    ASSERT_TRUE(layers);
    EXPECT_EQ(layers->recordClass(), PwDbLayerTableRecord::desc());
    PwDbLayerTableRecord* layer = nullptr;
    ASSERT_EQ(layers->getAt(u"walls", layer, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(layer->objectId(), walls);
    layer->close();

    PwDbLayerTableIterator* raw = nullptr;
    ASSERT_EQ(layers->newIterator(raw, false), Plotwright::StatusOk);
    std::unique_ptr<PwDbLayerTableIterator> it(raw);
    ASSERT_EQ(it->getRecord(layer, PwDb::OpenForWrite), Plotwright::StatusOk);
    EXPECT_EQ(layer->objectId(), walls);
    EXPECT_EQ(layer->setIsLocked(true), Plotwright::StatusOk);
    layer->close();
    it->step(false);
    PwDbSymbolTableRecord* record = nullptr;
    ASSERT_EQ(it->getRecord(record, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(record->objectId(), db.layerZeroId());
    record->close();
    it->step(false);
    EXPECT_TRUE(it->done());
    EXPECT_EQ(it->getRecord(layer, PwDb::OpenForRead), Plotwright::StatusIteratorDone);
}

TEST(PwDbLayerTable, RoundTripsItsRecordListThroughAFiler) {
    PwDbDatabase db;
    const PwDbObjectId walls = addLayer(db, u"Walls");
    const PwDbObjectId doors = addLayer(db, u"Doors");
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
    PwDbMemoryFiler filer(&db);
    ASSERT_EQ(layers->plwOutFields(&filer), Plotwright::StatusOk);
    std::unique_ptr<PwRxObject> made(PwDbLayerTable::desc()->create());
    auto* copy = PwDbLayerTable::cast(made.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->plwInFields(&filer), Plotwright::StatusOk);
    EXPECT_EQ(copy->numRecords(), 3u);
    EXPECT_TRUE(copy->ownerId().isNull());
    PwDbObjectId id;
    ASSERT_EQ(copy->getIdAt(u"DOORS", id), Plotwright::StatusOk);
    EXPECT_EQ(id, doors);
    PwDbLayerTableIterator* raw = nullptr;
    copy->newIterator(raw);
    std::unique_ptr<PwDbLayerTableIterator> it(raw);
    std::vector<PwDbObjectId> ids;
    for (; !it->done(); it->step()) {
        it->getRecordId(id);
        ids.push_back(id);
    }
    EXPECT_EQ(ids, (std::vector<PwDbObjectId>{db.layerZeroId(), walls, doors}));
}

}  // namespace
