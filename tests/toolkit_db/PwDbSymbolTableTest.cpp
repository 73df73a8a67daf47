// Symbol tables and their records: names, look-ups, iteration, the open protocol on records,
// the owning pointers, and the symbol services.
#include <lodeqdb/toolkit/db/PwDbSymbolTable.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>

namespace {

using Plotwright::ErrorStatus;

// Adds a layer called `name` to `db` and gives its id; the layer is closed again.
PwDbObjectId addLayer(PwDbDatabase& db, const char16_t* name) {
    PwDbLayerTable* layers = nullptr;
    EXPECT_EQ(db.getSymbolTable(layers, PwDb::OpenForWrite), Plotwright::StatusOk);
    if (layers == nullptr) return PwDbObjectId();
    auto* layer = new PwDbLayerTableRecord;
    PwDbObjectId id;
    EXPECT_EQ(layer->setName(name), Plotwright::StatusOk);
    const ErrorStatus status = layers->add(id, layer);
    EXPECT_EQ(status, Plotwright::StatusOk);
    if (status == Plotwright::StatusOk) {
        layer->close();
    } else {
        delete layer;
    }
    layers->close();
    return id;
}

wstring nameOf(PwDbObjectId id) {
    PwDbSymbolTableRecord* record = nullptr;
    if (pwdbOpenObject(record, id, PwDb::OpenForRead, true) != Plotwright::StatusOk) return u"?";
    const char16_t* name = nullptr;
    record->getName(name);
    wstring copy(name);
    record->close();
    return copy;
}

void setErased(PwDbObjectId id, bool erased) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, id, PwDb::OpenForWrite, true), Plotwright::StatusOk);
    EXPECT_EQ(object->erase(erased), Plotwright::StatusOk);
    object->close();
}

ErrorStatus rename(PwDbObjectId id, const char16_t* name) {
    PwDbSymbolTableRecord* record = nullptr;
    if (auto status = pwdbOpenObject(record, id, PwDb::OpenForWrite)) return status;
    const ErrorStatus status = record->setName(name);
    record->close();
    return status;
}

PwDbObjectId lookUp(const PwDbDatabase& db, const char16_t* name, bool erased = false,
                    ErrorStatus* status = nullptr) {
    PwDbLayerTable* layers = nullptr;
    if (db.getSymbolTable(layers, PwDb::OpenForRead) != Plotwright::StatusOk) return {};
    PwDbObjectId id;
    const ErrorStatus result = layers->getIdAt(name, id, erased);
    if (status != nullptr) *status = result;
    layers->close();
    return id;
}

// The names an iterator over the layer table passes, in its order.
std::vector<wstring> walk(const PwDbDatabase& db, bool forward, bool skipErased) {
    std::vector<wstring> names;
    PwDbLayerTable* layers = nullptr;
    if (db.getSymbolTable(layers, PwDb::OpenForRead) != Plotwright::StatusOk) return names;
    PwDbLayerTableIterator* raw = nullptr;
    EXPECT_EQ(layers->newIterator(raw, forward, skipErased), Plotwright::StatusOk);
    std::unique_ptr<PwDbLayerTableIterator> it(raw);
    for (; !it->done(); it->step(forward, skipErased)) {
        PwDbObjectId id;
        EXPECT_EQ(it->getRecordId(id), Plotwright::StatusOk);
        names.push_back(nameOf(id));
    }
    layers->close();
    return names;
}

// --- The open protocol on table records --------------------------------------------------------

