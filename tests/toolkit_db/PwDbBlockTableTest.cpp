// Block definitions: their names, entities, iteration, layouts, the references placing them,
// and their persistent data.
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

// The smallest entity there is: no data of its own.
class PwBlockTestMark : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwBlockTestMark);
};

}  // namespace

PWRX_DEFINE_DYNAMIC_MEMBERS(PwBlockTestMark, PwDbEntity, u"PwBlockTestMark");

namespace {

using Plotwright::ErrorStatus;

// Adds a block called `name` to the drawing and gives its id; the block is closed again.
PwDbObjectId addBlock(PwDbDatabase& db, const char16_t* name) {
    PwDbSymbolTablePointer<PwDbBlockTable> blocks(&db, PwDb::OpenForWrite);
    EXPECT_EQ(blocks.openStatus(), Plotwright::StatusOk);
    if (!blocks) return PwDbObjectId();
    auto* block = new PwDbBlockTableRecord;
    EXPECT_EQ(block->setName(name), Plotwright::StatusOk);
    PwDbObjectId id;
    if (blocks->add(id, block) != Plotwright::StatusOk) {
        delete block;
        return PwDbObjectId();
    }
    block->close();
    return id;
}

// Appends a new entity to the block `block` and gives its id; the entity is closed again.
PwDbObjectId appendMark(PwDbObjectId block) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForWrite);
    EXPECT_EQ(record.openStatus(), Plotwright::StatusOk);
    if (!record) return PwDbObjectId();
    auto* mark = new PwBlockTestMark;
    PwDbObjectId id;
    if (record->appendPwDbEntity(id, mark) != Plotwright::StatusOk) {
        delete mark;
        return PwDbObjectId();
    }
    mark->close();
    return id;
}

// Appends a reference placing `placed` to the block `block`.
PwDbObjectId appendReference(PwDbObjectId block, PwDbObjectId placed) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForWrite);
    if (!record) return PwDbObjectId();
    auto* reference = new PwDbBlockReference;
    EXPECT_EQ(reference->setBlockTableRecord(placed), Plotwright::StatusOk);
    PwDbObjectId id;
    if (record->appendPwDbEntity(id, reference) != Plotwright::StatusOk) {
        delete reference;
        return PwDbObjectId();
    }
    reference->close();
    return id;
}

void setErased(PwDbObjectId id, bool erased) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, id, PwDb::OpenForWrite, true), Plotwright::StatusOk);
    EXPECT_EQ(object->erase(erased), Plotwright::StatusOk);
    object->close();
}

std::vector<PwDbObjectId> entitiesOf(PwDbObjectId block, bool forward, bool skipErased) {
    std::vector<PwDbObjectId> ids;
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    if (!record) return ids;
    PwDbBlockTableRecordIterator* raw = nullptr;
    EXPECT_EQ(record->newIterator(raw, forward, skipErased), Plotwright::StatusOk);
    std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
    for (; !it->done(); it->step(forward, skipErased)) {
        PwDbObjectId id;
        EXPECT_EQ(it->getEntityId(id), Plotwright::StatusOk);
        ids.push_back(id);
    }
    return ids;
}

// --- Names ------------------------------------------------------------------------------------

TEST(PwDbBlockTableRecord, TheSpacesAreKnownByTheirNames) {
    PwDbDatabase db;
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    PwDbObjectPointer<PwDbBlockTableRecord> paper(db.paperSpaceId(), PwDb::OpenForRead);
    ASSERT_TRUE(model && paper);
    EXPECT_TRUE(model->isModelSpace());
    EXPECT_FALSE(model->isPaperSpace());
    EXPECT_TRUE(paper->isPaperSpace());
    EXPECT_FALSE(paper->isModelSpace());

    PwDbBlockTableRecord block;
    ASSERT_EQ(block.setName(u"*MODEL_SPACE"), Plotwright::StatusOk);
    EXPECT_TRUE(block.isModelSpace());
    ASSERT_EQ(block.setName(u"*paper_space12"), Plotwright::StatusOk);
    EXPECT_TRUE(block.isPaperSpace());
    ASSERT_EQ(block.setName(u"*Paper_SpaceX"), Plotwright::StatusOk);
    EXPECT_FALSE(block.isPaperSpace());
    ASSERT_EQ(block.setName(u"Model_Space"), Plotwright::StatusOk);
    EXPECT_FALSE(block.isModelSpace());
    EXPECT_FALSE(block.isPaperSpace());
}

