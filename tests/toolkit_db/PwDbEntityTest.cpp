// The entity base: opening any kind of entity through the entity form, layers and colours.
#include <lodeqdb/toolkit/db/PwDbEntity.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <iterator>
#include <limits>
#include <memory>
#include <variant>

#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbPolyline.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>

#include "PwDbEntityTestSupport.h"

namespace {

using Plotwright::StatusNotThatKindOfClass;
using namespace pwdbtest;

// A drawing with a line in its model space, for the layer and colour tests.
class PwDbEntityInDrawing : public testing::Test {
  protected:
    void SetUp() override {
        lineId = appendToModelSpace(database, new PwDbLine);
        ASSERT_FALSE(lineId.isNull());
    }

    PwDbDatabase database;
    PwDbObjectId lineId;
};

TEST(PwDbEntity, EveryKindOpensThroughTheEntityForm) {
    PwDbDatabase database;
    PwDbEntity* const made[] = {new PwDbLine,     new PwDbCircle, new PwDbArc,
                                new PwDbPolyline, new PwDbText,   new PwDbBlockReference};
    for (size_t i = 0; i < std::size(made); ++i) {
        PwDbEntity* const entity = made[i];
        PwRxClass* const cls = entity->runtimeClass();
        SCOPED_TRACE(testing::Message() << "entity kind " << i);
        const PwDbObjectId id = appendToModelSpace(database, entity);
        ASSERT_FALSE(id.isNull());

        PwDbEntity* opened = nullptr;
        ASSERT_EQ(pwdbOpenObject(opened, id, PwDb::OpenForRead), StatusOk);
        ASSERT_NE(opened, nullptr);
        EXPECT_EQ(opened->runtimeClass(), cls);
        EXPECT_EQ(opened->objectId(), id);
        EXPECT_EQ(opened->blockId(), database.modelSpaceId());
        EXPECT_EQ(opened->layerId(), database.clayer());
        EXPECT_EQ(opened->layerId(), database.layerZeroId());
        EXPECT_EQ(opened->colorIndex(), 256);
        EXPECT_TRUE(opened->isReadEnabled());
        EXPECT_FALSE(opened->isWriteEnabled());
        EXPECT_EQ(opened->close(), StatusOk);

        ASSERT_EQ(pwdbOpenObject(opened, id, PwDb::OpenForWrite), StatusOk);
        EXPECT_TRUE(opened->isWriteEnabled());
        EXPECT_EQ(opened->setColorIndex(4), StatusOk);
        EXPECT_EQ(opened->close(), StatusOk);
    }
}

TEST(PwDbEntity, EntityFormRefusesObjectsThatAreNoEntities) {
    PwDbDatabase database;
    PwDbEntity* entity = reinterpret_cast<PwDbEntity*>(0x1);
    EXPECT_EQ(pwdbOpenObject(entity, database.layerZeroId(), PwDb::OpenForRead),
              StatusNotThatKindOfClass);
    EXPECT_EQ(entity, nullptr);
    entity = reinterpret_cast<PwDbEntity*>(0x1);
    EXPECT_EQ(pwdbOpenObject(entity, database.modelSpaceId(), PwDb::OpenForWrite),
              StatusNotThatKindOfClass);
    EXPECT_EQ(entity, nullptr);
    EXPECT_EQ(pwdbOpenObject(entity, PwDbObjectId(), PwDb::OpenForRead),
              Plotwright::StatusNullObjectId);
}

TEST(PwDbEntity, ConcreteFormRefusesAnotherKindOfEntity) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, new PwDbLine);
    ASSERT_FALSE(id.isNull());
    PwDbCircle* circle = reinterpret_cast<PwDbCircle*>(0x1);
    EXPECT_EQ(pwdbOpenObject(circle, id, PwDb::OpenForRead), StatusNotThatKindOfClass);
    EXPECT_EQ(circle, nullptr);
    PwDbLine* line = nullptr;
    EXPECT_EQ(pwdbOpenObject(line, id, PwDb::OpenForRead), StatusOk);
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->close(), StatusOk);
}

TEST(PwDbEntity, ErasedEntityOpensOnlyWhenAskedFor) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, new PwDbCircle);
    ASSERT_FALSE(id.isNull());
    PwDbEntity* entity = nullptr;
    ASSERT_EQ(pwdbOpenObject(entity, id, PwDb::OpenForWrite), StatusOk);
    ASSERT_EQ(entity->erase(), StatusOk);
    ASSERT_EQ(entity->close(), StatusOk);
    EXPECT_EQ(pwdbOpenObject(entity, id, PwDb::OpenForRead), Plotwright::StatusWasErased);
    EXPECT_EQ(entity, nullptr);
    ASSERT_EQ(pwdbOpenObject(entity, id, PwDb::OpenForRead, true), StatusOk);
    EXPECT_TRUE(entity->isErased());
    EXPECT_EQ(entity->close(), StatusOk);
}

