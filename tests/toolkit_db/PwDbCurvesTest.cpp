// Lines, circles and arcs: values and their checks, the persistent form, the open protocol.
#include <lodeqdb/toolkit/db/PwDbCurves.h>

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <utility>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>

#include "PwDbEntityTestSupport.h"

namespace {

using namespace pwdbtest;

std::unique_ptr<PwDbLine> makeLine(double offset) {
    auto line = std::make_unique<PwDbLine>();
    EXPECT_EQ(line->setStartPoint(PwGePoint3d(1 + offset, 2 + offset, 3 + offset)), StatusOk);
    EXPECT_EQ(line->setEndPoint(PwGePoint3d(-4 - offset, 5.5, offset)), StatusOk);
    return line;
}

std::unique_ptr<PwDbCircle> makeCircle(double offset) {
    auto circle = std::make_unique<PwDbCircle>();
    EXPECT_EQ(circle->setCenter(PwGePoint3d(10 + offset, -20, 0.25)), StatusOk);
    EXPECT_EQ(circle->setRadius(3.75 + offset), StatusOk);
    return circle;
}

std::unique_ptr<PwDbArc> makeArc(double offset) {
    auto arc = std::make_unique<PwDbArc>();
    EXPECT_EQ(arc->setCenter(PwGePoint3d(-1, offset, 2)), StatusOk);
    EXPECT_EQ(arc->setRadius(0.5 + offset), StatusOk);
    EXPECT_EQ(arc->setStartAngle(0.25 + offset), StatusOk);
    EXPECT_EQ(arc->setEndAngle(-2.0 - offset), StatusOk);
    return arc;
}

void expectSame(const PwDbLine& actual, const PwDbLine& expected) {
    expectSameEntity(actual, expected);
    EXPECT_EQ(actual.startPoint(), expected.startPoint());
    EXPECT_EQ(actual.endPoint(), expected.endPoint());
}

void expectSame(const PwDbCircle& actual, const PwDbCircle& expected) {
    expectSameEntity(actual, expected);
    EXPECT_EQ(actual.center(), expected.center());
    EXPECT_EQ(actual.radius(), expected.radius());
}

void expectSame(const PwDbArc& actual, const PwDbArc& expected) {
    expectSameEntity(actual, expected);
    EXPECT_EQ(actual.center(), expected.center());
    EXPECT_EQ(actual.radius(), expected.radius());
    EXPECT_EQ(actual.startAngle(), expected.startAngle());
    EXPECT_EQ(actual.endAngle(), expected.endAngle());
}

// --- PwDbLine ------------------------------------------------------------------------------

TEST(PwDbLine, StartsAtTheOrigin) {
    PwDbLine line;
    EXPECT_EQ(line.startPoint(), PwGePoint3d());
    EXPECT_EQ(line.endPoint(), PwGePoint3d());
}

TEST(PwDbLine, KeepsItsEndPoints) {
    PwDbLine line;
    EXPECT_EQ(line.setStartPoint(PwGePoint3d(1, -2, 3)), StatusOk);
    EXPECT_EQ(line.setEndPoint(PwGePoint3d(1e300, -1e-300, 0)), StatusOk);
    EXPECT_EQ(line.startPoint(), PwGePoint3d(1, -2, 3));
    EXPECT_EQ(line.endPoint(), PwGePoint3d(1e300, -1e-300, 0));
}

TEST(PwDbLine, RefusesNonFinitePoints) {
    const auto line = makeLine(0);
    const PwGePoint3d start = line->startPoint();
    const PwGePoint3d end = line->endPoint();
    EXPECT_EQ(line->setStartPoint(PwGePoint3d(kNaN, 0, 0)), StatusInvalidInput);
    EXPECT_EQ(line->setStartPoint(PwGePoint3d(0, kInf, 0)), StatusInvalidInput);
    EXPECT_EQ(line->setEndPoint(PwGePoint3d(0, 0, -kInf)), StatusInvalidInput);
    EXPECT_EQ(line->setEndPoint(PwGePoint3d(kNaN, kNaN, kNaN)), StatusInvalidInput);
    EXPECT_EQ(line->startPoint(), start);
    EXPECT_EQ(line->endPoint(), end);
}

TEST(PwDbLine, ClosedLineRefusesChangesUntilOpenedForWrite) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, makeLine(0).release());
    ASSERT_FALSE(id.isNull());
    PwDbLine* line = nullptr;
    ASSERT_EQ(pwdbOpenObject(line, id, PwDb::OpenForRead), StatusOk);
    const PwGePoint3d start = line->startPoint();
    EXPECT_EQ(line->setStartPoint(PwGePoint3d(9, 9, 9)), StatusNotOpenForWrite);
    EXPECT_EQ(line->setEndPoint(PwGePoint3d(9, 9, 9)), StatusNotOpenForWrite);
    EXPECT_EQ(line->startPoint(), start);
    EXPECT_EQ(line->upgradeOpen(), StatusOk);
    EXPECT_EQ(line->setEndPoint(PwGePoint3d(9, 9, 9)), StatusOk);
    EXPECT_EQ(line->endPoint(), PwGePoint3d(9, 9, 9));
    EXPECT_EQ(line->close(), StatusOk);
}

