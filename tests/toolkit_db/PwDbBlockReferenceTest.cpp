// Block placements: which block, where, how scaled and turned; their checks, the persistent
// form and the open protocol.
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>

#include <gtest/gtest.h>

#include <memory>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>

#include "PwDbEntityTestSupport.h"

namespace {

using namespace pwdbtest;

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
    expectSameEntity(actual, expected);
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
    // The block id read back (and copied) is the paper space of the same drawing.
    expectRoundTripInDrawing(
        database, makeInsert(1, database.paperSpaceId()), 12,
        [&](const PwDbBlockReference& actual, const PwDbBlockReference& expected) {
            expectSame(actual, expected);
            EXPECT_EQ(actual.blockTableRecord(), database.paperSpaceId());
        });
}

TEST(PwDbBlockReference, ShortenedDataIsRefused) {
    expectEveryShortenedFormRefused(
        *makeInsert(0), [] { return makeInsert(100); }, expectSame);
}

TEST(PwDbBlockReference, ClassDerivesFromTheEntityAndIsFoundByName) {
    expectEntityClassFoundByName<PwDbBlockReference>(u"PwDbBlockReference");
}

}  // namespace
