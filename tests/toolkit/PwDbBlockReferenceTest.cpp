// Block placements: which block, where, how scaled and turned; their checks, the persistent
// form and the open protocol.
#include "toolkit/db/PwDbBlockReference.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "toolkit/db/PwDbBlockTable.h"
#include "toolkit/db/PwDbDatabase.h"
#include "toolkit/db/PwDbMemoryFiler.h"
#include "toolkit/rx/PwRxClass.h"

namespace {

using Plotwright::StatusFilerError;
using Plotwright::StatusInvalidInput;
using Plotwright::StatusNotOpenForWrite;
using Plotwright::StatusOk;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

// Adds `entity` to the model space and closes it; on failure the entity is deleted and the
// id is null.
PwDbObjectId appendToModelSpace(PwDbDatabase& database, PwDbEntity* entity) {
    PwDbObjectId id;
    PwDbBlockTableRecord* space = nullptr;
    if (pwdbOpenObject(space, database.modelSpaceId(), PwDb::OpenForWrite) != StatusOk) {
        delete entity;
        return id;
    }
    if (space->appendPwDbEntity(id, entity) == StatusOk) {
        entity->close();
    } else {
        delete entity;
        id = PwDbObjectId();
    }
    space->close();
    return id;
}

void copyLeadingItems(const PwDbMemoryFiler& source, size_t count, PwDbMemoryFiler& target) {
    for (size_t i = 0; i < count && i < source.items().size(); ++i) {
        target.append(source.items()[i]);
    }
}

// A placement of `block` (may be null) whose numbers are shifted by `offset`.
std::unique_ptr<PwDbBlockReference> makeInsert(double offset, PwDbObjectId block = {}) {
    auto insert = std::make_unique<PwDbBlockReference>();
    EXPECT_EQ(insert->setReferencedBlock(block), StatusOk);
    EXPECT_EQ(insert->setInsertionPoint(PwGePoint3d(100 + offset, 20, offset)), StatusOk);
    EXPECT_EQ(insert->setScale3d(PwGeScale3d(2 + offset, -1, 0.5)), StatusOk);
    EXPECT_EQ(insert->setRotationAngle(0.5 + offset), StatusOk);
    return insert;
}

void expectSame(const PwDbBlockReference& actual, const PwDbBlockReference& expected) {
    EXPECT_EQ(actual.ownerId(), expected.ownerId());
    EXPECT_EQ(actual.layerId(), expected.layerId());
    EXPECT_EQ(actual.colorIndex(), expected.colorIndex());
    EXPECT_EQ(actual.blockTableRecord(), expected.blockTableRecord());
    EXPECT_EQ(actual.position(), expected.position());
    EXPECT_EQ(actual.scaleFactors(), expected.scaleFactors());
    EXPECT_EQ(actual.rotation(), expected.rotation());
}

TEST(PwDbBlockReference, StartsUnplacedAtTheOriginUnscaled) {
    PwDbBlockReference insert;
    EXPECT_TRUE(insert.blockTableRecord().isNull());
    EXPECT_EQ(insert.position(), PwGePoint3d());
    EXPECT_EQ(insert.scaleFactors(), PwGeScale3d(1, 1, 1));
    EXPECT_EQ(insert.rotation(), 0.0);
}

TEST(PwDbBlockReference, KeepsItsValues) {
    PwDbDatabase database;
    PwDbBlockReference insert;
    EXPECT_EQ(insert.setReferencedBlock(database.paperSpaceId()), StatusOk);
    EXPECT_EQ(insert.setInsertionPoint(PwGePoint3d(-3, 4, 5)), StatusOk);
    EXPECT_EQ(insert.setScale3d(PwGeScale3d(-1, 2, 1e-9)), StatusOk);
    EXPECT_EQ(insert.setRotationAngle(-20.0), StatusOk);
    EXPECT_EQ(insert.blockTableRecord(), database.paperSpaceId());
    EXPECT_EQ(insert.position(), PwGePoint3d(-3, 4, 5));
    EXPECT_EQ(insert.scaleFactors(), PwGeScale3d(-1, 2, 1e-9));
    EXPECT_EQ(insert.rotation(), -20.0);
    EXPECT_EQ(insert.setBlockTableRecord(database.modelSpaceId()), StatusOk);
    EXPECT_EQ(insert.blockTableRecord(), database.modelSpaceId());
}

TEST(PwDbBlockReference, RefusesZeroAndNonFiniteScalesAndAngles) {
    const auto insert = makeInsert(0);
    const PwGeScale3d refused[] = {{0, 1, 1},    {1, 0, 1},    {1, 1, 0},    {-0.0, 1, 1},
                                   {kNaN, 1, 1}, {1, kInf, 1}, {1, 1, -kInf}};
    for (const PwGeScale3d& scale : refused) {
        SCOPED_TRACE(testing::Message() << scale.sx << ' ' << scale.sy << ' ' << scale.sz);
        EXPECT_EQ(insert->setScale3d(scale), StatusInvalidInput);
    }
    EXPECT_EQ(insert->setRotationAngle(kNaN), StatusInvalidInput);
    EXPECT_EQ(insert->setRotationAngle(kInf), StatusInvalidInput);
    EXPECT_EQ(insert->setRotationAngle(-kInf), StatusInvalidInput);
    expectSame(*insert, *makeInsert(0));
}

TEST(PwDbBlockReference, RefusesABlockOfAnotherDrawing) {
    PwDbDatabase database;
    PwDbDatabase other;
    const PwDbObjectId id = appendToModelSpace(database, makeInsert(0).release());
    ASSERT_FALSE(id.isNull());
    PwDbBlockReference* insert = nullptr;
    ASSERT_EQ(pwdbOpenObject(insert, id, PwDb::OpenForWrite), StatusOk);
    EXPECT_EQ(insert->setReferencedBlock(other.paperSpaceId()), Plotwright::StatusWrongDatabase);
    EXPECT_TRUE(insert->blockTableRecord().isNull());
    EXPECT_EQ(insert->setReferencedBlock(database.paperSpaceId()), StatusOk);
    EXPECT_EQ(insert->blockTableRecord(), database.paperSpaceId());
    EXPECT_EQ(insert->close(), StatusOk);
}

TEST(PwDbBlockReference, ClosedPlacementRefusesChangesUntilOpenedForWrite) {
    PwDbDatabase database;
    const PwDbObjectId id =
        appendToModelSpace(database, makeInsert(0, database.paperSpaceId()).release());
    ASSERT_FALSE(id.isNull());
    PwDbBlockReference* insert = nullptr;
    ASSERT_EQ(pwdbOpenObject(insert, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(insert->setReferencedBlock(database.modelSpaceId()), StatusNotOpenForWrite);
    EXPECT_EQ(insert->setBlockTableRecord(PwDbObjectId()), StatusNotOpenForWrite);
    EXPECT_EQ(insert->setInsertionPoint(PwGePoint3d(1, 1, 1)), StatusNotOpenForWrite);
    EXPECT_EQ(insert->setScale3d(PwGeScale3d(3, 3, 3)), StatusNotOpenForWrite);
    EXPECT_EQ(insert->setRotationAngle(1.0), StatusNotOpenForWrite);
    EXPECT_EQ(insert->blockTableRecord(), database.paperSpaceId());
    EXPECT_EQ(insert->position(), PwGePoint3d(100, 20, 0));
    EXPECT_EQ(insert->scaleFactors(), PwGeScale3d(2, -1, 0.5));
    EXPECT_EQ(insert->rotation(), 0.5);
    EXPECT_EQ(insert->upgradeOpen(), StatusOk);
    EXPECT_EQ(insert->setRotationAngle(1.0), StatusOk);
    EXPECT_EQ(insert->rotation(), 1.0);
    EXPECT_EQ(insert->close(), StatusOk);
}

TEST(PwDbBlockReference, RoundTripsThroughAFiler) {
    PwDbDatabase database;
    auto made = makeInsert(1, database.paperSpaceId());
    ASSERT_EQ(made->setColorIndex(12), StatusOk);
    const PwDbObjectId id = appendToModelSpace(database, made.release());
    PwDbBlockReference* insert = nullptr;
    ASSERT_EQ(pwdbOpenObject(insert, id, PwDb::OpenForRead), StatusOk);

    PwDbMemoryFiler filer(&database);
    ASSERT_EQ(insert->plwOutFields(&filer), StatusOk);
    std::unique_ptr<PwDbBlockReference> read(
        static_cast<PwDbBlockReference*>(PwDbBlockReference::desc()->create()));
    ASSERT_NE(read, nullptr);
    ASSERT_EQ(read->plwInFields(&filer), StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);
    expectSame(*read, *insert);
    EXPECT_EQ(read->blockTableRecord(), database.paperSpaceId());

    std::unique_ptr<PwDbObject> copy(insert->clone());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->runtimeClass(), PwDbBlockReference::desc());
    expectSame(*static_cast<PwDbBlockReference*>(copy.get()), *insert);
    EXPECT_EQ(insert->close(), StatusOk);
}

TEST(PwDbBlockReference, ShortenedDataIsRefused) {
    const auto source = makeInsert(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    for (size_t keep = 0; keep < full.items().size(); ++keep) {
        SCOPED_TRACE(keep);
        PwDbMemoryFiler shortened;
        copyLeadingItems(full, keep, shortened);
        const auto target = makeInsert(100);
        EXPECT_EQ(target->plwInFields(&shortened), StatusFilerError);
        expectSame(*target, *makeInsert(100));
    }
}

TEST(PwDbBlockReference, ClassDerivesFromTheEntityAndIsFoundByName) {
    PwDbBlockReference insert;
    EXPECT_EQ(insert.runtimeClass(), PwDbBlockReference::desc());
    EXPECT_EQ(wstring(insert.runtimeClass()->name()), u"PwDbBlockReference");
    EXPECT_TRUE(insert.isKindOf(PwDbEntity::desc()));
    EXPECT_TRUE(insert.isKindOf(PwDbObject::desc()));
    EXPECT_EQ(PwDbBlockReference::desc()->myParent(), PwDbEntity::desc());
    EXPECT_EQ(pwrxFindClass(u"PwDbBlockReference"), PwDbBlockReference::desc());
    std::unique_ptr<PwRxObject> made(pwrxFindClass(u"PwDbBlockReference")->create());
    ASSERT_NE(made, nullptr);
    EXPECT_NE(PwDbBlockReference::cast(made.get()), nullptr);
}

}  // namespace