TEST(PwDbLine, RoundTripsThroughAFiler) {
    PwDbDatabase database;
    expectRoundTripInDrawing(database, makeLine(0), 3, expectSame);
}

TEST(PwDbLine, ShortenedDataIsRefused) {
    expectEveryShortenedFormRefused(
        *makeLine(0), [] { return makeLine(100); }, expectSame);
}

TEST(PwDbLine, StoredNonFinitePointIsRefused) {
    const auto source = makeLine(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    expectChangedFormRefused(
        full, full.items().size() - 1, kNaN, [] { return makeLine(100); }, expectSame);
}

// --- PwDbCircle ----------------------------------------------------------------------------

TEST(PwDbCircle, StartsAsAUnitCircleAtTheOrigin) {
    PwDbCircle circle;
    EXPECT_EQ(circle.center(), PwGePoint3d());
    EXPECT_EQ(circle.radius(), 1.0);
}

TEST(PwDbCircle, KeepsCenterAndRadius) {
    PwDbCircle circle;
    EXPECT_EQ(circle.setCenter(PwGePoint3d(-5, 6, 7)), StatusOk);
    EXPECT_EQ(circle.setRadius(12.5), StatusOk);
    EXPECT_EQ(circle.center(), PwGePoint3d(-5, 6, 7));
    EXPECT_EQ(circle.radius(), 12.5);
    const double tiny = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(circle.setRadius(tiny), StatusOk);
    EXPECT_EQ(circle.radius(), tiny);
}

TEST(PwDbCircle, RefusesRadiiThatAreNotPositiveAndFinite) {
    const auto circle = makeCircle(0);
    for (double radius : {0.0, -0.0, -1.0, -kInf, kInf, kNaN}) {
        SCOPED_TRACE(radius);
        EXPECT_EQ(circle->setRadius(radius), StatusInvalidInput);
        EXPECT_EQ(circle->radius(), 3.75);
    }
    EXPECT_EQ(circle->setCenter(PwGePoint3d(0, kNaN, 0)), StatusInvalidInput);
    EXPECT_EQ(circle->center(), PwGePoint3d(10, -20, 0.25));
}

TEST(PwDbCircle, ClosedCircleRefusesChangesUntilOpenedForWrite) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, makeCircle(0).release());
    ASSERT_FALSE(id.isNull());
    PwDbCircle* circle = nullptr;
    ASSERT_EQ(pwdbOpenObject(circle, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(circle->setCenter(PwGePoint3d(1, 1, 1)), StatusNotOpenForWrite);
    EXPECT_EQ(circle->setRadius(8.0), StatusNotOpenForWrite);
    EXPECT_EQ(circle->radius(), 3.75);
    EXPECT_EQ(circle->center(), PwGePoint3d(10, -20, 0.25));

    PwDbMemoryFiler filer;
    ASSERT_EQ(makeCircle(50)->plwOutFields(&filer), StatusOk);
    EXPECT_EQ(circle->plwInFields(&filer), StatusNotOpenForWrite);
    EXPECT_EQ(circle->radius(), 3.75);
    EXPECT_EQ(circle->close(), StatusOk);
}

TEST(PwDbCircle, RoundTripsThroughAFiler) {
    PwDbDatabase database;
    expectRoundTripInDrawing(database, makeCircle(0), 0, expectSame);
}

TEST(PwDbCircle, ShortenedDataIsRefused) {
    expectEveryShortenedFormRefused(
        *makeCircle(0), [] { return makeCircle(100); }, expectSame);
}

TEST(PwDbCircle, StoredRadiusMustBePositive) {
    const auto source = makeCircle(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    for (double radius : {0.0, -2.0, kInf, kNaN}) {
        SCOPED_TRACE(radius);
        PwDbMemoryFiler bad;
        copyReplacing(full, full.items().size() - 1, radius, bad);
        const auto target = makeCircle(100);
        EXPECT_EQ(target->plwInFields(&bad), StatusFilerError);
        EXPECT_EQ(target->radius(), 103.75);
    }
}

// --- PwDbArc -------------------------------------------------------------------------------

TEST(PwDbArc, StartsAsAUnitArcWithBothAnglesZero) {
    PwDbArc arc;
    EXPECT_EQ(arc.center(), PwGePoint3d());
    EXPECT_EQ(arc.radius(), 1.0);
    EXPECT_EQ(arc.startAngle(), 0.0);
    EXPECT_EQ(arc.endAngle(), 0.0);
}

TEST(PwDbArc, KeepsAnglesExactlyAsGiven) {
    PwDbArc arc;
    EXPECT_EQ(arc.setStartAngle(-7.5), StatusOk);
    EXPECT_EQ(arc.setEndAngle(12.0), StatusOk);
    EXPECT_EQ(arc.startAngle(), -7.5);
    EXPECT_EQ(arc.endAngle(), 12.0);
    EXPECT_EQ(arc.setCenter(PwGePoint3d(3, 2, 1)), StatusOk);
    EXPECT_EQ(arc.setRadius(0.125), StatusOk);
    EXPECT_EQ(arc.center(), PwGePoint3d(3, 2, 1));
    EXPECT_EQ(arc.radius(), 0.125);
}

TEST(PwDbArc, RefusesNonFiniteValuesAndBadRadii) {
    const auto arc = makeArc(0);
    for (double bad : {kNaN, kInf, -kInf}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(arc->setStartAngle(bad), StatusInvalidInput);
        EXPECT_EQ(arc->setEndAngle(bad), StatusInvalidInput);
        EXPECT_EQ(arc->setRadius(bad), StatusInvalidInput);
        EXPECT_EQ(arc->setCenter(PwGePoint3d(0, 0, bad)), StatusInvalidInput);
    }
    EXPECT_EQ(arc->setRadius(0.0), StatusInvalidInput);
    EXPECT_EQ(arc->setRadius(-0.5), StatusInvalidInput);
    expectSame(*arc, *makeArc(0));
}

TEST(PwDbArc, ClosedArcRefusesChangesUntilOpenedForWrite) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, makeArc(0).release());
    ASSERT_FALSE(id.isNull());
    PwDbArc* arc = nullptr;
    ASSERT_EQ(pwdbOpenObject(arc, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(arc->setCenter(PwGePoint3d(1, 1, 1)), StatusNotOpenForWrite);
    EXPECT_EQ(arc->setRadius(8.0), StatusNotOpenForWrite);
    EXPECT_EQ(arc->setStartAngle(1.0), StatusNotOpenForWrite);
    EXPECT_EQ(arc->setEndAngle(1.0), StatusNotOpenForWrite);
    EXPECT_EQ(arc->center(), PwGePoint3d(-1, 0, 2));
    EXPECT_EQ(arc->radius(), 0.5);
    EXPECT_EQ(arc->startAngle(), 0.25);
    EXPECT_EQ(arc->endAngle(), -2.0);
    EXPECT_EQ(arc->close(), StatusOk);
}

TEST(PwDbArc, RoundTripsThroughAFiler) {
    PwDbDatabase database;
    expectRoundTripInDrawing(database, makeArc(0), 255, expectSame);
}

TEST(PwDbArc, ShortenedDataIsRefused) {
    expectEveryShortenedFormRefused(
        *makeArc(0), [] { return makeArc(100); }, expectSame);
}

TEST(PwDbArc, StoredValuesAreCheckedLikeSetterValues) {
    const auto source = makeArc(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    const size_t count = full.items().size();
    // From the end: end angle, start angle, radius.
    const std::pair<size_t, double> breaks[] = {
        {count - 1, kNaN}, {count - 2, kInf}, {count - 3, 0.0}, {count - 3, -1.0}};
    for (const auto& [index, value] : breaks) {
        SCOPED_TRACE(index);
        expectChangedFormRefused(
            full, index, value, [] { return makeArc(100); }, expectSame);
    }
}

// --- All three -----------------------------------------------------------------------------

TEST(PwDbCurves, ClassesDeriveFromTheEntityAndAreFoundByName) {
    const struct {
        PwRxClass* cls;
        const char16_t* name;
        const char* trace;
    } classes[] = {{PwDbLine::desc(), u"PwDbLine", "line"},
                   {PwDbCircle::desc(), u"PwDbCircle", "circle"},
                   {PwDbArc::desc(), u"PwDbArc", "arc"}};
    for (const auto& entry : classes) {
        SCOPED_TRACE(entry.trace);
        ASSERT_NE(entry.cls, nullptr);
        EXPECT_EQ(wstring(entry.cls->name()), wstring(entry.name));
        EXPECT_EQ(entry.cls->myParent(), PwDbEntity::desc());
        EXPECT_EQ(pwrxFindClass(entry.name), entry.cls);
        std::unique_ptr<PwRxObject> made(entry.cls->create());
        ASSERT_NE(made, nullptr);
        EXPECT_EQ(made->runtimeClass(), entry.cls);
        EXPECT_TRUE(made->isKindOf(PwDbEntity::desc()));
        EXPECT_TRUE(made->isKindOf(PwDbObject::desc()));
        EXPECT_NE(PwDbEntity::cast(made.get()), nullptr);
    }
}

TEST(PwDbCurves, ClassesAreSiblings) {
    PwDbLine line;
    PwDbCircle circle;
    PwDbArc arc;
    EXPECT_FALSE(line.isKindOf(PwDbCircle::desc()));
    EXPECT_FALSE(arc.isKindOf(PwDbCircle::desc()));
    EXPECT_FALSE(circle.isKindOf(PwDbArc::desc()));
    EXPECT_EQ(PwDbCircle::cast(&arc), nullptr);
    EXPECT_EQ(PwDbArc::cast(&arc), &arc);
    EXPECT_EQ(wstring(line.runtimeClass()->name()), u"PwDbLine");
}

}  // namespace
