// Polylines: the vertex list and its checks, the persistent form and its counts, the open
// protocol.
#include <lodeqdb/toolkit/db/PwDbPolyline.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <memory>
#include <variant>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include "toolkit/pal/PwHeapFaults.h"

#include "PwDbEntityTestSupport.h"

namespace {

using namespace pwdbtest;

// A closed triangle with its vertices shifted by `offset`.
std::unique_ptr<PwDbPolyline> makeTriangle(double offset) {
    auto polyline = std::make_unique<PwDbPolyline>();
    EXPECT_EQ(polyline->addVertexAt(0, PwGePoint2d(offset, offset)), StatusOk);
    EXPECT_EQ(polyline->addVertexAt(1, PwGePoint2d(offset + 4, offset)), StatusOk);
    EXPECT_EQ(polyline->addVertexAt(2, PwGePoint2d(offset, offset + 3)), StatusOk);
    EXPECT_EQ(polyline->setClosed(true), StatusOk);
    EXPECT_EQ(polyline->setElevation(offset - 0.5), StatusOk);
    return polyline;
}

std::vector<PwGePoint2d> verticesOf(const PwDbPolyline& polyline) {
    std::vector<PwGePoint2d> points;
    for (unsigned int i = 0; i < polyline.numVerts(); ++i) {
        PwGePoint2d point;
        EXPECT_EQ(polyline.getPointAt(i, point), StatusOk);
        points.push_back(point);
    }
    return points;
}

void expectSame(const PwDbPolyline& actual, const PwDbPolyline& expected) {
    expectSameEntity(actual, expected);
    EXPECT_EQ(actual.numVerts(), expected.numVerts());
    EXPECT_EQ(verticesOf(actual), verticesOf(expected));
    EXPECT_EQ(actual.isClosed(), expected.isClosed());
    EXPECT_EQ(actual.elevation(), expected.elevation());
}

class PwDbPolylineHeap : public pwdbtest::HeapFaultTest {};

TEST(PwDbPolyline, StartsEmptyOpenAndFlat) {
    PwDbPolyline polyline;
    EXPECT_EQ(polyline.numVerts(), 0u);
    EXPECT_FALSE(polyline.isClosed());
    EXPECT_EQ(polyline.elevation(), 0.0);
    PwGePoint2d point(7, 7);
    EXPECT_EQ(polyline.getPointAt(0, point), StatusInvalidInput);
    EXPECT_EQ(point, PwGePoint2d(7, 7));
}

TEST(PwDbPolyline, InsertsVerticesWhereAsked) {
    PwDbPolyline polyline;
    EXPECT_EQ(polyline.addVertexAt(0, PwGePoint2d(2, 2)), StatusOk);
    EXPECT_EQ(polyline.addVertexAt(0, PwGePoint2d(0, 0)), StatusOk);  // before the first
    EXPECT_EQ(polyline.addVertexAt(2, PwGePoint2d(4, 4)), StatusOk);  // after the last
    EXPECT_EQ(polyline.addVertexAt(1, PwGePoint2d(1, 1)), StatusOk);  // in between
    const std::vector<PwGePoint2d> expected = {{0, 0}, {1, 1}, {2, 2}, {4, 4}};
    EXPECT_EQ(verticesOf(polyline), expected);
}

TEST(PwDbPolyline, RefusesIndicesPastTheEnd) {
    const auto polyline = makeTriangle(0);
    EXPECT_EQ(polyline->addVertexAt(4, PwGePoint2d(9, 9)), StatusInvalidInput);
    EXPECT_EQ(polyline->addVertexAt(std::numeric_limits<unsigned int>::max(), PwGePoint2d()),
              StatusInvalidInput);
    EXPECT_EQ(polyline->removeVertexAt(3), StatusInvalidInput);
    PwGePoint2d point(-1, -1);
    EXPECT_EQ(polyline->getPointAt(3, point), StatusInvalidInput);
    EXPECT_EQ(point, PwGePoint2d(-1, -1));
    expectSame(*polyline, *makeTriangle(0));
}

TEST(PwDbPolyline, RefusesNonFiniteValues) {
    const auto polyline = makeTriangle(0);
    EXPECT_EQ(polyline->addVertexAt(1, PwGePoint2d(kNaN, 0)), StatusInvalidInput);
    EXPECT_EQ(polyline->addVertexAt(3, PwGePoint2d(0, -kInf)), StatusInvalidInput);
    EXPECT_EQ(polyline->setElevation(kNaN), StatusInvalidInput);
    EXPECT_EQ(polyline->setElevation(kInf), StatusInvalidInput);
    expectSame(*polyline, *makeTriangle(0));
}

TEST(PwDbPolyline, RemovesVertices) {
    const auto polyline = makeTriangle(0);
    EXPECT_EQ(polyline->removeVertexAt(1), StatusOk);
    const std::vector<PwGePoint2d> expected = {{0, 0}, {0, 3}};
    EXPECT_EQ(verticesOf(*polyline), expected);
    EXPECT_EQ(polyline->removeVertexAt(1), StatusOk);
    EXPECT_EQ(polyline->removeVertexAt(0), StatusOk);
    EXPECT_EQ(polyline->numVerts(), 0u);
    EXPECT_EQ(polyline->removeVertexAt(0), StatusInvalidInput);
}

TEST(PwDbPolyline, KeepsClosedFlagAndElevation) {
    PwDbPolyline polyline;
    EXPECT_EQ(polyline.setClosed(true), StatusOk);
    EXPECT_TRUE(polyline.isClosed());
    EXPECT_EQ(polyline.setClosed(false), StatusOk);
    EXPECT_FALSE(polyline.isClosed());
    EXPECT_EQ(polyline.setElevation(-12.25), StatusOk);
    EXPECT_EQ(polyline.elevation(), -12.25);
}

TEST(PwDbPolyline, HoldsManyVerticesInOrder) {
    PwDbPolyline polyline;
    constexpr unsigned int kCount = 1000;
    for (unsigned int i = 0; i < kCount; ++i) {
        ASSERT_EQ(polyline.addVertexAt(i, PwGePoint2d(i, -static_cast<double>(i))), StatusOk);
    }
    ASSERT_EQ(polyline.numVerts(), kCount);
    for (unsigned int i = 0; i < kCount; i += 37) {
        PwGePoint2d point;
        ASSERT_EQ(polyline.getPointAt(i, point), StatusOk);
        EXPECT_EQ(point, PwGePoint2d(i, -static_cast<double>(i)));
    }
}

TEST_F(PwDbPolylineHeap, VerticesSurviveAFailedGrowth) {
    PwDbPolyline polyline;
    ASSERT_EQ(polyline.addVertexAt(0, PwGePoint2d(0, 0)), StatusOk);
    // Every further vertex is added with the next heap block refused, until one needs it.
    Plotwright::ErrorStatus status = StatusOk;
    while (status == StatusOk && polyline.numVerts() < 64) {
        const unsigned int next = polyline.numVerts();
        pwHeapFailAfter(0);
        status = polyline.addVertexAt(next, PwGePoint2d(next, next));
        pwHeapFailReset();
    }
    ASSERT_EQ(status, Plotwright::StatusOutOfMemory);
    const unsigned int kept = polyline.numVerts();
    EXPECT_GT(kept, 1u);
    for (unsigned int i = 0; i < kept; ++i) {
        PwGePoint2d point;
        ASSERT_EQ(polyline.getPointAt(i, point), StatusOk);
        EXPECT_EQ(point, PwGePoint2d(i, i));
    }
    EXPECT_EQ(polyline.addVertexAt(kept, PwGePoint2d(1, 2)), StatusOk);
    EXPECT_EQ(polyline.numVerts(), kept + 1);
}

TEST(PwDbPolyline, ClosedPolylineRefusesChangesUntilOpenedForWrite) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, makeTriangle(0).release());
    ASSERT_FALSE(id.isNull());
    PwDbPolyline* polyline = nullptr;
    ASSERT_EQ(pwdbOpenObject(polyline, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(polyline->addVertexAt(0, PwGePoint2d(5, 5)), StatusNotOpenForWrite);
    EXPECT_EQ(polyline->removeVertexAt(0), StatusNotOpenForWrite);
    EXPECT_EQ(polyline->setClosed(false), StatusNotOpenForWrite);
    EXPECT_EQ(polyline->setElevation(3.0), StatusNotOpenForWrite);
    EXPECT_EQ(polyline->numVerts(), 3u);
    EXPECT_TRUE(polyline->isClosed());
    EXPECT_EQ(polyline->elevation(), -0.5);
    PwGePoint2d point;
    EXPECT_EQ(polyline->getPointAt(1, point), StatusOk) << "reading needs no write open";
    EXPECT_EQ(point, PwGePoint2d(4, 0));
    EXPECT_EQ(polyline->close(), StatusOk);
}

TEST(PwDbPolyline, RoundTripsThroughAFiler) {
    PwDbDatabase database;
    expectRoundTripInDrawing(database, makeTriangle(2), 42, expectSame);
}

TEST(PwDbPolyline, ReadingReplacesEveryVertex) {
    PwDbMemoryFiler filer;
    ASSERT_EQ(makeTriangle(1)->plwOutFields(&filer), StatusOk);
    PwDbPolyline target;
    for (unsigned int i = 0; i < 10; ++i) ASSERT_EQ(target.addVertexAt(i, {-1, -1}), StatusOk);
    ASSERT_EQ(target.plwInFields(&filer), StatusOk);
    expectSame(target, *makeTriangle(1));
}

TEST(PwDbPolyline, EmptyPolylineRoundTrips) {
    PwDbPolyline empty;
    PwDbMemoryFiler filer;
    ASSERT_EQ(empty.plwOutFields(&filer), StatusOk);
    const auto target = makeTriangle(0);
    ASSERT_EQ(target->plwInFields(&filer), StatusOk);
    expectSame(*target, empty);
}

TEST(PwDbPolyline, ShortenedDataIsRefused) {
    expectEveryShortenedFormRefused(
        *makeTriangle(0), [] { return makeTriangle(100); }, expectSame);
}

TEST_F(PwDbPolylineHeap, StoredCountsOutsideTheLimitAreRefusedBeforeAnyBlockIsTaken) {
    const auto source = makeTriangle(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    const size_t countIndex = entityItemCount(PwDbPolyline());
    ASSERT_EQ(std::get<int32_t>(full.items().at(countIndex)), 3);
    const int32_t counts[] = {-1, std::numeric_limits<int32_t>::min(),
                              static_cast<int32_t>(PwDbPolyline::kMaxVertices) + 1,
                              std::numeric_limits<int32_t>::max()};
    for (int32_t count : counts) {
        SCOPED_TRACE(count);
        PwDbMemoryFiler bad;
        copyReplacing(full, countIndex, PwDbMemoryFiler::Item(count), bad);
        const auto target = makeTriangle(100);
        pwHeapFailAfter(0);
        EXPECT_EQ(target->plwInFields(&bad), StatusFilerError);
        EXPECT_TRUE(pwHeapFailPending()) << "the count alone must be enough to refuse";
        pwHeapFailReset();
        expectSame(*target, *makeTriangle(100));
    }
}

TEST(PwDbPolyline, StoredCountMustMatchTheVertices) {
    const auto source = makeTriangle(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    const size_t countIndex = entityItemCount(PwDbPolyline());
    // The largest count allowed, but only three vertices behind it; then one too few, and
    // one too many.
    const int32_t counts[] = {static_cast<int32_t>(PwDbPolyline::kMaxVertices), 2, 4};
    for (int32_t count : counts) {
        SCOPED_TRACE(count);
        expectChangedFormRefused(
            full, countIndex, PwDbMemoryFiler::Item(count), [] { return makeTriangle(100); },
            expectSame);
    }
}

TEST(PwDbPolyline, StoredNonFiniteValuesAreRefused) {
    const auto source = makeTriangle(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    const size_t firstX = entityItemCount(PwDbPolyline()) + 1;
    const size_t elevation = full.items().size() - 1;
    for (size_t index : {firstX, firstX + 5, elevation}) {
        SCOPED_TRACE(index);
        expectChangedFormRefused(
            full, index, PwDbMemoryFiler::Item(kNaN), [] { return makeTriangle(100); }, expectSame);
    }
}

TEST(PwDbPolyline, ClassDerivesFromTheEntityAndIsFoundByName) {
    expectEntityClassFoundByName<PwDbPolyline>(u"PwDbPolyline");
}

}  // namespace