TEST(PwDbRecordOpening, ManyReadersShareOnePointerAndKeepWritersOut) {
    PwDbDatabase db;
    const PwDbObjectId id = addLayer(db, u"Walls");
    PwDbLayerTableRecord* first = nullptr;
    PwDbLayerTableRecord* second = nullptr;
    ASSERT_EQ(pwdbOpenObject(first, id, PwDb::OpenForRead), Plotwright::StatusOk);
    ASSERT_EQ(pwdbOpenObject(second, id, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->numReaders(), 2u);
    EXPECT_FALSE(first->isWriteEnabled());

    PwDbLayerTableRecord* writer = first;
    EXPECT_EQ(pwdbOpenObject(writer, id, PwDb::OpenForWrite), Plotwright::StatusWasOpenForRead);
    EXPECT_EQ(writer, nullptr);

    EXPECT_EQ(first->close(), Plotwright::StatusOk);
    EXPECT_EQ(second->close(), Plotwright::StatusOk);
    EXPECT_EQ(first->close(), Plotwright::StatusNotOpenForRead);
    ASSERT_EQ(pwdbOpenObject(writer, id, PwDb::OpenForWrite), Plotwright::StatusOk);
    EXPECT_TRUE(writer->isWriteEnabled());
    writer->close();
}

TEST(PwDbRecordOpening, AWriterKeepsEveryOtherOpenOut) {
    PwDbDatabase db;
    const PwDbObjectId id = addLayer(db, u"Walls");
    PwDbLayerTableRecord* writer = nullptr;
    ASSERT_EQ(pwdbOpenObject(writer, id, PwDb::OpenForWrite), Plotwright::StatusOk);
    PwDbLayerTableRecord* other = writer;
    EXPECT_EQ(pwdbOpenObject(other, id, PwDb::OpenForWrite), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(other, nullptr);
    other = writer;
    EXPECT_EQ(pwdbOpenObject(other, id, PwDb::OpenForRead), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(writer->numReaders(), 0u);
    EXPECT_EQ(writer->close(), Plotwright::StatusOk);
    ASSERT_EQ(pwdbOpenObject(other, id, PwDb::OpenForRead), Plotwright::StatusOk);
    other->close();
}

TEST(PwDbRecordOpening, OnlyTheSoleReaderMayUpgrade) {
    PwDbDatabase db;
    const PwDbObjectId id = addLayer(db, u"Walls");
    PwDbLayerTableRecord* a = nullptr;
    PwDbLayerTableRecord* b = nullptr;
    ASSERT_EQ(pwdbOpenObject(a, id, PwDb::OpenForRead), Plotwright::StatusOk);
    ASSERT_EQ(pwdbOpenObject(b, id, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(a->upgradeOpen(), Plotwright::StatusWasOpenForRead);
    EXPECT_EQ(a->setIsFrozen(true), Plotwright::StatusNotOpenForWrite);
    b->close();
    ASSERT_EQ(a->upgradeOpen(), Plotwright::StatusOk);
    EXPECT_TRUE(a->isWriteEnabled());
    EXPECT_EQ(a->numReaders(), 0u);
    EXPECT_EQ(a->setIsFrozen(true), Plotwright::StatusOk);
    EXPECT_EQ(a->upgradeOpen(), Plotwright::StatusWasOpenForWrite);
    ASSERT_EQ(a->downgradeOpen(), Plotwright::StatusOk);
    EXPECT_FALSE(a->isWriteEnabled());
    EXPECT_EQ(a->numReaders(), 1u);
    EXPECT_TRUE(a->isFrozen());
    EXPECT_EQ(a->downgradeOpen(), Plotwright::StatusNotOpenForWrite);
    a->close();
    EXPECT_EQ(a->upgradeOpen(), Plotwright::StatusNotOpenForRead);
}

TEST(PwDbRecordOpening, NullIdsErasedRecordsAndOtherClassesAreRefusedDistinctly) {
    PwDbDatabase db;
    const PwDbObjectId id = addLayer(db, u"Walls");
    PwDbLayerTableRecord layerSentinel;
    PwDbBlockTableRecord blockSentinel;
    PwDbLayerTableRecord* layer = &layerSentinel;
    EXPECT_EQ(pwdbOpenObject(layer, PwDbObjectId(), PwDb::OpenForRead),
              Plotwright::StatusNullObjectId);
    EXPECT_EQ(layer, nullptr);

    PwDbBlockTableRecord* block = &blockSentinel;
    EXPECT_EQ(pwdbOpenObject(block, id, PwDb::OpenForRead), Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(block, nullptr);

    setErased(id, true);
    layer = &layerSentinel;
    EXPECT_EQ(pwdbOpenObject(layer, id, PwDb::OpenForRead), Plotwright::StatusWasErased);
    EXPECT_EQ(layer, nullptr);
    ASSERT_EQ(pwdbOpenObject(layer, id, PwDb::OpenForRead, true), Plotwright::StatusOk);
    EXPECT_TRUE(layer->isErased());
    layer->close();
    setErased(id, false);
    ASSERT_EQ(pwdbOpenObject(layer, id, PwDb::OpenForRead), Plotwright::StatusOk);
    layer->close();
}

TEST(PwDbRecordOpening, AnAddedRecordComesBackOpenForWrite) {
    PwDbDatabase db;
    PwDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getSymbolTable(layers, PwDb::OpenForWrite), Plotwright::StatusOk);
    auto* layer = new PwDbLayerTableRecord;
    ASSERT_EQ(layer->setName(u"Walls"), Plotwright::StatusOk);
    PwDbObjectId id;
    ASSERT_EQ(layers->add(id, layer), Plotwright::StatusOk);
    layers->close();
    EXPECT_EQ(layer->objectId(), id);
    EXPECT_EQ(layer->database(), &db);
    EXPECT_TRUE(layer->isWriteEnabled());
    PwDbLayerTableRecord* other = nullptr;
    EXPECT_EQ(pwdbOpenObject(other, id, PwDb::OpenForRead), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(layer->close(), Plotwright::StatusOk);
    ASSERT_EQ(pwdbOpenObject(other, id, PwDb::OpenForRead), Plotwright::StatusOk);
    other->close();
}

TEST(PwDbRecordOpening, ARecordInNoDatabaseIsUsedFreelyAndDeleted) {
    auto* layer = new PwDbLayerTableRecord;
    EXPECT_TRUE(layer->objectId().isNull());
    EXPECT_TRUE(layer->isWriteEnabled());
    EXPECT_EQ(layer->setName(u"Loose"), Plotwright::StatusOk);
    EXPECT_EQ(layer->close(), Plotwright::StatusNotInDatabase);
    pwdbReleaseObject(layer);  // deletes it; the leak checker would see it otherwise
}

// --- Names and look-ups ----------------------------------------------------------------------

TEST(PwDbSymbolTable, RecordsAreFoundByNameInAnyCase) {
    PwDbDatabase db;
    const PwDbObjectId walls = addLayer(db, u"Walls");
    EXPECT_EQ(lookUp(db, u"Walls"), walls);
    EXPECT_EQ(lookUp(db, u"WALLS"), walls);
    EXPECT_EQ(lookUp(db, u"walls"), walls);
    ErrorStatus status = Plotwright::StatusOk;
    EXPECT_TRUE(lookUp(db, u"Wall", false, &status).isNull());
    EXPECT_EQ(status, Plotwright::StatusKeyNotFound);
    lookUp(db, nullptr, false, &status);
    EXPECT_EQ(status, Plotwright::StatusInvalidKey);
    lookUp(db, u"", false, &status);
    EXPECT_EQ(status, Plotwright::StatusInvalidKey);

    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
    ASSERT_EQ(layers.openStatus(), Plotwright::StatusOk);
    EXPECT_TRUE(layers->has(u"wALLS"));
    EXPECT_FALSE(layers->has(u"Doors"));
    EXPECT_TRUE(layers->has(walls));
    EXPECT_FALSE(layers->has(db.modelSpaceId()));
    EXPECT_FALSE(layers->has(PwDbObjectId()));
    EXPECT_EQ(layers->numRecords(), 2u);
}

TEST(PwDbSymbolTable, NamesWithForbiddenCharactersAreRefused) {
    PwDbLayerTableRecord layer;
    ASSERT_EQ(layer.setName(u"Good name"), Plotwright::StatusOk);
    const char16_t* refused[] = {u"a<b", u"a>b",       u"a/b",  u"a\\b",  u"a\"b", u"a:b",
                                 u"a;b", u"a?b",       u"a*b",  u"a|b",   u"a,b",  u"a=b",
                                 u"a`b", u"tab\tname", u"\x7f", u"x\x85", u"",     u"*Lead"};
    for (const char16_t* name : refused) {
        EXPECT_EQ(layer.setName(name), Plotwright::StatusInvalidKey) << wstring(name).size();
    }
    EXPECT_EQ(layer.setName(nullptr), Plotwright::StatusInvalidKey);
    const char16_t* name = nullptr;
    layer.getName(name);
    EXPECT_EQ(wstring(name), u"Good name");
    EXPECT_EQ(layer.setName(u"Ébauche-01 (v2) #3 & [x]"), Plotwright::StatusOk);
}

TEST(PwDbSymbolTable, DuplicateNamesAreRefusedWhateverTheirCase) {
    PwDbDatabase db;
    const PwDbObjectId doors = addLayer(db, u"Doors");
    const PwDbObjectId walls = addLayer(db, u"Walls");
    PwDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getSymbolTable(layers, PwDb::OpenForWrite), Plotwright::StatusOk);
    auto* twin = new PwDbLayerTableRecord;
    twin->setName(u"DOORS");
    PwDbObjectId id = doors;
    EXPECT_EQ(layers->add(id, twin), Plotwright::StatusDuplicateKey);
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(twin->objectId().isNull());
    delete twin;
    layers->close();

    EXPECT_EQ(rename(walls, u"doors"), Plotwright::StatusDuplicateKey);
    EXPECT_EQ(nameOf(walls), u"Walls");
    EXPECT_EQ(rename(walls, u"WALLS"), Plotwright::StatusOk);
    EXPECT_EQ(nameOf(walls), u"WALLS");
    EXPECT_EQ(lookUp(db, u"walls"), walls);
}

TEST(PwDbSymbolTable, TheLookUpFollowsARename) {
    PwDbDatabase db;
    const PwDbObjectId walls = addLayer(db, u"Walls");
    ASSERT_EQ(rename(walls, u"Partitions"), Plotwright::StatusOk);
    EXPECT_TRUE(lookUp(db, u"Walls").isNull());
    EXPECT_EQ(lookUp(db, u"PARTITIONS"), walls);
    const PwDbObjectId newWalls = addLayer(db, u"walls");
    EXPECT_FALSE(newWalls.isNull());
    EXPECT_NE(newWalls, walls);
    EXPECT_EQ(lookUp(db, u"Walls"), newWalls);
    EXPECT_EQ(rename(newWalls, u"partitions"), Plotwright::StatusDuplicateKey);
}

TEST(PwDbSymbolTable, ErasedRecordsAreFoundOnlyWhenAskedFor) {
    PwDbDatabase db;
    const PwDbObjectId older = addLayer(db, u"Temp");
    setErased(older, true);
    ErrorStatus status = Plotwright::StatusOk;
    EXPECT_TRUE(lookUp(db, u"temp", false, &status).isNull());
    EXPECT_EQ(status, Plotwright::StatusKeyNotFound);
    EXPECT_EQ(lookUp(db, u"temp", true, &status), older);
    EXPECT_EQ(status, Plotwright::StatusOk);

    // The name of an erased record may be taken again, and the live one wins.
    const PwDbObjectId newer = addLayer(db, u"TEMP");
    ASSERT_FALSE(newer.isNull());
    EXPECT_EQ(lookUp(db, u"Temp"), newer);
    EXPECT_EQ(lookUp(db, u"Temp", true), newer);
    setErased(newer, true);
    EXPECT_EQ(lookUp(db, u"Temp", true), older);
    EXPECT_EQ(rename(older, u"Temp"), Plotwright::StatusWasErased);

    // Un-erasing brings the record back under its name.
    setErased(newer, false);
    EXPECT_EQ(lookUp(db, u"temp"), newer);
}

TEST(PwDbSymbolTable, AddRefusesWhatItCannotTake) {
    PwDbDatabase db;
    PwDbDatabase other;
    PwDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getSymbolTable(layers, PwDb::OpenForWrite), Plotwright::StatusOk);
    EXPECT_EQ(layers->add(nullptr), Plotwright::StatusNullDatabase);

    PwDbBlockTableRecord block;
    block.setName(u"Door");
    EXPECT_EQ(layers->add(&block), Plotwright::StatusNotThatKindOfClass);

    PwDbLayerTableRecord nameless;
    EXPECT_EQ(layers->add(&nameless), Plotwright::StatusInvalidKey);

    PwDbLayerTableRecord* zero = nullptr;
    ASSERT_EQ(pwdbOpenObject(zero, db.layerZeroId(), PwDb::OpenForWrite), Plotwright::StatusOk);
    EXPECT_EQ(layers->add(zero), Plotwright::StatusAlreadyInDatabase);
    zero->close();

    auto* stranger = new PwDbLayerTableRecord;
    stranger->setName(u"Stranger");
    ASSERT_EQ(other.addPwDbObject(stranger), Plotwright::StatusOk);
    EXPECT_EQ(layers->add(stranger), Plotwright::StatusWrongDatabase);
    stranger->close();

    ASSERT_EQ(layers->downgradeOpen(), Plotwright::StatusOk);
    PwDbLayerTableRecord fresh;
    fresh.setName(u"Fresh");
    EXPECT_EQ(layers->add(&fresh), Plotwright::StatusNotOpenForWrite);
    layers->close();
    EXPECT_TRUE(fresh.objectId().isNull());

    PwDbLayerTable loose;
    EXPECT_EQ(loose.add(&fresh), Plotwright::StatusNotInDatabase);
}

TEST(PwDbSymbolTable, AnUnownedRecordOfTheDatabaseMayBeAdded) {
    PwDbDatabase db;
    auto* layer = new PwDbLayerTableRecord;
    layer->setName(u"Adopted");
    PwDbObjectId id;
    ASSERT_EQ(db.addPwDbObject(id, layer), Plotwright::StatusOk);
    PwDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getSymbolTable(layers, PwDb::OpenForWrite), Plotwright::StatusOk);
    PwDbObjectId added;
    EXPECT_EQ(layers->add(added, layer), Plotwright::StatusOk);
    EXPECT_EQ(added, id);
    EXPECT_EQ(layer->ownerId(), layers->objectId());
    EXPECT_EQ(layers->add(layer), Plotwright::StatusAlreadyInDatabase);
    layers->close();
    layer->close();
    EXPECT_EQ(lookUp(db, u"adopted"), id);
}

// --- Iteration --------------------------------------------------------------------------------

TEST(PwDbSymbolTableIterator, WalksInTheOrderRecordsWereAdded) {
    PwDbDatabase db;
    addLayer(db, u"A");
    addLayer(db, u"C");
    addLayer(db, u"B");
    EXPECT_EQ(walk(db, true, true), (std::vector<wstring>{u"0", u"A", u"C", u"B"}));
    EXPECT_EQ(walk(db, false, true), (std::vector<wstring>{u"B", u"C", u"A", u"0"}));
}

TEST(PwDbSymbolTableIterator, ErasedRecordsArePassedOverOnlyWhenAsked) {
    PwDbDatabase db;
    addLayer(db, u"A");
    const PwDbObjectId c = addLayer(db, u"C");
    const PwDbObjectId b = addLayer(db, u"B");
    setErased(c, true);
    setErased(b, true);
    EXPECT_EQ(walk(db, true, true), (std::vector<wstring>{u"0", u"A"}));
    EXPECT_EQ(walk(db, false, true), (std::vector<wstring>{u"A", u"0"}));
    EXPECT_EQ(walk(db, true, false), (std::vector<wstring>{u"0", u"A", u"C", u"B"}));

    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
    PwDbLayerTableIterator* raw = nullptr;
    layers->newIterator(raw, false, false);
    std::unique_ptr<PwDbLayerTableIterator> it(raw);
    PwDbLayerTableRecord* record = nullptr;
    EXPECT_EQ(it->getRecord(record, PwDb::OpenForRead), Plotwright::StatusWasErased);
    EXPECT_EQ(record, nullptr);
    ASSERT_EQ(it->getRecord(record, PwDb::OpenForRead, true), Plotwright::StatusOk);
    EXPECT_EQ(record->objectId(), b);
    record->close();
}

TEST(PwDbSymbolTableIterator, SeesTheRecordsOfTheMomentItWasMade) {
    PwDbDatabase db;
    addLayer(db, u"A");
    PwDbSymbolTableIterator* raw = nullptr;
    {
        PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
        ASSERT_EQ(layers->newIterator(raw), Plotwright::StatusOk);
    }
    std::unique_ptr<PwDbSymbolTableIterator> it(raw);
    EXPECT_NE(dynamic_cast<PwDbLayerTableIterator*>(it.get()), nullptr);
    addLayer(db, u"Later");
    size_t seen = 0;
    for (; !it->done(); it->step()) ++seen;
    EXPECT_EQ(seen, 2u);
    EXPECT_EQ(walk(db, true, true).size(), 3u);
}

TEST(PwDbSymbolTableIterator, DoneGivesIteratorDoneAndStepsBackIn) {
    PwDbDatabase db;
    const PwDbObjectId a = addLayer(db, u"A");
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
    PwDbSymbolTableIterator* raw = nullptr;
    layers->newIterator(raw);
    std::unique_ptr<PwDbSymbolTableIterator> it(raw);
    it->step();
    it->step();
    ASSERT_TRUE(it->done());
    PwDbObjectId id = a;
    EXPECT_EQ(it->getRecordId(id), Plotwright::StatusIteratorDone);
    EXPECT_TRUE(id.isNull());
    PwDbSymbolTableRecord* record = nullptr;
    EXPECT_EQ(it->getRecord(record, PwDb::OpenForRead), Plotwright::StatusIteratorDone);
    EXPECT_EQ(record, nullptr);
    it->step(false);
    ASSERT_FALSE(it->done());
    EXPECT_EQ(it->getRecordId(id), Plotwright::StatusOk);
    EXPECT_EQ(id, a);
}

TEST(PwDbSymbolTableIterator, SeekGoesToARecordOfTheSnapshot) {
    PwDbDatabase db;
    addLayer(db, u"A");
    const PwDbObjectId b = addLayer(db, u"B");
    addLayer(db, u"C");
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
    PwDbLayerTableIterator* raw = nullptr;
    layers->newIterator(raw);
    std::unique_ptr<PwDbLayerTableIterator> it(raw);
    ASSERT_EQ(it->seek(b), Plotwright::StatusOk);
    PwDbObjectId id;
    it->getRecordId(id);
    EXPECT_EQ(id, b);
    EXPECT_EQ(it->seek(db.modelSpaceId()), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(it->seek(PwDbObjectId()), Plotwright::StatusNullObjectId);
    it->getRecordId(id);
    EXPECT_EQ(id, b);
    it->step();
    ASSERT_EQ(it->getRecordId(id), Plotwright::StatusOk);
    EXPECT_EQ(nameOf(id), u"C");
}

TEST(PwDbSymbolTableIterator, ATableInNoDatabaseIteratesNothing) {
    PwDbBlockTable table;
    PwDbBlockTableIterator* raw = nullptr;
    ASSERT_EQ(table.newIterator(raw), Plotwright::StatusOk);
    std::unique_ptr<PwDbBlockTableIterator> it(raw);
    EXPECT_TRUE(it->done());
    it->start(false);
    EXPECT_TRUE(it->done());
}

// --- Owning pointers over tables and records ----------------------------------------------

TEST(PwDbTablePointers, HoldsTheObjectAndTheStatusOfItsOpen) {
    static_assert(sizeof(PwDbObjectPointer<PwDbLayerTableRecord>) == 2 * sizeof(void*));
    static_assert(sizeof(PwDbSymbolTableRecordPointer<PwDbLayerTableRecord>) == 2 * sizeof(void*));
    PwDbDatabase db;
    PwDbObjectPointer<PwDbLayerTableRecord> empty;
    EXPECT_EQ(empty.openStatus(), Plotwright::StatusNullDatabase);
    EXPECT_EQ(empty.object(), nullptr);

    PwDbObjectPointer<PwDbLayerTableRecord> zero(db.layerZeroId(), PwDb::OpenForRead);
    ASSERT_EQ(zero.openStatus(), Plotwright::StatusOk);
    EXPECT_EQ(zero->colorIndex(), 7);
    PwDbLayerTableRecord* writer = nullptr;
    EXPECT_EQ(pwdbOpenObject(writer, db.layerZeroId(), PwDb::OpenForWrite),
              Plotwright::StatusWasOpenForRead);
    zero.release();
    EXPECT_EQ(zero.openStatus(), Plotwright::StatusNullDatabase);
    EXPECT_EQ(zero.object(), nullptr);
    ASSERT_EQ(pwdbOpenObject(writer, db.layerZeroId(), PwDb::OpenForWrite), Plotwright::StatusOk);

    PwDbObjectPointer<PwDbLayerTableRecord> refused(db.layerZeroId(), PwDb::OpenForRead);
    EXPECT_EQ(refused.openStatus(), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(refused.object(), nullptr);
    writer->close();

    PwDbObjectPointer<PwDbBlockTableRecord> wrongClass(db.layerZeroId(), PwDb::OpenForRead);
    EXPECT_EQ(wrongClass.openStatus(), Plotwright::StatusNotThatKindOfClass);
}

TEST(PwDbTablePointers, TheTableAndRecordFormsOpenByDatabaseAndName) {
    PwDbDatabase db;
    PwDbSymbolTablePointer<PwDbLayerTable> none(nullptr, PwDb::OpenForRead);
    EXPECT_EQ(none.openStatus(), Plotwright::StatusNullDatabase);
    EXPECT_EQ(none.object(), nullptr);
    {
        PwDbSymbolTablePointer<PwDbLayerTable> layers(&db, PwDb::OpenForRead);
        ASSERT_EQ(layers.openStatus(), Plotwright::StatusOk);
        PwDbSymbolTableRecordPointer<PwDbLayerTableRecord> zero(u"0", layers.object(),
                                                                PwDb::OpenForWrite);
        ASSERT_EQ(zero.openStatus(), Plotwright::StatusOk);
        EXPECT_EQ(zero->objectId(), db.layerZeroId());
        EXPECT_TRUE(zero->isWriteEnabled());
        PwDbSymbolTableRecordPointer<PwDbLayerTableRecord> missing(u"Nope", layers.object(),
                                                                   PwDb::OpenForRead);
        EXPECT_EQ(missing.openStatus(), Plotwright::StatusKeyNotFound);
        PwDbSymbolTableRecordPointer<PwDbLayerTableRecord> noTable(
            u"0", static_cast<const PwDbLayerTable*>(nullptr), PwDb::OpenForRead);
        EXPECT_EQ(noTable.openStatus(), Plotwright::StatusNullDatabase);
    }
    // Leaving the scope closed both: a write open succeeds again.
    PwDbBlockTable* blocks = nullptr;
    PwDbLayerTable* layers = nullptr;
    ASSERT_EQ(db.getSymbolTable(layers, PwDb::OpenForWrite), Plotwright::StatusOk);
    layers->close();
    ASSERT_EQ(db.getSymbolTable(blocks, PwDb::OpenForWrite), Plotwright::StatusOk);
    blocks->close();
    PwDbLayerTableRecord* zero = nullptr;
    ASSERT_EQ(pwdbOpenObject(zero, db.layerZeroId(), PwDb::OpenForWrite), Plotwright::StatusOk);
    zero->close();
}

// --- Symbol services --------------------------------------------------------------------------

TEST(PwDbSymbolUtilities, ServicesGiveTheStandardBlocksAndCheckNames) {
    const PwDbSymbolUtilities::Services* services = PwDbSymbolUtilities::servicesPtr106();
    ASSERT_NE(services, nullptr);
    EXPECT_EQ(services, PwDbSymbolUtilities::servicesPtr106());
    PwDbDatabase db;
    PwDbObjectId id;
    EXPECT_EQ(services->modelSpaceBlockId(id, &db), Plotwright::StatusOk);
    EXPECT_EQ(id, db.modelSpaceId());
    EXPECT_EQ(services->paperSpaceBlockId(id, &db), Plotwright::StatusOk);
    EXPECT_EQ(id, db.paperSpaceId());
    EXPECT_EQ(services->modelSpaceBlockId(id, nullptr), Plotwright::StatusNullDatabase);
    EXPECT_TRUE(id.isNull());

    EXPECT_EQ(services->validateSymbolName(u"Walls", false), Plotwright::StatusOk);
    EXPECT_EQ(services->validateSymbolName(u"*Model_Space", false), Plotwright::StatusInvalidKey);
    EXPECT_EQ(services->validateSymbolName(u"*Model_Space", true), Plotwright::StatusOk);
    EXPECT_EQ(services->validateSymbolName(u"*", true), Plotwright::StatusInvalidKey);
    EXPECT_EQ(services->validateSymbolName(u"**A", true), Plotwright::StatusInvalidKey);
    EXPECT_EQ(services->validateSymbolName(nullptr, true), Plotwright::StatusInvalidKey);
    EXPECT_EQ(services->compareSymbolName(u"WALLS", u"walls"), 0);
    EXPECT_LT(services->compareSymbolName(u"doors", u"WALLS"), 0);
    EXPECT_GT(services->compareSymbolName(u"a", nullptr), 0);
}

}  // namespace
