// Translating written design files into drawings, checked entity by entity, in 2D and 3D and in
// both unit modes; the report; the options.
#include "modules/dgn/DgnV7Translator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

#include "dgn/DgnTestSupport.h"
#include <lodeqdb/lodeutil/Utf.h>
#include "modules/dgn/DgnV7Reader.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbPolyline.h>
#include <lodeqdb/toolkit/db/PwDbText.h>

namespace {

using dgntest::ClassName;
using dgntest::Entities;
using dgntest::RecordName;
using DgnWriter::DgnV7Writer;
using DgnWriter::Point;
using Plotwright::StatusOk;

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr double kTolerance = 1e-9;

struct Expect3d {
    double x, y, z;
};

void ExpectPoint(const PwGePoint3d& actual, const Expect3d& expected, double tolerance,
                 const char* what) {
    EXPECT_NEAR(actual.x, expected.x, tolerance) << what;
    EXPECT_NEAR(actual.y, expected.y, tolerance) << what;
    EXPECT_NEAR(actual.z, expected.z, tolerance) << what;
}

void ExpectVertex(const PwDbPolyline& polyline, unsigned int index, double x, double y,
                  double tolerance) {
    PwGePoint2d vertex;
    ASSERT_EQ(polyline.getPointAt(index, vertex), StatusOk) << index;
    EXPECT_NEAR(vertex.x, x, tolerance) << "vertex " << index;
    EXPECT_NEAR(vertex.y, y, tolerance) << "vertex " << index;
}

// The sample plan: every element kind, on its own level, around the global origin
// (1000, -500, 200) of a file with 10000 UOR per master unit.
class DgnV7TranslatorPlan : public testing::TestWithParam<std::tuple<bool, bool>> {
  protected:
    bool threeD() const { return std::get<0>(GetParam()); }
    bool master() const { return std::get<1>(GetParam()); }

    static DgnWriter::Units PlanUnits() {
        DgnWriter::Units units;
        units.originX = 1000;
        units.originY = -500;
        units.originZ = 200;
        return units;
    }

    // A design point given relative to the global origin.
    static Point At(int32_t x, int32_t y, int32_t z = 0) { return {x + 1000, y - 500, z + 200}; }

    // What a point relative to the global origin becomes in the drawing.
    Expect3d Drawing(double x, double y, double z = 0) const {
        const double scale = master() ? 1e-4 : 1.0;
        return {x * scale, y * scale, threeD() ? z * scale : 0.0};
    }
    double Length(double uor) const { return master() ? uor * 1e-4 : uor; }
    double Tolerance() const { return master() ? 1e-9 : 1e-5; }

    void WritePlan() {
        dgn.addLine(12, At(0, 2500, 500), At(30000, 2500, 500));
        dgn.addLineString(3, {At(0, 0), At(10000, 0), At(10000, 10000)});
        dgn.addShape(3, {At(0, 0), At(20000, 0), At(20000, 10000)});
        dgn.addCurve(4, {At(0, 0), At(100, 0), At(200, 100), At(300, 0), At(400, 100), At(500, 0),
                         At(600, 0)});
        dgn.addEllipse(5, 6000, 4500, 200, 2000, 2000, 0);
        dgn.addEllipse(5, 1000, -500, 200, 4000, 2000, 30);
        dgn.addArc(6, 1000, -500, 200, 10000, 10000, 30, 10, 90);
        dgn.addArc(6, 1000, -500, 200, 10000, 10000, 30, 10, -90);
        dgn.addText(7, At(2000, 5000), "GROUND FLOOR", 3000, 15);
        dgn.beginTextNode(7, At(0, 9000), 250);
        dgn.addText(7, At(0, 9000), "LINE ONE", 250);
        dgn.addText(7, At(0, 8500), "LINE TWO", 250);
        dgn.endComplex();
        dgn.beginComplexChain(8);
        dgn.addLine(8, At(0, 0), At(1000, 0));
        dgn.addArc(8, 2000, 0, 200, 500, 500, 0, 270, 180);
        dgn.addLineString(8, {At(1000, 1000), At(0, 1000)});
        dgn.endComplex();
        dgn.beginComplexShape(9);
        dgn.addLineString(9, {At(0, 0), At(500, 0), At(500, 500)});
        dgn.addLine(9, At(500, 500), At(0, 0));
        dgn.endComplex();
        dgn.beginCell("DOOR", At(20000, 0), 10);
        dgn.addLine(10, At(20000, 0), At(20000, 9000));
        dgn.beginCell("KNOB", At(20500, 4500), 10);
        dgn.addEllipse(10, 21500, 4000, 200, 100, 100, 0);
        dgn.endComplex();
        dgn.endComplex();
        const uint32_t gone = dgn.addLine(11, At(0, 0), At(1, 1));
        dgn.markDeleted(gone);
        std::vector<uint8_t> pointString = dgntest::LineElement(0, 0, 1, 1);
        pointString[1] = 22;
        dgn.addRaw(pointString);
    }