TEST(PwDbBlockTableRecord, OnlyBlockNamesMayStartWithOneAsterisk) {
    PwDbBlockTableRecord block;
    EXPECT_EQ(block.setName(u"*U12"), Plotwright::StatusOk);
    EXPECT_EQ(block.setName(u"*"), Plotwright::StatusInvalidKey);
    EXPECT_EQ(block.setName(u"**U"), Plotwright::StatusInvalidKey);
    EXPECT_EQ(block.setName(u"A*"), Plotwright::StatusInvalidKey);
    const char16_t* name = nullptr;
    block.getName(name);
    EXPECT_EQ(wstring(name), u"*U12");
}

TEST(PwDbBlockTable, LooksUpAndIteratesBlocksTyped) {
    PwDbDatabase db;
    const PwDbObjectId door = addBlock(db, u"Door");
    const PwDbObjectId window = addBlock(db, u"Window");
    PwDbSymbolTablePointer<PwDbBlockTable> blocks(&db, PwDb::OpenForRead);
    ASSERT_TRUE(blocks);
    EXPECT_EQ(blocks->recordClass(), PwDbBlockTableRecord::desc());
    PwDbBlockTableRecord* record = nullptr;
    ASSERT_EQ(blocks->getAt(u"DOOR", record, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(record->objectId(), door);
    record->close();
    EXPECT_EQ(blocks->getAt(u"Gate", record, PwDb::OpenForRead), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(record, nullptr);

    PwDbBlockTableIterator* raw = nullptr;
    ASSERT_EQ(blocks->newIterator(raw), Plotwright::StatusOk);
    std::unique_ptr<PwDbBlockTableIterator> it(raw);
    std::vector<PwDbObjectId> seen;
    for (; !it->done(); it->step()) {
        ASSERT_EQ(it->getRecord(record, PwDb::OpenForRead), Plotwright::StatusOk);
        seen.push_back(record->objectId());
        record->close();
    }
    EXPECT_EQ(seen,
              (std::vector<PwDbObjectId>{db.modelSpaceId(), db.paperSpaceId(), door, window}));
}

// --- Entities ---------------------------------------------------------------------------------

TEST(PwDbBlockTableRecord, EntitiesStayInTheOrderTheyWereAppended) {
    PwDbDatabase db;
    std::vector<PwDbObjectId> appended;
    for (int i = 0; i < 5; ++i) appended.push_back(appendMark(db.modelSpaceId()));
    EXPECT_EQ(entitiesOf(db.modelSpaceId(), true, true), appended);
    EXPECT_EQ(entitiesOf(db.modelSpaceId(), false, true),
              std::vector<PwDbObjectId>(appended.rbegin(), appended.rend()));
    EXPECT_TRUE(entitiesOf(db.paperSpaceId(), true, true).empty());
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    EXPECT_EQ(model->numEntities(), 5u);
}

TEST(PwDbBlockTableRecord, AnAppendedEntityIsOwnedOpenAndOnTheCurrentLayer) {
    PwDbDatabase db;
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForWrite);
    ASSERT_TRUE(model);
    auto* mark = new PwBlockTestMark;
    PwDbObjectId id;
    ASSERT_EQ(model->appendPwDbEntity(id, mark), Plotwright::StatusOk);
    EXPECT_EQ(mark->objectId(), id);
    EXPECT_TRUE(mark->isWriteEnabled());
    EXPECT_EQ(mark->ownerId(), db.modelSpaceId());
    EXPECT_EQ(mark->blockId(), db.modelSpaceId());
    EXPECT_EQ(mark->layerId(), db.layerZeroId());
    mark->close();

    // A layer set beforehand is kept; the current layer is used when there is none.
    PwDbObjectId walls;
    {
        PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForWrite);
        auto* layer = new PwDbLayerTableRecord;
        layer->setName(u"Walls");
        ASSERT_EQ(layers->add(walls, layer), Plotwright::StatusOk);
        layer->close();
    }
    ASSERT_EQ(db.setClayer(walls), Plotwright::StatusOk);
    auto* second = new PwBlockTestMark;
    ASSERT_EQ(model->appendPwDbEntity(second), Plotwright::StatusOk);
    EXPECT_EQ(second->layerId(), walls);
    second->close();
    auto* third = new PwBlockTestMark;
    third->setLayer(db.layerZeroId());
    ASSERT_EQ(model->appendPwDbEntity(third), Plotwright::StatusOk);
    EXPECT_EQ(third->layerId(), db.layerZeroId());
    third->close();
}

TEST(PwDbBlockTableRecord, AppendRefusesWhatItCannotTake) {
    PwDbDatabase db;
    PwDbDatabase other;
    const PwDbObjectId owned = appendMark(db.paperSpaceId());
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForWrite);
    ASSERT_TRUE(model);
    EXPECT_EQ(model->appendPwDbEntity(nullptr), Plotwright::StatusNullDatabase);

    PwDbObjectPointer<PwDbEntity> ownedMark(owned, PwDb::OpenForWrite);
    PwDbObjectId id = owned;
    EXPECT_EQ(model->appendPwDbEntity(id, ownedMark.object()), Plotwright::StatusAlreadyInDatabase);
    EXPECT_TRUE(id.isNull());
    EXPECT_EQ(ownedMark->ownerId(), db.paperSpaceId());
    ownedMark.release();

    auto* foreign = new PwBlockTestMark;
    ASSERT_EQ(other.addPwDbObject(foreign), Plotwright::StatusOk);
    EXPECT_EQ(model->appendPwDbEntity(foreign), Plotwright::StatusWrongDatabase);
    foreign->close();

    auto* loose = new PwBlockTestMark;
    ASSERT_EQ(db.addPwDbObject(loose), Plotwright::StatusOk);
    loose->close();
    PwDbObjectPointer<PwDbEntity> looseRead(loose->objectId(), PwDb::OpenForRead);
    EXPECT_EQ(model->appendPwDbEntity(looseRead.object()), Plotwright::StatusNotOpenForWrite);
    ASSERT_EQ(looseRead->upgradeOpen(), Plotwright::StatusOk);
    EXPECT_EQ(model->appendPwDbEntity(looseRead.object()), Plotwright::StatusOk);
    EXPECT_EQ(model->appendPwDbEntity(looseRead.object()), Plotwright::StatusAlreadyInDatabase);
    EXPECT_EQ(model->numEntities(), 1u);

    ASSERT_EQ(model->downgradeOpen(), Plotwright::StatusOk);
    PwBlockTestMark unplaced;
    EXPECT_EQ(model->appendPwDbEntity(&unplaced), Plotwright::StatusNotOpenForWrite);
    PwDbBlockTableRecord notInDrawing;
    EXPECT_EQ(notInDrawing.appendPwDbEntity(&unplaced), Plotwright::StatusNotInDatabase);
    EXPECT_TRUE(unplaced.objectId().isNull());
}

