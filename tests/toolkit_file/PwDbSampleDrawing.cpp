// The sample drawing of the file tests, built through the authoring interface.
#include "PwDbSampleDrawing.h"

#include <gtest/gtest.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbPolyline.h>
#include "toolkit/file/PwDbDrawingImage.h"

namespace pwdbfiletest {

std::unique_ptr<PwDbDatabase> MakeSampleDrawing() {
    using Plotwright::StatusOk;
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbAuthoring::LayerOptions walls;
    walls.description = u"Außenwände \"tragend\"";
    walls.frozen = true;
    walls.locked = true;
    walls.colorIndex = 3;
    PwDbAuthoring::LayerOptions hidden;
    hidden.hidden = true;
    hidden.off = true;
    hidden.reconciled = true;
    PwDbObjectId wallLayer, hiddenLayer, door, erased;
    EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Walls", walls, &wallLayer), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Hidden", hidden, &hiddenLayer), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addBlock(*drawing, u"Door", &door), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addLine(*drawing, door, {0, 0, 0}, {0, 900.125, 0}, wallLayer),
              StatusOk);
    EXPECT_EQ(PwDbAuthoring::addCircle(*drawing, door, {1.0 / 3, 2, 3}, 450), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addText(*drawing, drawing->modelSpaceId(), {1, 1, 0}, 2.5,
                                     u"Grundriss \U0001F4D0"),
              StatusOk);
    auto* arc = new PwDbArc;
    arc->setRadius(5);
    arc->setStartAngle(0.25);
    arc->setEndAngle(-1e-300);
    EXPECT_EQ(PwDbAuthoring::addEntity(*drawing, drawing->modelSpaceId(), arc), StatusOk);
    auto* outline = new PwDbPolyline;
    outline->addVertexAt(0, {0, 0});
    outline->addVertexAt(1, {10, 0});
    outline->addVertexAt(2, {10, 5});
    outline->setClosed(true);
    EXPECT_EQ(PwDbAuthoring::addEntity(*drawing, drawing->modelSpaceId(), outline, hiddenLayer),
              StatusOk);
    EXPECT_EQ(PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), door, {100, 0, 0},
                                               {2, 2, 1}, 0.5),
              StatusOk);
    EXPECT_EQ(PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {}, {1, 1, 1}, {}, &erased),
              StatusOk);
    PwDbObjectPointer<PwDbEntity> gone(erased, PwDb::OpenForWrite);
    gone->erase();
    gone.release();
    EXPECT_EQ(PwDbAuthoring::addLayout(*drawing, u"A1 Sheet", 2, 841, 594), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Draft", false, 420, 297), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->namedObjectsDictionaryId(),
                                                u"MY_SETTINGS", new PwDbDictionary),
              StatusOk);
    drawing->setMeasurement(PwDb::Imperial);
    PwDbPreviewImage preview;
    preview.width = 2;
    preview.height = 2;
    preview.pixels = {0xFF000000u, 0xFFFFFFFFu, 0xFF102030u, 0x00ABCDEFu};
    drawing->setPreviewImage(&preview);
    return drawing;
}

}  // namespace pwdbfiletest