TEST_F(PwDbEntityInDrawing, LayerOfTheSameDrawingIsTaken) {
    PwDbEntity* entity = nullptr;
    ASSERT_EQ(pwdbOpenObject(entity, lineId, PwDb::OpenForWrite), StatusOk);
    EXPECT_EQ(entity->setLayer(database.layerZeroId()), StatusOk);
    EXPECT_EQ(entity->layerId(), database.layerZeroId());
    EXPECT_EQ(entity->close(), StatusOk);
}

TEST_F(PwDbEntityInDrawing, LayerOfAnotherDrawingIsRefused) {
    PwDbDatabase other;
    PwDbEntity* entity = nullptr;
    ASSERT_EQ(pwdbOpenObject(entity, lineId, PwDb::OpenForWrite), StatusOk);
    EXPECT_EQ(entity->setLayer(other.layerZeroId()), Plotwright::StatusWrongDatabase);
    EXPECT_EQ(entity->layerId(), database.layerZeroId());
    EXPECT_EQ(entity->close(), StatusOk);
}

TEST_F(PwDbEntityInDrawing, LayerAndColourNeedAWriteOpen) {
    PwDbEntity* entity = nullptr;
    ASSERT_EQ(pwdbOpenObject(entity, lineId, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(entity->setLayer(database.layerZeroId()), StatusNotOpenForWrite);
    EXPECT_EQ(entity->setColorIndex(1), StatusNotOpenForWrite);
    EXPECT_EQ(entity->colorIndex(), 256);
    EXPECT_EQ(entity->close(), StatusOk);
}

TEST_F(PwDbEntityInDrawing, ColourIndexRunsFromByBlockToByLayer) {
    PwDbEntity* entity = nullptr;
    ASSERT_EQ(pwdbOpenObject(entity, lineId, PwDb::OpenForWrite), StatusOk);
    for (int16_t index : {int16_t{0}, int16_t{1}, int16_t{255}, int16_t{256}, int16_t{7}}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(entity->setColorIndex(index), StatusOk);
        EXPECT_EQ(entity->colorIndex(), index);
    }
    for (int16_t index : {int16_t{-1}, int16_t{257}, std::numeric_limits<int16_t>::min(),
                          std::numeric_limits<int16_t>::max()}) {
        SCOPED_TRACE(index);
        EXPECT_EQ(entity->setColorIndex(index), StatusInvalidInput);
        EXPECT_EQ(entity->colorIndex(), 7);
    }
    EXPECT_EQ(entity->close(), StatusOk);
}

TEST_F(PwDbEntityInDrawing, LayerAndColourTravelThroughAFiler) {
    PwDbEntity* entity = nullptr;
    ASSERT_EQ(pwdbOpenObject(entity, lineId, PwDb::OpenForWrite), StatusOk);
    ASSERT_EQ(entity->setColorIndex(0), StatusOk);
    PwDbMemoryFiler filer(&database);
    ASSERT_EQ(entity->plwOutFields(&filer), StatusOk);
    EXPECT_EQ(entity->close(), StatusOk);

    PwDbLine copy;
    ASSERT_EQ(copy.plwInFields(&filer), StatusOk);
    EXPECT_EQ(copy.layerId(), database.layerZeroId());
    EXPECT_EQ(copy.blockId(), database.modelSpaceId());
    EXPECT_EQ(copy.colorIndex(), 0);
}

TEST(PwDbEntity, StoredColourOutsideTheRangeIsRefused) {
    PwDbCircle source;
    PwDbMemoryFiler full;
    ASSERT_EQ(source.plwOutFields(&full), StatusOk);
    // The colour is the last item the entity base writes.
    const size_t colour = entityItemCount(source) - 1;
    ASSERT_EQ(std::get<int32_t>(full.items().at(colour)), 256);
    for (int32_t stored : {-1, 257, 70000}) {
        SCOPED_TRACE(stored);
        PwDbMemoryFiler bad;
        copyReplacing(full, colour, PwDbMemoryFiler::Item(stored), bad);
        PwDbCircle target;
        ASSERT_EQ(target.setColorIndex(9), StatusOk);
        EXPECT_EQ(target.plwInFields(&bad), StatusFilerError);
        EXPECT_EQ(target.colorIndex(), 9);
    }
}

TEST(PwDbEntity, EntityClassIsAnObjectClassThatMakesNoObjects) {
    EXPECT_EQ(PwDbEntity::desc()->myParent(), PwDbObject::desc());
    EXPECT_EQ(pwrxFindClass(u"PwDbEntity"), PwDbEntity::desc());
    EXPECT_EQ(PwDbEntity::desc()->create(), nullptr);
}

}  // namespace