TEST(PwDbBlockTableRecordIterator, ErasedEntitiesArePassedOverOnlyWhenAsked) {
    PwDbDatabase db;
    std::vector<PwDbObjectId> ids;
    for (int i = 0; i < 4; ++i) ids.push_back(appendMark(db.modelSpaceId()));
    setErased(ids[0], true);
    setErased(ids[2], true);
    EXPECT_EQ(entitiesOf(db.modelSpaceId(), true, true),
              (std::vector<PwDbObjectId>{ids[1], ids[3]}));
    EXPECT_EQ(entitiesOf(db.modelSpaceId(), false, true),
              (std::vector<PwDbObjectId>{ids[3], ids[1]}));
    EXPECT_EQ(entitiesOf(db.modelSpaceId(), true, false), ids);

    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    PwDbBlockTableRecordIterator* raw = nullptr;
    model->newIterator(raw, true, false);
    std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
    PwDbEntity* entity = nullptr;
    EXPECT_EQ(it->getEntity(entity, PwDb::OpenForRead), Plotwright::StatusWasErased);
    EXPECT_EQ(entity, nullptr);
    ASSERT_EQ(it->getEntity(entity, PwDb::OpenForRead, true), Plotwright::StatusOk);
    EXPECT_EQ(entity->objectId(), ids[0]);
    entity->close();
    it->step(true, true);
    PwDbObjectId id;
    it->getEntityId(id);
    EXPECT_EQ(id, ids[1]);
    it->step(true, false);
    it->getEntityId(id);
    EXPECT_EQ(id, ids[2]);
}

