// The open protocol, identity and erasing of database objects.
#include <lodeqdb/toolkit/db/PwDbObject.h>

#include <gtest/gtest.h>

#include "PwDbTestObjects.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

using Plotwright::StatusOk;

class OpenProtocol : public testing::Test {
  protected:
    void SetUp() override {
        auto* note = new PwTestNote;
        note->text = u"first";
        ASSERT_EQ(database.addPwDbObject(id, note), StatusOk);
        ASSERT_EQ(note->close(), StatusOk);
    }

    PwDbDatabase database;
    PwDbObjectId id;
};

TEST_F(OpenProtocol, AddedObjectComesBackOpenForWrite) {
    auto* note = new PwTestNote;
    PwDbObjectId added;
    ASSERT_EQ(database.addPwDbObject(added, note), StatusOk);
    EXPECT_TRUE(note->isWriteEnabled());
    EXPECT_EQ(note->objectId(), added);
    EXPECT_EQ(note->database(), &database);
    EXPECT_EQ(added.database(), &database);
    EXPECT_NE(added.handle(), 0u);
    EXPECT_EQ(note->close(), StatusOk);
    EXPECT_FALSE(note->isWriteEnabled());
}

TEST_F(OpenProtocol, ManyReadersGetTheSameObject) {
    PwTestNote* first = nullptr;
    PwTestNote* second = nullptr;
    ASSERT_EQ(pwdbOpenObject(first, id, PwDb::OpenForRead), StatusOk);
    ASSERT_EQ(pwdbOpenObject(second, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(first, second);
    EXPECT_EQ(first->numReaders(), 2u);
    EXPECT_EQ(first->close(), StatusOk);
    EXPECT_EQ(second->close(), StatusOk);
    EXPECT_EQ(first->close(), Plotwright::StatusNotOpenForRead);
}

TEST_F(OpenProtocol, OneWriterAndNoReader) {
    PwTestNote* writer = nullptr;
    ASSERT_EQ(pwdbOpenObject(writer, id, PwDb::OpenForWrite), StatusOk);
    PwTestNote* other = reinterpret_cast<PwTestNote*>(0x1);
    EXPECT_EQ(pwdbOpenObject(other, id, PwDb::OpenForRead), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(other, nullptr);
    other = reinterpret_cast<PwTestNote*>(0x1);
    EXPECT_EQ(pwdbOpenObject(other, id, PwDb::OpenForWrite), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(other, nullptr);
    EXPECT_EQ(writer->close(), StatusOk);
}

TEST_F(OpenProtocol, WriteRefusedWhileReadersHoldIt) {
    PwTestNote* reader = nullptr;
    ASSERT_EQ(pwdbOpenObject(reader, id, PwDb::OpenForRead), StatusOk);
    PwTestNote* writer = nullptr;
    EXPECT_EQ(pwdbOpenObject(writer, id, PwDb::OpenForWrite), Plotwright::StatusWasOpenForRead);
    EXPECT_EQ(writer, nullptr);
    reader->close();
}

TEST_F(OpenProtocol, UpgradeOnlyForTheSoleReader) {
    PwTestNote* reader = nullptr;
    PwTestNote* another = nullptr;
    ASSERT_EQ(pwdbOpenObject(reader, id, PwDb::OpenForRead), StatusOk);
    ASSERT_EQ(pwdbOpenObject(another, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(reader->upgradeOpen(), Plotwright::StatusWasOpenForRead);
    EXPECT_FALSE(reader->isWriteEnabled());
    another->close();
    EXPECT_EQ(reader->upgradeOpen(), StatusOk);
    EXPECT_TRUE(reader->isWriteEnabled());
    EXPECT_EQ(reader->upgradeOpen(), Plotwright::StatusWasOpenForWrite);
    EXPECT_EQ(reader->downgradeOpen(), StatusOk);
    EXPECT_FALSE(reader->isWriteEnabled());
    EXPECT_EQ(reader->numReaders(), 1u);
    EXPECT_EQ(reader->downgradeOpen(), Plotwright::StatusNotOpenForWrite);
    reader->close();
    EXPECT_EQ(reader->upgradeOpen(), Plotwright::StatusNotOpenForRead);
}

TEST_F(OpenProtocol, NullIdGivesDistinctStatusAndNullPointer) {
    PwDbObject* object = reinterpret_cast<PwDbObject*>(0x1);
    EXPECT_EQ(pwdbOpenObject(object, PwDbObjectId(), PwDb::OpenForRead),
              Plotwright::StatusNullObjectId);
    EXPECT_EQ(object, nullptr);
}

TEST_F(OpenProtocol, WrongClassIsRefused) {
    PwDbObject* object = nullptr;
    EXPECT_EQ(pwdbOpenObject(object, id, PwDb::OpenForRead, false, PwTestLinkedNote::desc()),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(pwdbOpenObject(object, id, PwDb::OpenForRead, false, PwDbObject::desc()), StatusOk);
    object->close();
    PwTestLinkedNote* linked = nullptr;
    EXPECT_EQ(pwdbOpenObject(linked, id, PwDb::OpenForRead), Plotwright::StatusNotThatKindOfClass);
}

TEST_F(OpenProtocol, ClassFunctionFormAcceptsBaseClasses) {
    PwDbObject* object = nullptr;
    EXPECT_EQ(pwdbOpenObject<PwDbObject>(object, id, &PwDbObject::desc, PwDb::OpenForRead),
              StatusOk);
    ASSERT_NE(object, nullptr);
    EXPECT_EQ(object->runtimeClass(), PwTestNote::desc());
    object->close();
}

TEST_F(OpenProtocol, ErasedObjectsOpenOnlyWhenAskedFor) {
    PwTestNote* note = nullptr;
    ASSERT_EQ(pwdbOpenObject(note, id, PwDb::OpenForWrite), StatusOk);
    EXPECT_EQ(note->erase(), StatusOk);
    note->close();
    EXPECT_TRUE(id.isErased());
    EXPECT_TRUE(id.isEffectivelyErased());
    EXPECT_EQ(pwdbOpenObject(note, id, PwDb::OpenForRead), Plotwright::StatusWasErased);
    EXPECT_EQ(note, nullptr);
    ASSERT_EQ(pwdbOpenObject(note, id, PwDb::OpenForWrite, true), StatusOk);
    EXPECT_EQ(note->text, u"first");
    EXPECT_EQ(note->erase(false), StatusOk);
    note->close();
    EXPECT_FALSE(id.isErased());
}

TEST_F(OpenProtocol, ErasingNeedsWriteAccess) {
    PwTestNote* note = nullptr;
    ASSERT_EQ(pwdbOpenObject(note, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(note->erase(), Plotwright::StatusNotOpenForWrite);
    note->close();
}

TEST_F(OpenProtocol, OwnerErasedMakesObjectEffectivelyErased) {
    auto* child = new PwTestNote;
    PwDbObjectId childId;
    ASSERT_EQ(database.addPwDbObject(childId, child), StatusOk);
    ASSERT_EQ(child->setOwnerId(id), StatusOk);
    child->close();
    EXPECT_FALSE(childId.isEffectivelyErased());
    PwTestNote* owner = nullptr;
    ASSERT_EQ(pwdbOpenObject(owner, id, PwDb::OpenForWrite), StatusOk);
    owner->erase();
    owner->close();
    EXPECT_FALSE(childId.isErased());
    EXPECT_TRUE(childId.isEffectivelyErased());
}

TEST(ObjectOutsideDatabase, IsDeletedByItsHolderNotClosed) {
    auto* note = new PwTestNote;
    EXPECT_TRUE(note->objectId().isNull());
    EXPECT_EQ(note->database(), nullptr);
    EXPECT_TRUE(note->isWriteEnabled());
    EXPECT_EQ(note->close(), Plotwright::StatusNotInDatabase);
    pwdbReleaseObject(note);  // deletes: LeakSanitizer would report it otherwise
    pwdbReleaseObject(nullptr);
}

TEST(ObjectIds, HandlesAreUniqueAndNeverReused) {
    PwDbDatabase database;
    PwDbHandle last = 0;
    for (int i = 0; i < 100; ++i) {
        auto* note = new PwTestNote;
        PwDbObjectId id;
        ASSERT_EQ(database.addPwDbObject(id, note), StatusOk);
        EXPECT_GT(id.handle(), last);
        last = id.handle();
        note->erase();
        note->close();
    }
    EXPECT_EQ(database.handseed(), last + 1);
    EXPECT_EQ(database.getPwDbObjectId(last).handle(), last);
    EXPECT_TRUE(database.getPwDbObjectId(last + 1000).isNull());
}

TEST(ObjectIds, NullIdIsZeroAndShared) {
    EXPECT_TRUE(PwDbObjectId::kNull.isNull());
    EXPECT_EQ(PwDbObjectId::kNull.asNumber(), 0u);
    EXPECT_EQ(PwDbObjectId::kNull.database(), nullptr);
    EXPECT_EQ(PwDbObjectId::kNull.handle(), 0u);
    EXPECT_FALSE(PwDbObjectId::kNull.isErased());
    EXPECT_TRUE(PwDbObjectId::kNull.isEffectivelyErased());
    EXPECT_EQ(PwDbObjectId(), PwDbObjectId::kNull);
}

TEST(ObjectIds, AddingTwiceIsRefused) {
    PwDbDatabase first;
    PwDbDatabase second;
    auto* note = new PwTestNote;
    ASSERT_EQ(first.addPwDbObject(note), StatusOk);
    EXPECT_EQ(second.addPwDbObject(note), Plotwright::StatusAlreadyInDatabase);
    EXPECT_EQ(first.addPwDbObject(nullptr), Plotwright::StatusNullDatabase);
    note->close();
}

TEST(ObjectIds, HandleGivenByAReaderIsKept) {
    PwDbDatabase database;
    const PwDbObjectId forward = database.getPwDbObjectId(5000, true);
    EXPECT_FALSE(forward.isValid());
    auto* note = new PwTestNote;
    ASSERT_EQ(database.addPwDbObjectWithHandle(note, 5000), StatusOk);
    EXPECT_EQ(note->objectId(), forward);
    EXPECT_TRUE(forward.isValid());
    note->close();
    auto* clash = new PwTestNote;
    EXPECT_EQ(database.addPwDbObjectWithHandle(clash, 5000), Plotwright::StatusDuplicateKey);
    EXPECT_EQ(database.addPwDbObjectWithHandle(clash, 0), Plotwright::StatusInvalidInput);
    delete clash;
    EXPECT_GT(database.handseed(), 5000u);
}

TEST(ObjectClone, CopiesThePersistentData) {
    PwDbDatabase database;
    auto* note = new PwTestLinkedNote;
    note->text = u"Rev B";
    note->number = 7;
    note->link = database.layerZeroId();
    ASSERT_EQ(database.addPwDbObject(note), StatusOk);
    PwDbObject* copy = note->clone();
    ASSERT_NE(copy, nullptr);
    auto* linked = PwTestLinkedNote::cast(copy);
    ASSERT_NE(linked, nullptr);
    EXPECT_EQ(linked->text, u"Rev B");
    EXPECT_EQ(linked->number, 7);
    EXPECT_EQ(linked->link, database.layerZeroId());
    EXPECT_TRUE(linked->objectId().isNull());
    note->close();
    pwdbReleaseObject(copy);
}

}  // namespace