    void TranslatePlan() {
        WritePlan();
        DgnTranslation translation;
        translation.masterUnits = master();
        ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
        model = Entities(drawing.modelSpaceId());
    }

    template <class T>
    PwDbObjectPointer<T> Open(size_t index) {
        EXPECT_LT(index, model.size());
        PwDbObjectPointer<T> entity(index < model.size() ? model[index] : PwDbObjectId(),
                                    PwDb::OpenForRead);
        EXPECT_EQ(entity.openStatus(), StatusOk) << "entity " << index;
        return entity;
    }

    wstring LayerOf(PwDbObjectId id) {
        PwDbObjectPointer<PwDbEntity> entity(id, PwDb::OpenForRead);
        return entity.openStatus() == StatusOk ? RecordName(entity->layerId()) : wstring();
    }

    DgnV7Writer dgn{threeD(), PlanUnits()};
    PwDbDatabase drawing;
    DgnConvertReport report;
    std::vector<PwDbObjectId> model;
};

TEST_P(DgnV7TranslatorPlan, EveryElementInOrderOnItsLevel) {
    TranslatePlan();
    const std::vector<wstring> classes = {
        u"PwDbLine",     u"PwDbPolyline", u"PwDbPolyline", u"PwDbPolyline",      u"PwDbCircle",
        u"PwDbPolyline", u"PwDbArc",      u"PwDbArc",      u"PwDbText",          u"PwDbText",
        u"PwDbText",     u"PwDbPolyline", u"PwDbPolyline", u"PwDbBlockReference"};
    const std::vector<wstring> layers = {
        u"Level 12", u"Level 3", u"Level 3", u"Level 4", u"Level 5", u"Level 5", u"Level 6",
        u"Level 6",  u"Level 7", u"Level 7", u"Level 7", u"Level 8", u"Level 9", u"Level 10"};
    ASSERT_EQ(model.size(), classes.size());
    for (size_t i = 0; i < model.size(); ++i) {
        EXPECT_EQ(ClassName(model[i]), classes[i]) << i;
        EXPECT_EQ(LayerOf(model[i]), layers[i]) << i;
    }
    const std::vector<wstring> expectedLayers = {u"0",       u"Level 12", u"Level 3", u"Level 4",
                                                 u"Level 5", u"Level 6",  u"Level 7", u"Level 8",
                                                 u"Level 9", u"Level 10"};
    EXPECT_EQ(dgntest::LayerNames(drawing), expectedLayers) << "no layer for the deleted line";
}

TEST_P(DgnV7TranslatorPlan, LinesAndVertexLists) {
    TranslatePlan();
    const double tolerance = Tolerance();
    {
        auto line = Open<PwDbLine>(0);
        ExpectPoint(line->startPoint(), Drawing(0, 2500, 500), tolerance, "start");
        ExpectPoint(line->endPoint(), Drawing(30000, 2500, 500), tolerance, "end");
    }
    {
        auto string = Open<PwDbPolyline>(1);
        ASSERT_EQ(string->numVerts(), 3u);
        EXPECT_FALSE(string->isClosed());
        ExpectVertex(*string, 2, Drawing(10000, 10000).x, Drawing(10000, 10000).y, tolerance);
        EXPECT_NEAR(string->elevation(), 0.0, tolerance);
    }
    {
        auto shape = Open<PwDbPolyline>(2);
        ASSERT_EQ(shape->numVerts(), 3u) << "the closing vertex goes";
        EXPECT_TRUE(shape->isClosed());
        ExpectVertex(*shape, 1, Drawing(20000, 0).x, 0, tolerance);
    }
    {
        auto curve = Open<PwDbPolyline>(3);
        ASSERT_EQ(curve->numVerts(), 3u) << "tangent points don't display";
        ExpectVertex(*curve, 0, Length(200), Length(100), tolerance);
        ExpectVertex(*curve, 2, Length(400), Length(100), tolerance);
    }
}

TEST_P(DgnV7TranslatorPlan, CirclesEllipsesAndArcs) {
    TranslatePlan();
    const double tolerance = Tolerance();
    {
        auto circle = Open<PwDbCircle>(4);
        ExpectPoint(circle->center(), Drawing(5000, 5000), tolerance, "center");
        EXPECT_NEAR(circle->radius(), Length(2000), tolerance);
    }
    {
        auto ellipse = Open<PwDbPolyline>(5);
        ASSERT_EQ(ellipse->numVerts(), 72u);
        EXPECT_TRUE(ellipse->isClosed());
        ExpectVertex(*ellipse, 0, Length(4000 * std::cos(30 * kDegree)),
                     Length(4000 * std::sin(30 * kDegree)), tolerance);
        ExpectVertex(*ellipse, 18, Length(-2000 * std::sin(30 * kDegree)),
                     Length(2000 * std::cos(30 * kDegree)), tolerance);
    }
    {
        auto arc = Open<PwDbArc>(6);
        ExpectPoint(arc->center(), Drawing(0, 0), tolerance, "center");
        EXPECT_NEAR(arc->radius(), Length(10000), tolerance);
        EXPECT_NEAR(arc->startAngle(), 40 * kDegree, 1e-9);
        EXPECT_NEAR(arc->endAngle(), 130 * kDegree, 1e-9);
    }
    {
        // Clockwise from 40 degrees over 90: counter-clockwise from 310 to 40.
        auto arc = Open<PwDbArc>(7);
        EXPECT_NEAR(arc->startAngle(), 310 * kDegree, 1e-9);
        EXPECT_NEAR(arc->endAngle(), 40 * kDegree, 1e-9);
    }
}

TEST_P(DgnV7TranslatorPlan, TextsAndTextNodes) {
    TranslatePlan();
    const double tolerance = Tolerance();
    {
        auto text = Open<PwDbText>(8);
        EXPECT_EQ(wstring(text->textString()), u"GROUND FLOOR");
        ExpectPoint(text->position(), Drawing(2000, 5000), tolerance, "position");
        EXPECT_NEAR(text->height(), Length(3000), tolerance);
        EXPECT_NEAR(text->rotation(), 15 * kDegree, 1e-9);
    }
    {
        auto first = Open<PwDbText>(9);
        EXPECT_EQ(wstring(first->textString()), u"LINE ONE");
        EXPECT_NEAR(first->height(), Length(250), Length(0.01));
        ExpectPoint(first->position(), Drawing(0, 9000), tolerance, "first line");
    }
    {
        auto second = Open<PwDbText>(10);
        EXPECT_EQ(wstring(second->textString()), u"LINE TWO");
        ExpectPoint(second->position(), Drawing(0, 8500), tolerance, "second line");
    }
}

TEST_P(DgnV7TranslatorPlan, ComplexChainsAndShapesJoinTheirComponents) {
    TranslatePlan();
    const double tolerance = Tolerance();
    {
        auto chain = Open<PwDbPolyline>(11);
        // The line's two points, 36 more along the half circle, the line string's last.
        ASSERT_EQ(chain->numVerts(), 39u);
        EXPECT_FALSE(chain->isClosed());
        ExpectVertex(*chain, 0, 0, 0, tolerance);
        ExpectVertex(*chain, 1, Length(1000), 0, tolerance);
        ExpectVertex(*chain, 19, Length(1500), Length(500), tolerance);
        ExpectVertex(*chain, 37, Length(1000), Length(1000), tolerance);
        ExpectVertex(*chain, 38, 0, Length(1000), tolerance);
    }
    {
        auto shape = Open<PwDbPolyline>(12);
        ASSERT_EQ(shape->numVerts(), 3u);
        EXPECT_TRUE(shape->isClosed());
        ExpectVertex(*shape, 2, Length(500), Length(500), tolerance);
    }
}

TEST_P(DgnV7TranslatorPlan, CellsBecomeBlocksPlacedAtTheirOrigin) {
    TranslatePlan();
    const double tolerance = Tolerance();
    const PwDbObjectId door = dgntest::BlockNamed(drawing, u"DOOR");
    const PwDbObjectId knob = dgntest::BlockNamed(drawing, u"KNOB");
    ASSERT_FALSE(door.isNull());
    ASSERT_FALSE(knob.isNull());
    {
        auto placed = Open<PwDbBlockReference>(13);
        EXPECT_EQ(placed->blockTableRecord(), door);
        ExpectPoint(placed->position(), Drawing(20000, 0), tolerance, "door");
        EXPECT_EQ(placed->scaleFactors(), PwGeScale3d(1, 1, 1));
        EXPECT_EQ(placed->rotation(), 0.0);
    }
    const auto inDoor = Entities(door);
    ASSERT_EQ(inDoor.size(), 2u);
    {
        PwDbObjectPointer<PwDbLine> line(inDoor[0], PwDb::OpenForRead);
        ASSERT_EQ(line.openStatus(), StatusOk);
        ExpectPoint(line->startPoint(), {0, 0, 0}, tolerance, "door line start");
        ExpectPoint(line->endPoint(), {0, Length(9000), 0}, tolerance, "door line end");
        EXPECT_EQ(LayerOf(inDoor[0]), u"Level 10");
    }
    {
        PwDbObjectPointer<PwDbBlockReference> nested(inDoor[1], PwDb::OpenForRead);
        ASSERT_EQ(nested.openStatus(), StatusOk);
        EXPECT_EQ(nested->blockTableRecord(), knob);
        ExpectPoint(nested->position(), {Length(500), Length(4500), 0}, tolerance, "knob");
    }
    const auto inKnob = Entities(knob);
    ASSERT_EQ(inKnob.size(), 1u);
    PwDbObjectPointer<PwDbCircle> circle(inKnob[0], PwDb::OpenForRead);
    ASSERT_EQ(circle.openStatus(), StatusOk);
    ExpectPoint(circle->center(), {0, 0, 0}, tolerance, "knob center");
    EXPECT_NEAR(circle->radius(), Length(100), tolerance);
}

TEST_P(DgnV7TranslatorPlan, TheReportCountsWhatWasMadeAndWhatWasNot) {
    TranslatePlan();
    EXPECT_EQ(report.translatedCount(kDgnLine, u"PwDbLine"), 2u);
    EXPECT_EQ(report.translatedCount(kDgnLineString, u"PwDbPolyline"), 1u);
    EXPECT_EQ(report.translatedCount(kDgnShape, u"PwDbPolyline"), 1u);
    EXPECT_EQ(report.translatedCount(kDgnCurve, u"PwDbPolyline"), 1u);
    EXPECT_EQ(report.translatedCount(kDgnEllipse, u"PwDbCircle"), 2u);
    EXPECT_EQ(report.translatedCount(kDgnEllipse, u"PwDbPolyline"), 1u);
    EXPECT_EQ(report.translatedCount(kDgnArc, u"PwDbArc"), 2u);
    EXPECT_EQ(report.translatedCount(kDgnText, u"PwDbText"), 3u);
    EXPECT_EQ(report.translatedCount(kDgnComplexChain, u"PwDbPolyline"), 1u);
    EXPECT_EQ(report.translatedCount(kDgnComplexShape, u"PwDbPolyline"), 1u);
    EXPECT_EQ(report.translatedCount(kDgnCellHeader, u"PwDbBlockReference"), 2u);
    EXPECT_EQ(report.totalTranslated(), 17u);
    EXPECT_EQ(report.skippedCount(22), 1u) << "the point string";
    EXPECT_EQ(report.totalSkipped(), 1u) << "deleted elements and the design header don't count";
    EXPECT_EQ(report.skippedCount(kPwDbDgnUnreadableBytes), 0u);
}

INSTANTIATE_TEST_SUITE_P(DimensionsAndUnits, DgnV7TranslatorPlan,
                         testing::Combine(testing::Bool(), testing::Bool()),
                         [](const testing::TestParamInfo<std::tuple<bool, bool>>& info) {
                             return std::string(std::get<0>(info.param) ? "ThreeD" : "TwoD") +
                                    (std::get<1>(info.param) ? "MasterUnits" : "UnitsOfResolution");
                         });

TEST(DgnV7Translator, ThreeDimensionalElevations) {
    DgnV7Writer dgn(true);
    dgn.addLineString(1, {{0, 0, 30000}, {10000, 0, 40000}});
    dgn.addText(1, {0, 0, 50000}, "UP", 1000, 45);
    DgnTranslation translation;
    PwDbDatabase drawing;
    DgnConvertReport report;
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    const auto model = Entities(drawing.modelSpaceId());
    ASSERT_EQ(model.size(), 2u);
    PwDbObjectPointer<PwDbPolyline> string(model[0], PwDb::OpenForRead);
    EXPECT_NEAR(string->elevation(), 3.0, kTolerance) << "the first vertex's height";
    PwDbObjectPointer<PwDbText> text(model[1], PwDb::OpenForRead);
    EXPECT_NEAR(text->position().z, 5.0, kTolerance);
    EXPECT_NEAR(text->rotation(), 45 * kDegree, 1e-9);
}

TEST(DgnV7Translator, CellsInPlaceWithoutBlocks) {
    DgnV7Writer dgn(false);
    dgn.beginCell("DOOR", {20000, 0}, 10);
    dgn.addLine(10, {20000, 0}, {20000, 9000});
    dgn.beginCell("KNOB", {20500, 4500}, 10);
    dgn.addEllipse(10, 20500, 4500, 0, 100, 100, 0);
    dgn.endComplex();
    dgn.endComplex();
    DgnTranslation translation;
    translation.cellsAsBlocks = false;
    PwDbDatabase drawing;
    DgnConvertReport report;
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    const auto model = Entities(drawing.modelSpaceId());
    ASSERT_EQ(model.size(), 2u);
    PwDbObjectPointer<PwDbLine> line(model[0], PwDb::OpenForRead);
    ExpectPoint(line->endPoint(), {2, 0.9, 0}, kTolerance, "line");
    PwDbObjectPointer<PwDbCircle> circle(model[1], PwDb::OpenForRead);
    ExpectPoint(circle->center(), {2.05, 0.45, 0}, kTolerance, "circle");
    EXPECT_TRUE(dgntest::BlockNamed(drawing, u"DOOR").isNull());
    EXPECT_EQ(report.translatedCount(kDgnCellHeader, u"PwDbBlockReference"), 0u);
    EXPECT_EQ(report.totalSkipped(), 0u);
}

TEST(DgnV7Translator, CellNamesStayUnique) {
    DgnV7Writer dgn(false);
    for (int i = 0; i < 3; ++i) {
        dgn.beginCell("DOOR", {i * 1000, 0});
        dgn.addLine(0, {i * 1000, 0}, {i * 1000, 100});
        dgn.endComplex();
    }
    dgn.beginCell("", {0, 0});
    dgn.addLine(0, {0, 0}, {1, 1});
    dgn.endComplex();
    DgnTranslation translation;
    translation.cellBlockPrefix = u"DGN-";
    PwDbDatabase drawing;
    DgnConvertReport report;
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    for (const char16_t* name : {u"DGN-DOOR", u"DGN-DOOR_2", u"DGN-DOOR_3", u"DGN-Cell"}) {
        EXPECT_FALSE(dgntest::BlockNamed(drawing, name).isNull()) << LodeUtil::Utf8FromUtf16(name);
    }
    // A second translation into the same drawing reuses its layers and adds new blocks.
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    EXPECT_FALSE(dgntest::BlockNamed(drawing, u"DGN-DOOR_4").isNull());
    EXPECT_EQ(dgntest::LayerNames(drawing).size(), 2u);
    EXPECT_EQ(Entities(drawing.modelSpaceId()).size(), 8u);
}

// Many cells of one name: each gets the next free suffix, and finding it doesn't start over
// from "_2" for every cell (20,000 cells once took minutes).
TEST(DgnV7Translator, ManyCellsOfOneNameGetSuccessiveSuffixes) {
    constexpr int kCells = 20000;
    DgnV7Writer dgn(false);
    for (int i = 0; i < kCells; ++i) {
        dgn.beginCell("DOOR", {i, 0});
        dgn.addLine(0, {i, 0}, {i, 100});
        dgn.endComplex();
    }
    DgnTranslation translation;
    translation.cellBlockPrefix = u"DGN-";
    PwDbDatabase drawing;
    DgnConvertReport report;
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    EXPECT_FALSE(dgntest::BlockNamed(drawing, u"DGN-DOOR").isNull());
    EXPECT_FALSE(dgntest::BlockNamed(drawing, u"DGN-DOOR_2").isNull());
    EXPECT_FALSE(dgntest::BlockNamed(drawing, u"DGN-DOOR_20000").isNull());
    EXPECT_TRUE(dgntest::BlockNamed(drawing, u"DGN-DOOR_20001").isNull());
    EXPECT_EQ(Entities(drawing.modelSpaceId()).size(), static_cast<size_t>(kCells));
}

TEST(DgnV7Translator, LayerPrefixAndTargetBlock) {
    DgnV7Writer dgn(false);
    dgn.addLine(12, {0, 0}, {10000, 0});
    PwDbDatabase drawing;
    PwDbObjectId target;
    ASSERT_EQ(PwDbAuthoring::addBlock(drawing, u"Imported", &target), StatusOk);
    DgnTranslation translation;
    translation.layerPrefix = u"DGN ";
    translation.targetBlock = target;
    DgnConvertReport report;
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    EXPECT_TRUE(Entities(drawing.modelSpaceId()).empty());
    const auto imported = Entities(target);
    ASSERT_EQ(imported.size(), 1u);
    PwDbObjectPointer<PwDbEntity> line(imported[0], PwDb::OpenForRead);
    EXPECT_EQ(RecordName(line->layerId()), u"DGN 12");
    PwDbDatabase other;
    translation.targetBlock = other.modelSpaceId();
    EXPECT_EQ(dgntest::Translate(dgn, translation, drawing, report),
              Plotwright::StatusWrongDatabase);
}

TEST(DgnV7Translator, ElementsThatMakeNothingAreCounted) {
    DgnV7Writer dgn(false);
    dgn.addText(1, {0, 0}, "", 0);              // no height
    dgn.addEllipse(1, 0, 0, 0, 0, 100, 0);      // no primary axis
    dgn.addCurve(1, {{0, 0}, {1, 1}, {2, 2}});  // too few points to show
    dgn.addLineString(1, {{0, 0}});             // one vertex
    dgn.beginComplexChain(2);
    dgn.addText(2, {0, 0}, "NOT A CURVE", 100);
    dgn.endComplex();
    dgn.beginCell("SOLID", {0, 0});
    std::vector<uint8_t> surface = dgntest::LineElement(0, 0, 0, 0);
    surface[0] |= 0x80;  // a component of the cell
    surface[1] = kDgnSurfaceHeader;
    dgn.addRaw(surface);
    dgn.endComplex();
    DgnTranslation translation;
    PwDbDatabase drawing;
    DgnConvertReport report;
    ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
    EXPECT_EQ(report.skippedCount(kDgnText), 2u);
    EXPECT_EQ(report.skippedCount(kDgnEllipse), 1u);
    EXPECT_EQ(report.skippedCount(kDgnCurve), 1u);
    EXPECT_EQ(report.skippedCount(kDgnLineString), 1u);
    EXPECT_EQ(report.skippedCount(kDgnComplexChain), 1u) << "a chain without points";
    EXPECT_EQ(report.skippedCount(kDgnSurfaceHeader), 1u);
    EXPECT_EQ(report.translatedCount(kDgnCellHeader, u"PwDbBlockReference"), 1u);
    const auto rows = report.rows();
    ASSERT_FALSE(rows.empty());
    EXPECT_EQ(rows.front().elementType, kDgnCellHeader);
    EXPECT_EQ(wstring(rows.front().className), u"PwDbBlockReference");
    EXPECT_EQ(rows.back().elementType, kDgnSurfaceHeader);
    EXPECT_EQ(rows.back().className[0], u'\0');
}

// Attachments are underlays where the toolkit has them, and counted as skipped otherwise.
TEST(DgnV7Translator, AttachmentsBecomeUnderlaysOrAreCounted) {
    DgnV7Writer dgn(false);
    DgnWriter::Attachment site;
    site.fileName = "site.dgn";
    site.logicalName = "SITE";
    site.masterOrigin = {10000, 20000, 0};
    dgn.addAttachment(site);
    DgnWriter::Attachment terrain;
    terrain.asApplicationElement = true;
    terrain.fileName = "terrain.dgn";
    dgn.addAttachment(terrain);
    for (bool wanted : {false, true}) {
        DgnTranslation translation;
        translation.attachmentsAsUnderlays = wanted;
        PwDbDatabase drawing;
        DgnConvertReport report;
        ASSERT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
        const auto model = Entities(drawing.modelSpaceId());
        if (wanted) {
            ASSERT_EQ(model.size(), 2u);
            const wstring made = ClassName(model[0]);
            EXPECT_FALSE(made.empty());
            EXPECT_EQ(report.translatedCount(kDgnGroupData, made), 1u);
            EXPECT_EQ(report.translatedCount(kDgnApplication, made), 1u);
            EXPECT_EQ(report.totalSkipped(), 0u);
        } else {
            EXPECT_TRUE(model.empty());
            EXPECT_EQ(report.skippedCount(kDgnGroupData), 1u);
            EXPECT_EQ(report.skippedCount(kDgnApplication), 1u);
            EXPECT_EQ(report.totalTranslated(), 0u);
        }
    }
}

// --- Options -----------------------------------------------------------------------------

TEST(DgnTranslationOptions, TheLibrarysValues) {
    PwDbDgnConvertOptions options;
    EXPECT_EQ(options.cellsAsBlocks, 1);
    EXPECT_EQ(options.unitsMode, 2);
    EXPECT_EQ(options.attachmentsAsUnderlays, 1);
    EXPECT_TRUE(options.layerPrefix.empty());
    EXPECT_EQ(options.targetBlockHandle, 0);
    EXPECT_TRUE(options.cellBlockPrefix.empty());
    PwDbDatabase drawing;
    DgnTranslation translation;
    translation.cellsAsBlocks = false;
    dgntest::ScopedRootFolder noSettings(u"");
    ASSERT_EQ(dgnTranslationFromOptions(options, drawing, translation), StatusOk);
    EXPECT_TRUE(translation.cellsAsBlocks);
    EXPECT_FALSE(translation.masterUnits) << "no settings file means units of resolution";
    EXPECT_TRUE(translation.attachmentsAsUnderlays);
    EXPECT_EQ(translation.layerPrefix, u"Level ");
    EXPECT_TRUE(translation.cellBlockPrefix.empty());
    EXPECT_TRUE(translation.targetBlock.isNull());
}

TEST(DgnTranslationOptions, ExplicitValues) {
    PwDbDatabase drawing;
    PwDbObjectId block;
    ASSERT_EQ(PwDbAuthoring::addBlock(drawing, u"Target", &block), StatusOk);
    PwDbDgnConvertOptions options;
    options.cellsAsBlocks = 0;
    options.unitsMode = PwDbDgnConvertOptions::kUnitsOfResolution;
    options.attachmentsAsUnderlays = 0;
    options.layerPrefix = u"L";
    options.cellBlockPrefix = u"C_";
    options.targetBlockHandle = static_cast<int64_t>(block.handle());
    DgnTranslation translation;
    ASSERT_EQ(dgnTranslationFromOptions(options, drawing, translation), StatusOk);
    EXPECT_FALSE(translation.cellsAsBlocks);
    EXPECT_FALSE(translation.masterUnits);
    EXPECT_FALSE(translation.attachmentsAsUnderlays);
    EXPECT_EQ(translation.layerPrefix, u"L");
    EXPECT_EQ(translation.cellBlockPrefix, u"C_");
    EXPECT_EQ(translation.targetBlock, block);
    options.unitsMode = PwDbDgnConvertOptions::kMasterUnits;
    ASSERT_EQ(dgnTranslationFromOptions(options, drawing, translation), StatusOk);
    EXPECT_TRUE(translation.masterUnits);
}

TEST(DgnTranslationOptions, ValuesOutsideTheDocumentedOnesAreRefused) {
    PwDbDatabase drawing;
    const auto refused = [&](auto change) {
        PwDbDgnConvertOptions options;
        change(options);
        DgnTranslation translation;
        translation.layerPrefix = u"untouched";
        const bool answer = dgnTranslationFromOptions(options, drawing, translation) ==
                            Plotwright::StatusInvalidInput;
        return answer && translation.layerPrefix == u"untouched";
    };
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.cellsAsBlocks = 2; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.cellsAsBlocks = -1; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.unitsMode = 3; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.unitsMode = -1; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.attachmentsAsUnderlays = 7; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.layerPrefix = u"a|b"; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.cellBlockPrefix = u"*"; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.targetBlockHandle = -4; }));
    EXPECT_TRUE(refused([](PwDbDgnConvertOptions& o) { o.targetBlockHandle = 0x7FFFFFFF; }));
    const int64_t layerTable = static_cast<int64_t>(drawing.layerTableId().handle());
    EXPECT_TRUE(refused([&](PwDbDgnConvertOptions& o) { o.targetBlockHandle = layerTable; }));
}

}  // namespace