TEST(PwDbBlockTableRecordIterator, SeeksAndEndsClearly) {
    PwDbDatabase db;
    std::vector<PwDbObjectId> ids;
    for (int i = 0; i < 3; ++i) ids.push_back(appendMark(db.modelSpaceId()));
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    PwDbBlockTableRecordIterator* raw = nullptr;
    model->newIterator(raw);
    std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
    ASSERT_EQ(it->seek(ids[2]), Plotwright::StatusOk);
    PwDbObjectId id;
    ASSERT_EQ(it->getEntityId(id), Plotwright::StatusOk);
    EXPECT_EQ(id, ids[2]);
    EXPECT_EQ(it->seek(db.layerZeroId()), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(it->seek(PwDbObjectId()), Plotwright::StatusNullObjectId);
    it->step();
    EXPECT_TRUE(it->done());
    EXPECT_EQ(it->getEntityId(id), Plotwright::StatusIteratorDone);
    EXPECT_TRUE(id.isNull());
    PwDbEntity* entity = nullptr;
    EXPECT_EQ(it->getEntity(entity, PwDb::OpenForRead), Plotwright::StatusIteratorDone);
    it->step(false);
    ASSERT_EQ(it->getEntityId(id), Plotwright::StatusOk);
    EXPECT_EQ(id, ids[2]);
    it->start();
    it->getEntityId(id);
    EXPECT_EQ(id, ids[0]);
}

TEST(PwDbBlockTableRecordIterator, SeesTheEntitiesOfTheMomentItWasMade) {
    PwDbDatabase db;
    appendMark(db.modelSpaceId());
    PwDbBlockTableRecordIterator* raw = nullptr;
    {
        PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
        model->newIterator(raw);
    }
    std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
    appendMark(db.modelSpaceId());
    size_t seen = 0;
    for (; !it->done(); it->step()) ++seen;
    EXPECT_EQ(seen, 1u);
    EXPECT_EQ(entitiesOf(db.modelSpaceId(), true, true).size(), 2u);
}

// Built, walked and destroyed with the database; the sanitizer build checks that nothing leaks.
// The time it takes is measured by the benchmarks, not here.
TEST(PwDbBlockTableRecordIterator, BuildsWalksAndDestroysAMillionEntities) {
    constexpr size_t kCount = 1000000;
    PwDbDatabase db;
    {
        PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForWrite);
        for (size_t i = 0; i < kCount; ++i) {
            auto* mark = new PwBlockTestMark;
            ASSERT_EQ(model->appendPwDbEntity(mark), Plotwright::StatusOk);
            if (i % 1000 == 0) mark->erase();
            mark->close();
        }
    }
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    PwDbBlockTableRecordIterator* raw = nullptr;
    model->newIterator(raw);
    std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
    size_t live = 0;
    PwDbObjectId id;
    size_t opened = 0;
    for (; !it->done(); it->step()) {
        ASSERT_EQ(it->getEntityId(id), Plotwright::StatusOk);
        ++live;
        if (live % 997 == 0) {
            PwDbEntity* entity = nullptr;
            ASSERT_EQ(it->getEntity(entity, PwDb::OpenForRead), Plotwright::StatusOk);
            EXPECT_EQ(entity->objectId(), id);
            entity->close();
            ++opened;
        }
    }
    EXPECT_EQ(live, kCount - kCount / 1000);
    EXPECT_EQ(opened, live / 997);
    EXPECT_EQ(db.numObjects(), 12 + kCount);
}

