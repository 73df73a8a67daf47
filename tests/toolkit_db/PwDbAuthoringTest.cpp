// Building drawings from nothing, checked through the ordinary reading interface.
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbText.h>

namespace {

using Plotwright::StatusOk;

std::vector<wstring> DictionaryKeys(PwDbObjectId dictionaryId) {
    std::vector<wstring> keys;
    PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
    std::unique_ptr<PwDbDictionaryIterator> it(dictionary->newIterator());
    for (; !it->atEnd(); it->advance()) keys.emplace_back(it->name());
    return keys;
}

TEST(PwDbAuthoring, LayersCarryTheirOptions) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbAuthoring::LayerOptions options;
    options.description = u"Outer walls";
    options.frozen = true;
    options.locked = true;
    options.colorIndex = 3;
    PwDbObjectId walls;
    ASSERT_EQ(PwDbAuthoring::addLayer(*drawing, u"Walls", options, &walls), StatusOk);
    PwDbObjectPointer<PwDbLayerTableRecord> layer(walls, PwDb::OpenForRead);
    ASSERT_EQ(layer.openStatus(), StatusOk);
    EXPECT_TRUE(layer->isFrozen());
    EXPECT_TRUE(layer->isLocked());
    EXPECT_FALSE(layer->isOff());
    EXPECT_EQ(layer->colorIndex(), 3);
    PwString description;
    ASSERT_EQ(layer->description(description), StatusOk);
    EXPECT_EQ(description.toWString(), u"Outer walls");
    EXPECT_FALSE(layer->isInUse());
}

TEST(PwDbAuthoring, RefusedLayerLeavesNothingBehind) {
    auto drawing = PwDbAuthoring::createDrawing();
    const size_t before = drawing->numObjects();
    EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"0"), Plotwright::StatusDuplicateKey);
    EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"a|b"), Plotwright::StatusInvalidKey);
    PwDbAuthoring::LayerOptions badColour;
    badColour.colorIndex = 900;
    EXPECT_NE(PwDbAuthoring::addLayer(*drawing, u"Fine", badColour), StatusOk);
    EXPECT_EQ(drawing->numObjects(), before);
}

TEST(PwDbAuthoring, BlocksEntitiesAndPlacements) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId door, layer, line, placed;
    ASSERT_EQ(PwDbAuthoring::addBlock(*drawing, u"Door", &door), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayer(*drawing, u"Doors", {}, &layer), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLine(*drawing, door, {0, 0, 0}, {0, 900, 0}, layer, &line),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addCircle(*drawing, door, {0, 0, 0}, 450), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addText(*drawing, drawing->modelSpaceId(), {1, 1, 0}, 2.5, u"T1"),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(), door, {100, 0, 0},
                                               {2, 2, 1}, 0.25, layer, &placed),
              StatusOk);

    PwDbObjectPointer<PwDbLine> lineEntity(line, PwDb::OpenForRead);
    ASSERT_EQ(lineEntity.openStatus(), StatusOk);
    EXPECT_EQ(lineEntity->endPoint(), PwGePoint3d(0, 900, 0));
    EXPECT_EQ(lineEntity->layerId(), layer);
    EXPECT_EQ(lineEntity->blockId(), door);
    lineEntity.release();

    PwDbObjectPointer<PwDbBlockReference> reference(placed, PwDb::OpenForRead);
    EXPECT_EQ(reference->blockTableRecord(), door);
    EXPECT_EQ(reference->scaleFactors(), PwGeScale3d(2, 2, 1));
    EXPECT_EQ(reference->rotation(), 0.25);
    reference.release();

    PwDbObjectPointer<PwDbBlockTableRecord> block(door, PwDb::OpenForRead);
    EXPECT_EQ(block->numEntities(), 2u);
    PwArray<PwDbObjectId> references;
    ASSERT_EQ(block->getBlockReferenceIds(references), StatusOk);
    ASSERT_EQ(references.length(), 1u);
    EXPECT_EQ(references[0], placed);
    block.release();

    PwDbObjectPointer<PwDbLayerTableRecord> doors(layer, PwDb::OpenForRead);
    EXPECT_TRUE(doors->isInUse());
}

