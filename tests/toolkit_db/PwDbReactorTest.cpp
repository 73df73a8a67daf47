// Persistent reactors: objects of a drawing recorded on an object that they depend on.
#include <gtest/gtest.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

namespace {

using Plotwright::StatusOk;

class PersistentReactors : public testing::Test {
  protected:
    void SetUp() override {
        drawing = PwDbAuthoring::createDrawing();
        const PwDbObjectId space = drawing->modelSpaceId();
        ASSERT_EQ(PwDbAuthoring::addLine(*drawing, space, {0, 0, 0}, {1, 0, 0}, {}, &target),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addLine(*drawing, space, {0, 1, 0}, {1, 1, 0}, {}, &first),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addLine(*drawing, space, {0, 2, 0}, {1, 2, 0}, {}, &second),
                  StatusOk);
    }

    std::unique_ptr<PwDbDatabase> drawing;
    PwDbObjectId target, first, second;
};

TEST_F(PersistentReactors, AnObjectWithoutReactorsHasNoList) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, target, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(object->reactors(), nullptr);
    object->close();
}

TEST_F(PersistentReactors, AddedReactorsComeBackInOrderAndOnce) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, target, PwDb::OpenForWrite), StatusOk);
    EXPECT_EQ(object->addPersistentReactor(first), StatusOk);
    EXPECT_EQ(object->addPersistentReactor(second), StatusOk);
    EXPECT_EQ(object->addPersistentReactor(first), StatusOk);
    const PwArray<void*>* reactors = object->reactors();
    ASSERT_NE(reactors, nullptr);
    ASSERT_EQ(reactors->length(), 2u);
    EXPECT_EQ(pwdbPersistentReactorObjectId(reactors->at(0)), first);
    EXPECT_EQ(pwdbPersistentReactorObjectId(reactors->at(1)), second);
    EXPECT_TRUE(object->hasPersistentReactor(second));
    object->close();
}

TEST_F(PersistentReactors, RemovingTheLastReactorLeavesNoList) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, target, PwDb::OpenForWrite), StatusOk);
    ASSERT_EQ(object->addPersistentReactor(first), StatusOk);
    EXPECT_EQ(object->removePersistentReactor(second), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(object->removePersistentReactor(first), StatusOk);
    EXPECT_EQ(object->reactors(), nullptr);
    EXPECT_FALSE(object->hasPersistentReactor(first));
    object->close();
}

TEST_F(PersistentReactors, ChangesNeedAWriteOpenAndAnIdOfTheSameDrawing) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, target, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(object->addPersistentReactor(first), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(object->removePersistentReactor(first), Plotwright::StatusNotOpenForWrite);
    ASSERT_EQ(object->upgradeOpen(), StatusOk);
    EXPECT_EQ(object->addPersistentReactor(PwDbObjectId()), Plotwright::StatusNullObjectId);
    auto other = PwDbAuthoring::createDrawing();
    EXPECT_EQ(object->addPersistentReactor(other->layerZeroId()), Plotwright::StatusWrongDatabase);
    EXPECT_EQ(object->reactors(), nullptr);
    object->close();
}

TEST_F(PersistentReactors, EntriesThatAreNoPersistentReactorGiveTheNullId) {
    EXPECT_TRUE(pwdbPersistentReactorObjectId(nullptr).isNull());
    int transient = 0;
    EXPECT_TRUE(pwdbPersistentReactorObjectId(&transient).isNull());
}

TEST_F(PersistentReactors, TheyArePartOfTheObjectsData) {
    PwDbObject* object = nullptr;
    ASSERT_EQ(pwdbOpenObject(object, target, PwDb::OpenForWrite), StatusOk);
    ASSERT_EQ(object->addPersistentReactor(second), StatusOk);
    ASSERT_EQ(object->addPersistentReactor(first), StatusOk);
    PwDbObject* copy = object->clone();
    object->close();
    ASSERT_NE(copy, nullptr);
    ASSERT_NE(copy->reactors(), nullptr);
    ASSERT_EQ(copy->reactors()->length(), 2u);
    EXPECT_EQ(pwdbPersistentReactorObjectId(copy->reactors()->at(0)), second);
    EXPECT_EQ(pwdbPersistentReactorObjectId(copy->reactors()->at(1)), first);
    delete copy;
}

TEST_F(PersistentReactors, ANegativeStoredCountIsRefused) {
    PwDbMemoryFiler filer(drawing.get());
    filer.writeObjectId(PwDbObjectId());
    filer.writeInt32(-1);
    PwDbLine line;
    EXPECT_EQ(line.plwInFields(&filer), Plotwright::StatusFilerError);
}

TEST_F(PersistentReactors, AStoredCountBeyondTheDataFailsWithoutGrowing) {
    PwDbMemoryFiler filer(drawing.get());
    filer.writeObjectId(PwDbObjectId());
    filer.writeInt32(2000000000);
    filer.writeObjectId(first);
    PwDbLine line;
    EXPECT_NE(line.plwInFields(&filer), StatusOk);
    EXPECT_EQ(line.reactors(), nullptr);
}

}  // namespace
