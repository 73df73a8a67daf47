// Dictionaries: filing, finding, replacing, removing and renaming entries, their iteration
// and their persistent data.
#include <lodeqdb/toolkit/db/PwDbDictionary.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

using Plotwright::ErrorStatus;

// A drawing with a dictionary of its own filed in the named objects dictionary, held open
// for write.
class PwDbDictionaryFixture : public ::testing::Test {
  protected:
    void SetUp() override {
        PwDbDictionary* named = nullptr;
        ASSERT_EQ(db.getNamedObjectsDictionary(named, PwDb::OpenForWrite), Plotwright::StatusOk);
        dictionary = new PwDbDictionary;
        ASSERT_EQ(named->setAt(u"TEST_ENTRIES", dictionary, dictionaryId), Plotwright::StatusOk);
        named->close();
    }
    void TearDown() override {
        if (dictionary != nullptr && dictionary->isWriteEnabled()) dictionary->close();
    }

    // Files a new plot settings object called `name` under `key`; it is closed again.
    PwDbObjectId file(const char16_t* key, const char16_t* name = u"") {
        auto* settings = new PwDbPlotSettings;
        settings->setPlotSettingsName(name);
        PwDbObjectId id;
        const ErrorStatus status = dictionary->setAt(key, settings, id);
        EXPECT_EQ(status, Plotwright::StatusOk);
        if (status != Plotwright::StatusOk) {
            delete settings;
            return PwDbObjectId();
        }
        settings->close();
        return id;
    }

    std::vector<wstring> keys() const {
        std::vector<wstring> seen;
        std::unique_ptr<PwDbDictionaryIterator> it(dictionary->newIterator());
        for (; !it->atEnd(); it->advance()) seen.push_back(it->name());
        return seen;
    }

    PwDbDatabase db;
    PwDbDictionary* dictionary = nullptr;
    PwDbObjectId dictionaryId;
};

void setErased(PwDbObjectId id, bool erased) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, id, PwDb::OpenForWrite, true), Plotwright::StatusOk);
    EXPECT_EQ(object->erase(erased), Plotwright::StatusOk);
    object->close();
}

PwDbObjectId ownerOf(PwDbObjectId id) {
    PwDbObject* object = nullptr;
    if (pwdbOpenObject(object, id, PwDb::OpenForRead, true) != Plotwright::StatusOk) return {};
    const PwDbObjectId owner = object->ownerId();
    object->close();
    return owner;
}

TEST_F(PwDbDictionaryFixture, FiledObjectsJoinTheDrawingOwnedAndOpenForWrite) {
    auto* settings = new PwDbPlotSettings;
    PwDbObjectId id;
    ASSERT_EQ(dictionary->setAt(u"A3 Plot", settings, id), Plotwright::StatusOk);
    EXPECT_FALSE(id.isNull());
    EXPECT_EQ(settings->objectId(), id);
    EXPECT_EQ(settings->database(), &db);
    EXPECT_EQ(settings->ownerId(), dictionaryId);
    EXPECT_TRUE(settings->isWriteEnabled());
    settings->close();
    EXPECT_EQ(dictionary->numEntries(), 1u);
}