// --- Layouts and references ------------------------------------------------------------------

TEST(PwDbBlockTableRecord, OnlyTheSpacesBelongToLayouts) {
    PwDbDatabase db;
    PwDbDatabase other;
    const PwDbObjectId door = addBlock(db, u"Door");
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    EXPECT_TRUE(model->isLayout());
    EXPECT_FALSE(model->getLayoutId().isNull());
    PwDbObjectPointer<PwDbBlockTableRecord> record(door, PwDb::OpenForRead);
    EXPECT_FALSE(record->isLayout());
    EXPECT_TRUE(record->getLayoutId().isNull());
    EXPECT_EQ(record->setLayoutId(model->getLayoutId()), Plotwright::StatusNotOpenForWrite);
    ASSERT_EQ(record->upgradeOpen(), Plotwright::StatusOk);
    EXPECT_EQ(record->setLayoutId(other.modelSpaceId()), Plotwright::StatusWrongDatabase);
    EXPECT_FALSE(record->isLayout());
    ASSERT_EQ(record->setLayoutId(model->getLayoutId()), Plotwright::StatusOk);
    EXPECT_TRUE(record->isLayout());
    ASSERT_EQ(record->setLayoutId(PwDbObjectId()), Plotwright::StatusOk);
    EXPECT_FALSE(record->isLayout());
}

TEST(PwDbBlockTableRecord, BlockReferenceIdsAreTheLivePlacementsOfTheBlock) {
    PwDbDatabase db;
    const PwDbObjectId door = addBlock(db, u"Door");
    const PwDbObjectId window = addBlock(db, u"Window");
    const PwDbObjectId first = appendReference(db.modelSpaceId(), door);
    appendReference(db.modelSpaceId(), window);
    const PwDbObjectId erased = appendReference(db.paperSpaceId(), door);
    const PwDbObjectId third = appendReference(window, door);
    setErased(erased, true);

    PwArray<PwDbObjectId> ids;
    ids.append(db.layerZeroId());  // replaced, not added to
    PwDbObjectPointer<PwDbBlockTableRecord> record(door, PwDb::OpenForRead);
    ASSERT_EQ(record->getBlockReferenceIds(ids), Plotwright::StatusOk);
    ASSERT_EQ(ids.length(), 2u);
    EXPECT_EQ(ids[0], first);
    EXPECT_EQ(ids[1], third);
    ASSERT_EQ(record->getBlockReferenceIds(ids, false, true), Plotwright::StatusOk);
    EXPECT_EQ(ids.length(), 2u);

    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    ASSERT_EQ(model->getBlockReferenceIds(ids), Plotwright::StatusOk);
    EXPECT_EQ(ids.length(), 0u);

    PwDbBlockTableRecord loose;
    EXPECT_EQ(loose.getBlockReferenceIds(ids), Plotwright::StatusNotInDatabase);
}

// --- Persistent data -------------------------------------------------------------------------