TEST(PwDbAuthoring, RefusedEntityIsDeleted) {
    auto drawing = PwDbAuthoring::createDrawing();
    auto other = PwDbAuthoring::createDrawing();
    const size_t before = drawing->numObjects();
    // LeakSanitizer reports the entities of these calls if they are not deleted.
    EXPECT_EQ(PwDbAuthoring::addLine(*drawing, other->modelSpaceId(), {}, {1, 1, 1}),
              Plotwright::StatusWrongDatabase);
    EXPECT_EQ(PwDbAuthoring::addCircle(*drawing, drawing->modelSpaceId(), {}, -1),
              Plotwright::StatusInvalidInput);
    EXPECT_EQ(PwDbAuthoring::addBlockReference(*drawing, drawing->modelSpaceId(),
                                               other->modelSpaceId(), {}),
              Plotwright::StatusWrongDatabase);
    EXPECT_EQ(PwDbAuthoring::addEntity(*drawing, drawing->modelSpaceId(), nullptr),
              Plotwright::StatusNullDatabase);
    EXPECT_EQ(drawing->numObjects(), before);
}

TEST(PwDbAuthoring, LayoutsGetTheirOwnPaperSpace) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId sheet;
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"A1 Sheet", 2, 841, 594, &sheet), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayout(*drawing, u"Empty", 3, 0, 0), StatusOk);
    EXPECT_EQ(DictionaryKeys(drawing->layoutDictionaryId()),
              (std::vector<wstring>{u"Model", u"Layout1", u"A1 Sheet", u"Empty"}));

    PwDbObjectPointer<PwDbLayout> layout(sheet, PwDb::OpenForRead);
    ASSERT_EQ(layout.openStatus(), StatusOk);
    EXPECT_EQ(layout->getTabOrder(), 2);
    double width = 0, height = 0;
    layout->getPlotPaperSize(width, height);
    EXPECT_EQ(width, 841);
    EXPECT_EQ(height, 594);
    EXPECT_FALSE(layout->modelType());
    const PwDbObjectId space = layout->getBlockTableRecordId();
    EXPECT_NE(space, drawing->paperSpaceId());
    EXPECT_NE(space, drawing->modelSpaceId());
    layout.release();
    PwDbObjectPointer<PwDbBlockTableRecord> record(space, PwDb::OpenForRead);
    EXPECT_EQ(record->getLayoutId(), sheet);
    EXPECT_TRUE(record->isPaperSpace());
    record.release();
    const size_t before = drawing->numObjects();
    EXPECT_EQ(PwDbAuthoring::addLayout(*drawing, u"a1 sheet", 4, 1, 1),
              Plotwright::StatusDuplicateKey);
    EXPECT_EQ(drawing->numObjects(), before);
}

TEST(PwDbAuthoring, PlotSettingsLandInTheirDictionary) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId draft;
    ASSERT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Draft", false, 420, 297, &draft),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Model check", true, 0, 0), StatusOk);
    EXPECT_EQ(DictionaryKeys(drawing->plotSettingsDictionaryId()),
              (std::vector<wstring>{u"Draft", u"Model check"}));
    PwDbObjectPointer<PwDbPlotSettings> settings(draft, PwDb::OpenForRead);
    const char16_t* name = nullptr;
    ASSERT_EQ(settings->getPlotSettingsName(name), StatusOk);
    EXPECT_EQ(wstring(name), u"Draft");
    EXPECT_FALSE(settings->modelType());
    settings.release();
    EXPECT_EQ(PwDbAuthoring::addPlotSettings(*drawing, u"Draft", true, 1, 1),
              Plotwright::StatusDuplicateKey);
}

TEST(PwDbAuthoring, DictionaryEntriesOfAClientsOwnObjects) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId id;
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->namedObjectsDictionaryId(),
                                                u"MY_SETTINGS", new PwDbDictionary, &id),
              StatusOk);
    PwDbObjectPointer<PwDbDictionary> root(drawing->namedObjectsDictionaryId(), PwDb::OpenForRead);
    PwDbObjectId found;
    ASSERT_EQ(root->getAt(u"MY_SETTINGS", found), StatusOk);
    EXPECT_EQ(found, id);
    root.release();
    EXPECT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->modelSpaceId(), u"X",
                                                new PwDbDictionary),
              Plotwright::StatusNotThatKindOfClass);
}

}  // namespace