TEST_F(PwDbDictionaryFixture, KeysAreFoundInAnyCaseAndKeptAsGiven) {
    const PwDbObjectId id = file(u"Sheet Setup");
    PwDbObjectId found;
    ASSERT_EQ(dictionary->getAt(u"SHEET SETUP", found), Plotwright::StatusOk);
    EXPECT_EQ(found, id);
    EXPECT_EQ(dictionary->getAt(u"Sheet  Setup", found), Plotwright::StatusKeyNotFound);
    EXPECT_TRUE(found.isNull());
    EXPECT_EQ(dictionary->getAt(nullptr, found), Plotwright::StatusInvalidKey);
    EXPECT_EQ(dictionary->getAt(u"", found), Plotwright::StatusInvalidKey);
    PwString name;
    ASSERT_EQ(dictionary->nameAt(id, name), Plotwright::StatusOk);
    EXPECT_EQ(name, u"Sheet Setup");
    EXPECT_TRUE(dictionary->has(u"sheet setup"));
    EXPECT_TRUE(dictionary->has(id));
    EXPECT_FALSE(dictionary->has(u"Other"));
    EXPECT_FALSE(dictionary->has(PwDbObjectId()));

    PwDbObject* object = nullptr;
    ASSERT_EQ(dictionary->getAt(u"sheet SETUP", object, PwDb::OpenForRead), Plotwright::StatusOk);
    EXPECT_EQ(object->objectId(), id);
    EXPECT_NE(PwDbPlotSettings::cast(object), nullptr);
    object->close();
    EXPECT_EQ(dictionary->getAt(u"none", object, PwDb::OpenForRead), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(object, nullptr);
}

TEST_F(PwDbDictionaryFixture, AnyNonEmptyTextIsAKey) {
    for (const char16_t* key : {u"*Star", u"a/b\\c", u" padded ", u"x=1;y=2", u"Σχέδιο"}) {
        EXPECT_FALSE(file(key).isNull());
    }
    EXPECT_EQ(keys(),
              (std::vector<wstring>{u"*Star", u"a/b\\c", u" padded ", u"x=1;y=2", u"Σχέδιο"}));
    EXPECT_TRUE(dictionary->has(u"σχέδιο"));
    PwDbPlotSettings settings;
    PwDbObjectId id;
    EXPECT_EQ(dictionary->setAt(u"", &settings, id), Plotwright::StatusInvalidKey);
    EXPECT_EQ(dictionary->setAt(nullptr, &settings, id), Plotwright::StatusInvalidKey);
    EXPECT_TRUE(settings.objectId().isNull());
}

TEST_F(PwDbDictionaryFixture, IterationFollowsTheOrderOfFiling) {
    const PwDbObjectId z = file(u"Zulu");
    const PwDbObjectId a = file(u"alpha");
    const PwDbObjectId m = file(u"Mike");
    EXPECT_EQ(keys(), (std::vector<wstring>{u"Zulu", u"alpha", u"Mike"}));

    std::unique_ptr<PwDbDictionaryIterator> it(dictionary->newIterator());
    std::vector<PwDbObjectId> ids;
    for (; !it->atEnd(); it->advance()) {
        PwDbObjectId id;
        ASSERT_EQ(it->entryId(id), Plotwright::StatusOk);
        EXPECT_EQ(it->entryId(), id);
        PwDbObject* object = nullptr;
        ASSERT_EQ(it->getObject(object, PwDb::OpenForRead), Plotwright::StatusOk);
        EXPECT_EQ(object->objectId(), id);
        object->close();
        ids.push_back(id);
    }
    EXPECT_EQ(ids, (std::vector<PwDbObjectId>{z, a, m}));
    EXPECT_EQ(it->name(), nullptr);
    PwDbObjectId id = z;
    EXPECT_EQ(it->entryId(id), Plotwright::StatusIteratorDone);
    EXPECT_TRUE(id.isNull());
    EXPECT_TRUE(it->entryId().isNull());
    PwDbObject* object = nullptr;
    EXPECT_EQ(it->getObject(object, PwDb::OpenForRead), Plotwright::StatusIteratorDone);
    it->advance();
    EXPECT_TRUE(it->atEnd());
}

TEST_F(PwDbDictionaryFixture, TheIteratorPassesOverErasedObjectsOnly) {
    const PwDbObjectId first = file(u"First");
    file(u"Second");
    const PwDbObjectId third = file(u"Third");
    setErased(first, true);
    setErased(third, true);
    EXPECT_EQ(keys(), (std::vector<wstring>{u"Second"}));
    // The entries themselves stay until removed.
    EXPECT_EQ(dictionary->numEntries(), 3u);
    PwDbObjectId id;
    ASSERT_EQ(dictionary->getAt(u"first", id), Plotwright::StatusOk);
    EXPECT_EQ(id, first);
    PwDbObject* object = nullptr;
    EXPECT_EQ(dictionary->getAt(u"first", object, PwDb::OpenForRead), Plotwright::StatusWasErased);
    setErased(first, false);
    EXPECT_EQ(keys(), (std::vector<wstring>{u"First", u"Second"}));
}

TEST_F(PwDbDictionaryFixture, TheIteratorSeesTheEntriesOfTheMomentItWasMade) {
    file(u"Before");
    std::unique_ptr<PwDbDictionaryIterator> it(dictionary->newIterator());
    file(u"After");
    ASSERT_FALSE(it->atEnd());
    EXPECT_EQ(wstring(it->name()), u"Before");
    it->advance();
    EXPECT_TRUE(it->atEnd());
}

TEST_F(PwDbDictionaryFixture, FilingUnderATakenKeyReplacesInPlaceAndErasesTheOld) {
    const PwDbObjectId first = file(u"One");
    const PwDbObjectId old = file(u"Two");
    file(u"Three");
    auto* replacement = new PwDbPlotSettings;
    PwDbObjectId id;
    ASSERT_EQ(dictionary->setAt(u"TWO", replacement, id), Plotwright::StatusOk);
    replacement->close();
    EXPECT_NE(id, old);
    EXPECT_TRUE(old.isErased());
    EXPECT_FALSE(first.isErased());
    EXPECT_EQ(dictionary->numEntries(), 3u);
    EXPECT_EQ(keys(), (std::vector<wstring>{u"One", u"TWO", u"Three"}));
    PwDbObjectId found;
    dictionary->getAt(u"two", found);
    EXPECT_EQ(found, id);
    PwString name;
    EXPECT_EQ(dictionary->nameAt(old, name), Plotwright::StatusKeyNotFound);
}

TEST_F(PwDbDictionaryFixture, AReplacementWaitsForReadersOfTheOldObject) {
    const PwDbObjectId old = file(u"Busy");
    PwDbObjectPointer<PwDbPlotSettings> reader(old, PwDb::OpenForRead);
    auto* replacement = new PwDbPlotSettings;
    PwDbObjectId id;
    EXPECT_EQ(dictionary->setAt(u"Busy", replacement, id), Plotwright::StatusWasOpenForRead);
    EXPECT_TRUE(replacement->objectId().isNull());
    EXPECT_FALSE(old.isErased());
    dictionary->getAt(u"Busy", id);
    EXPECT_EQ(id, old);
    reader.release();
    ASSERT_EQ(dictionary->setAt(u"Busy", replacement, id), Plotwright::StatusOk);
    replacement->close();
    EXPECT_TRUE(old.isErased());
}

TEST_F(PwDbDictionaryFixture, RefilingAnObjectUnderItsKeyOnlyChangesTheSpelling) {
    const PwDbObjectId id = file(u"key");
    PwDbObjectPointer<PwDbObject> object(id, PwDb::OpenForWrite);
    PwDbObjectId again;
    ASSERT_EQ(dictionary->setAt(u"KEY", object.object(), again), Plotwright::StatusOk);
    EXPECT_EQ(again, id);
    EXPECT_FALSE(id.isErased());
    EXPECT_EQ(keys(), (std::vector<wstring>{u"KEY"}));
    // Under a second key the object would have two owners' entries: refused.
    EXPECT_EQ(dictionary->setAt(u"other", object.object(), again),
              Plotwright::StatusAlreadyInDatabase);
    EXPECT_EQ(dictionary->numEntries(), 1u);
}

TEST_F(PwDbDictionaryFixture, SetAtRefusesWhatItCannotTake) {
    PwDbDatabase other;
    PwDbObjectId id;
    EXPECT_EQ(dictionary->setAt(u"k", nullptr, id), Plotwright::StatusNullDatabase);
    EXPECT_EQ(dictionary->setAt(u"self", dictionary, id), Plotwright::StatusInvalidInput);

    PwDbObjectPointer<PwDbObject> named(db.namedObjectsDictionaryId(), PwDb::OpenForWrite);
    EXPECT_EQ(dictionary->setAt(u"cycle", named.object(), id), Plotwright::StatusInvalidInput);
    named.release();

    PwDbObjectPointer<PwDbObject> zero(db.layerZeroId(), PwDb::OpenForWrite);
    EXPECT_EQ(dictionary->setAt(u"layer", zero.object(), id), Plotwright::StatusAlreadyInDatabase);
    EXPECT_EQ(zero->ownerId(), db.layerTableId());
    zero.release();

    auto* foreign = new PwDbPlotSettings;
    ASSERT_EQ(other.addPwDbObject(foreign), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->setAt(u"foreign", foreign, id), Plotwright::StatusWrongDatabase);
    foreign->close();

    auto* unowned = new PwDbPlotSettings;
    ASSERT_EQ(db.addPwDbObject(unowned), Plotwright::StatusOk);
    unowned->close();
    PwDbObjectPointer<PwDbObject> reader(unowned->objectId(), PwDb::OpenForRead);
    EXPECT_EQ(dictionary->setAt(u"unowned", reader.object(), id),
              Plotwright::StatusNotOpenForWrite);
    ASSERT_EQ(reader->upgradeOpen(), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->setAt(u"unowned", reader.object(), id), Plotwright::StatusOk);
    EXPECT_EQ(reader->ownerId(), dictionaryId);
    EXPECT_EQ(dictionary->numEntries(), 1u);

    ASSERT_EQ(dictionary->downgradeOpen(), Plotwright::StatusOk);
    PwDbPlotSettings late;
    EXPECT_EQ(dictionary->setAt(u"late", &late, id), Plotwright::StatusNotOpenForWrite);
    PwDbDictionary loose;
    EXPECT_EQ(loose.setAt(u"late", &late, id), Plotwright::StatusNotInDatabase);
    EXPECT_TRUE(late.objectId().isNull());
}

TEST_F(PwDbDictionaryFixture, RemoveDropsTheEntryAndFreesTheObject) {
    file(u"Keep");
    const PwDbObjectId gone = file(u"Gone");
    PwDbObjectId removed;
    ASSERT_EQ(dictionary->remove(u"GONE", removed), Plotwright::StatusOk);
    EXPECT_EQ(removed, gone);
    EXPECT_FALSE(gone.isErased());
    EXPECT_TRUE(ownerOf(gone).isNull());
    EXPECT_FALSE(dictionary->has(u"Gone"));
    EXPECT_FALSE(dictionary->has(gone));
    EXPECT_EQ(keys(), (std::vector<wstring>{u"Keep"}));
    EXPECT_EQ(dictionary->remove(u"Gone", removed), Plotwright::StatusKeyNotFound);
    EXPECT_TRUE(removed.isNull());
    EXPECT_EQ(dictionary->remove(u""), Plotwright::StatusInvalidKey);
    // The key is free again, also for the same object.
    PwDbObjectPointer<PwDbObject> object(gone, PwDb::OpenForWrite);
    PwDbObjectId id;
    EXPECT_EQ(dictionary->setAt(u"Back", object.object(), id), Plotwright::StatusOk);
    EXPECT_EQ(keys(), (std::vector<wstring>{u"Keep", u"Back"}));
}

TEST_F(PwDbDictionaryFixture, RemoveWaitsForReadersAndNeedsAWritableDictionary) {
    const PwDbObjectId busy = file(u"Busy");
    {
        PwDbObjectPointer<PwDbObject> reader(busy, PwDb::OpenForRead);
        EXPECT_EQ(dictionary->remove(u"Busy"), Plotwright::StatusWasOpenForRead);
        EXPECT_TRUE(dictionary->has(u"Busy"));
        EXPECT_EQ(reader->ownerId(), dictionaryId);
    }
    ASSERT_EQ(dictionary->downgradeOpen(), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->remove(u"Busy"), Plotwright::StatusNotOpenForWrite);
    ASSERT_EQ(dictionary->upgradeOpen(), Plotwright::StatusOk);
    EXPECT_EQ(dictionary->remove(u"Busy"), Plotwright::StatusOk);
}

TEST_F(PwDbDictionaryFixture, NameAtGivesTheKeyOfAnId) {
    const PwDbObjectId id = file(u"Model Sheet");
    PwString name;
    ASSERT_EQ(dictionary->nameAt(id, name), Plotwright::StatusOk);
    EXPECT_EQ(name, u"Model Sheet");
    EXPECT_EQ(dictionary->nameAt(PwDbObjectId(), name), Plotwright::StatusNullObjectId);
    EXPECT_EQ(dictionary->nameAt(db.layerZeroId(), name), Plotwright::StatusKeyNotFound);
}

TEST_F(PwDbDictionaryFixture, SetNameRenamesInPlace) {
    file(u"A");
    const PwDbObjectId b = file(u"B");
    file(u"C");
    EXPECT_TRUE(dictionary->setName(u"b", u"Bravo"));
    EXPECT_EQ(keys(), (std::vector<wstring>{u"A", u"Bravo", u"C"}));
    PwDbObjectId id;
    EXPECT_EQ(dictionary->getAt(u"B", id), Plotwright::StatusKeyNotFound);
    ASSERT_EQ(dictionary->getAt(u"BRAVO", id), Plotwright::StatusOk);
    EXPECT_EQ(id, b);
    EXPECT_FALSE(dictionary->setName(u"Bravo", u"c"));
    EXPECT_FALSE(dictionary->setName(u"Missing", u"D"));
    EXPECT_FALSE(dictionary->setName(u"Bravo", u""));
    EXPECT_FALSE(dictionary->setName(nullptr, u"D"));
    EXPECT_TRUE(dictionary->setName(u"bravo", u"BRAVO"));
    EXPECT_EQ(keys(), (std::vector<wstring>{u"A", u"BRAVO", u"C"}));
    ASSERT_EQ(dictionary->downgradeOpen(), Plotwright::StatusOk);
    EXPECT_FALSE(dictionary->setName(u"A", u"Alpha"));
    EXPECT_EQ(keys(), (std::vector<wstring>{u"A", u"BRAVO", u"C"}));
}

TEST_F(PwDbDictionaryFixture, RoundTripsItsEntriesThroughAFiler) {
    const PwDbObjectId x = file(u"X-ray");
    const PwDbObjectId y = file(u"yankee");
    PwDbMemoryFiler filer(&db);
    ASSERT_EQ(dictionary->plwOutFields(&filer), Plotwright::StatusOk);
    std::unique_ptr<PwRxObject> made(PwDbDictionary::desc()->create());
    auto* copy = PwDbDictionary::cast(made.get());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->plwInFields(&filer), Plotwright::StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);

    std::unique_ptr<PwDbObject> cloned(dictionary->clone());
    auto* twin = PwDbDictionary::cast(cloned.get());
    ASSERT_NE(twin, nullptr);
    for (const PwDbDictionary* read : {copy, twin}) {
        EXPECT_EQ(read->ownerId(), db.namedObjectsDictionaryId());
        EXPECT_EQ(read->numEntries(), 2u);
        std::unique_ptr<PwDbDictionaryIterator> it(read->newIterator());
        ASSERT_FALSE(it->atEnd());
        EXPECT_EQ(wstring(it->name()), u"X-ray");
        EXPECT_EQ(it->entryId(), x);
        it->advance();
        ASSERT_FALSE(it->atEnd());
        EXPECT_EQ(wstring(it->name()), u"yankee");
        EXPECT_EQ(it->entryId(), y);
        PwDbObjectId id;
        EXPECT_EQ(read->getAt(u"YANKEE", id), Plotwright::StatusOk);
        EXPECT_EQ(id, y);
    }
}