TEST(PwDbBlockTableRecord, RoundTripsThroughAFilerAndClones) {
    PwDbDatabase db;
    const PwDbObjectId a = appendMark(db.modelSpaceId());
    const PwDbObjectId b = appendMark(db.modelSpaceId());
    PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForRead);
    ASSERT_TRUE(model);

    PwDbMemoryFiler filer(&db);
    ASSERT_EQ(model->plwOutFields(&filer), Plotwright::StatusOk);
    std::unique_ptr<PwRxObject> made(PwDbBlockTableRecord::desc()->create());
    auto* copy = PwDbBlockTableRecord::cast(made.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->plwInFields(&filer), Plotwright::StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);

    std::unique_ptr<PwDbObject> cloned(model->clone());
    auto* twin = PwDbBlockTableRecord::cast(cloned.get());
    ASSERT_NE(twin, nullptr);
    for (const PwDbBlockTableRecord* record : {copy, twin}) {
        const char16_t* name = nullptr;
        record->getName(name);
        EXPECT_EQ(wstring(name), u"*Model_Space");
        EXPECT_TRUE(record->objectId().isNull());
        EXPECT_EQ(record->ownerId(), db.blockTableId());
        EXPECT_EQ(record->getLayoutId(), model->getLayoutId());
        EXPECT_TRUE(record->isModelSpace());
        PwDbBlockTableRecordIterator* raw = nullptr;
        record->newIterator(raw);
        std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
        std::vector<PwDbObjectId> ids;
        for (PwDbObjectId id; !it->done(); it->step()) ids.push_back((it->getEntityId(id), id));
        EXPECT_EQ(ids, (std::vector<PwDbObjectId>{a, b}));
    }
}

TEST(PwDbBlockTableRecord, DamagedDataIsRefused) {
    PwDbDatabase db;
    PwDbMemoryFiler filer(&db);
    filer.writeObjectId(PwDbObjectId());
    filer.writeInt32(0);  // no persistent reactors
    filer.writeString(u"Door");
    filer.writeInt32(-1);
    PwDbBlockTableRecord record;
    EXPECT_EQ(record.plwInFields(&filer), Plotwright::StatusFilerError);

    PwDbMemoryFiler shortened(&db);
    shortened.writeObjectId(PwDbObjectId());
    shortened.writeInt32(0);  // no persistent reactors
    shortened.writeString(u"Door");
    shortened.writeInt32(3);
    shortened.writeObjectId(db.modelSpaceId());
    EXPECT_EQ(record.plwInFields(&shortened), Plotwright::StatusFilerError);
    EXPECT_EQ(record.numEntities(), 0u);
}

TEST(PwDbBlockTable, RoundTripsItsRecordListThroughAFiler) {
    PwDbDatabase db;
    const PwDbObjectId door = addBlock(db, u"Door");
    PwDbSymbolTablePointer<PwDbBlockTable> blocks(&db, PwDb::OpenForRead);
    std::unique_ptr<PwDbObject> cloned(blocks->clone());
    auto* copy = PwDbBlockTable::cast(cloned.get());
    ASSERT_NE(copy, nullptr);
    EXPECT_EQ(copy->numRecords(), 3u);
    PwDbObjectId id;
    ASSERT_EQ(copy->getIdAt(u"door", id), Plotwright::StatusOk);
    EXPECT_EQ(id, door);
    PwDbBlockTableIterator* raw = nullptr;
    copy->newIterator(raw);
    std::unique_ptr<PwDbBlockTableIterator> it(raw);
    std::vector<PwDbObjectId> ids;
    for (; !it->done(); it->step()) ids.push_back((it->getRecordId(id), id));
    EXPECT_EQ(ids, (std::vector<PwDbObjectId>{db.modelSpaceId(), db.paperSpaceId(), door}));

    PwDbMemoryFiler bad(&db);
    bad.writeObjectId(PwDbObjectId());
    bad.writeInt32(0);  // no persistent reactors
    bad.writeInt32(-5);
    PwDbBlockTable table;
    EXPECT_EQ(table.plwInFields(&bad), Plotwright::StatusFilerError);
}

}  // namespace