TEST(PwDbDictionary, DamagedDataIsRefused) {
    PwDbDatabase db;
    PwDbMemoryFiler twice(&db);
    twice.writeObjectId(PwDbObjectId());
    twice.writeInt32(0);  // no persistent reactors
    twice.writeInt32(2);
    twice.writeString(u"Same");
    twice.writeObjectId(db.layerZeroId());
    twice.writeString(u"SAME");
    twice.writeObjectId(db.modelSpaceId());
    PwDbDictionary dictionary;
    EXPECT_EQ(dictionary.plwInFields(&twice), Plotwright::StatusFilerError);
    EXPECT_EQ(dictionary.numEntries(), 0u);

    PwDbMemoryFiler empty(&db);
    empty.writeObjectId(PwDbObjectId());
    empty.writeInt32(0);  // no persistent reactors
    empty.writeInt32(1);
    empty.writeString(u"");
    empty.writeObjectId(db.layerZeroId());
    EXPECT_EQ(dictionary.plwInFields(&empty), Plotwright::StatusFilerError);

    PwDbMemoryFiler negative(&db);
    negative.writeObjectId(PwDbObjectId());
    negative.writeInt32(0);  // no persistent reactors
    negative.writeInt32(-1);
    EXPECT_EQ(dictionary.plwInFields(&negative), Plotwright::StatusFilerError);

    PwDbMemoryFiler shortened(&db);
    shortened.writeObjectId(PwDbObjectId());
    shortened.writeInt32(0);  // no persistent reactors
    shortened.writeInt32(4);
    shortened.writeString(u"Only");
    EXPECT_EQ(dictionary.plwInFields(&shortened), Plotwright::StatusFilerError);
    EXPECT_EQ(dictionary.numEntries(), 0u);
}

}  // namespace
