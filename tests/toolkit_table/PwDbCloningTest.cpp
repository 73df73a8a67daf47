// Cloning between drawings: a block with everything it needs, records the target already
// has, the mapping of source to clone, refusals, and a failure half-way that leaves the
// target as it was, byte for byte.
#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include "TableTestSupport.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbIdMapping.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>
#include "toolkit/pal/PwHeapFaults.h"
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace {

using Plotwright::StatusOk;
using pwdbtabletest::Same;

// A source drawing: block "Sheet" with a line on "Walls", a circle and two long texts on
// "Doors", a table whose header uses style "Titles", and a reference to block "Frame", which
// holds a line on "Walls".
struct Source {
    std::unique_ptr<PwDbDatabase> drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId walls, doors, titles, frame, sheet, frameLine, reference, table;
    std::vector<PwDbObjectId> sheetEntities;

    Source() {
        PwDbDatabase& db = *drawing;
        PwDbAuthoring::LayerOptions wallOptions;
        wallOptions.colorIndex = 3;
        wallOptions.description = u"source walls";
        PwDbAuthoring::LayerOptions doorOptions;
        doorOptions.colorIndex = 5;
        EXPECT_EQ(PwDbAuthoring::addLayer(db, u"Walls", wallOptions, &walls), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addLayer(db, u"Doors", doorOptions, &doors), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addTextStyle(db, u"Titles", {u"serif", 3.5, 0.9}, &titles),
                  StatusOk);
        EXPECT_EQ(PwDbAuthoring::addBlock(db, u"Frame", &frame), StatusOk);
        EXPECT_EQ(PwDbAuthoring::addLine(db, frame, {0, 0, 0}, {10, 0, 0}, walls, &frameLine),
                  StatusOk);
        EXPECT_EQ(PwDbAuthoring::addBlock(db, u"Sheet", &sheet), StatusOk);
        PwDbObjectId id;
        EXPECT_EQ(PwDbAuthoring::addLine(db, sheet, {0, 0, 0}, {0, 5, 0}, walls, &id), StatusOk);
        sheetEntities.push_back(id);
        EXPECT_EQ(PwDbAuthoring::addCircle(db, sheet, {1, 1, 0}, 2, doors, &id), StatusOk);
        sheetEntities.push_back(id);
        EXPECT_EQ(PwDbAuthoring::addText(db, sheet, {0, 0, 0}, 2.5,
                                         u"a text long enough for the heap", doors, &id),
                  StatusOk);
        sheetEntities.push_back(id);
        PwDbAuthoring::TableDesign design;
        design.columnWidths = {10, 30};
        design.rows.push_back({PwDb::RowKindHeader, 6, {u"Rev", u"Description"}});
        design.rows.push_back({PwDb::RowKindData, 6, {u"A", u"First issue"}});
        design.rows[0].cells[0].textStyle = titles;
        design.rows[0].cells[1].textStyle = titles;
        EXPECT_EQ(PwDbAuthoring::addTable(db, sheet, design, walls, &table), StatusOk);
        sheetEntities.push_back(table);
        EXPECT_EQ(
            PwDbAuthoring::addBlockReference(db, sheet, frame, {5, 5, 0}, {}, 0, doors, &reference),
            StatusOk);
        sheetEntities.push_back(reference);
        EXPECT_EQ(PwDbAuthoring::addText(db, sheet, {0, 9, 0}, 2.5,
                                         u"another text long enough for the heap", {}, &id),
                  StatusOk);
        sheetEntities.push_back(id);
        // An erased entity stays behind.
        EXPECT_EQ(PwDbAuthoring::addLine(db, sheet, {0, 0, 0}, {1, 1, 0}, walls, &id), StatusOk);
        PwDbObjectPointer<PwDbEntity> erased(id, PwDb::OpenForWrite);
        EXPECT_EQ(erased->erase(), StatusOk);
    }
};

// A target that already has a layer "Walls" of its own.
struct Target {
    std::unique_ptr<PwDbDatabase> drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId walls;

    Target() {
        PwDbAuthoring::LayerOptions options;
        options.colorIndex = 1;
        options.description = u"target walls";
        EXPECT_EQ(PwDbAuthoring::addLayer(*drawing, u"Walls", options, &walls), StatusOk);
    }
};

PwArray<PwDbObjectId> Ids(std::initializer_list<PwDbObjectId> ids) {
    PwArray<PwDbObjectId> array;
    for (const PwDbObjectId id : ids) array.append(id);
    return array;
}

// The live record `name` of the symbol table `tableId`; null when there is none.
PwDbObjectId Lookup(PwDbObjectId tableId, const char16_t* name) {
    PwDbObjectPointer<PwDbSymbolTable> table(tableId, PwDb::OpenForRead);
    PwDbObjectId id;
    if (table.openStatus() == StatusOk) table->getIdAt(name, id);
    return id;
}

std::vector<PwDbObjectId> EntitiesOf(PwDbObjectId block) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    std::vector<PwDbObjectId> ids;
    if (record.openStatus() != StatusOk) return ids;
    PwDbBlockTableRecordIterator* raw = nullptr;
    record->newIterator(raw);
    std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
    for (; !it->done(); it->step()) {
        PwDbObjectId id;
        it->getEntityId(id);
        ids.push_back(id);
    }
    return ids;
}

// The drawing saved as a native file at `path`, as bytes.
std::string NativeBytes(PwDbDatabase& drawing, const wstring& path) {
    EXPECT_EQ(drawing.saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    std::FILE* file = std::fopen(LodeUtil::Utf8FromUtf16(path).c_str(), "rb");
    std::string bytes;
    if (file == nullptr) return bytes;
    char buffer[4096];
    size_t got = 0;
    while ((got = std::fread(buffer, 1, sizeof buffer, file)) > 0) bytes.append(buffer, got);
    std::fclose(file);
    return bytes;
}

class Cloning : public pwdbtabletest::InBothFormats {};

TEST_P(Cloning, ABlockArrivesWithItsLayersStylesAndNestedBlock) {
    Source source;
    Target target;
    PwDbDatabase& into = *target.drawing;
    const size_t sourceObjects = source.drawing->numObjects();
    PwDbIdMapping mapping;
    ASSERT_EQ(into.wblockCloneObjects(Ids({source.sheet}), into.blockTableId(), mapping,
                                      PwDb::DuplicateRecordKeepTarget, false),
              StatusOk);
    EXPECT_EQ(source.drawing->numObjects(), sourceObjects) << "the source is only read";
    EXPECT_EQ(mapping.origDb(), source.drawing.get());
    EXPECT_EQ(mapping.destDb(), &into);

    const PwDbObjectId sheet = Lookup(into.blockTableId(), u"Sheet");
    const PwDbObjectId frame = Lookup(into.blockTableId(), u"Frame");
    const PwDbObjectId doors = Lookup(into.layerTableId(), u"Doors");
    const PwDbObjectId titles = Lookup(into.textStyleTableId(), u"Titles");
    ASSERT_FALSE(sheet.isNull());
    ASSERT_FALSE(frame.isNull());
    ASSERT_FALSE(doors.isNull());
    ASSERT_FALSE(titles.isNull());
    EXPECT_EQ(Lookup(into.layerTableId(), u"Walls"), target.walls);
    {  // The target's layer is kept as it was; the one that arrived is the source's.
        PwDbObjectPointer<PwDbLayerTableRecord> walls(target.walls, PwDb::OpenForRead);
        EXPECT_EQ(walls->colorIndex(), 1);
        PwDbObjectPointer<PwDbLayerTableRecord> arrived(doors, PwDb::OpenForRead);
        EXPECT_EQ(arrived->colorIndex(), 5);
        EXPECT_EQ(arrived->ownerId(), into.layerTableId());
        PwDbObjectPointer<PwDbTextStyleTableRecord> style(titles, PwDb::OpenForRead);
        EXPECT_EQ(wstring(style->fontName()), u"serif");
        EXPECT_EQ(style->ownerId(), into.textStyleTableId());
    }

    // Every pair is in the mapping, each key in the source and each value in the target.
    // Layer "0", of the last text, stands for the target's own.
    const PwDbObjectId zero = source.drawing->layerZeroId();
    std::vector<PwDbObjectId> expectedKeys = {source.sheet, source.frame, source.frameLine,
                                              source.walls, source.doors, source.titles,
                                              zero};
    expectedKeys.insert(expectedKeys.end(), source.sheetEntities.begin(),
                        source.sheetEntities.end());
    EXPECT_EQ(mapping.size(), expectedKeys.size());
    for (const PwDbObjectId key : expectedKeys) {
        PwDbIdPair pair(key);
        ASSERT_TRUE(mapping.compute(pair)) << key.handle();
        EXPECT_EQ(pair.value.database(), &into);
        EXPECT_EQ(pair.isPrimary, key == source.sheet);
        EXPECT_EQ(pair.isCloned, key != source.walls && key != zero);
    }
    for (const PwDbIdPair& pair : mapping) EXPECT_EQ(pair.key.database(), source.drawing.get());
    PwDbIdPair walls(source.walls);
    ASSERT_TRUE(mapping.compute(walls));
    EXPECT_EQ(walls.value, target.walls);
    PwDbIdPair zeroPair(zero);
    ASSERT_TRUE(mapping.compute(zeroPair));
    EXPECT_EQ(zeroPair.value, into.layerZeroId());

    // Every reference inside the clone points inside the target, at the clone's objects.
    const std::vector<PwDbObjectId> entities = EntitiesOf(sheet);
    ASSERT_EQ(entities.size(), source.sheetEntities.size());
    for (size_t i = 0; i < entities.size(); ++i) {
        PwDbIdPair pair(source.sheetEntities[i]);
        ASSERT_TRUE(mapping.compute(pair));
        EXPECT_EQ(entities[i], pair.value) << "in the source's order";
        PwDbObjectPointer<PwDbEntity> entity(entities[i], PwDb::OpenForRead);
        ASSERT_EQ(entity.openStatus(), StatusOk);
        EXPECT_EQ(entity->ownerId(), sheet);
        EXPECT_EQ(entity->layerId().database(), &into);
        const std::set<PwDbObjectId> layers = {target.walls, doors, into.layerZeroId()};
        EXPECT_EQ(layers.count(entity->layerId()), 1u);
    }
    {
        PwDbObjectPointer<PwDbBlockReference> reference(entities[4], PwDb::OpenForRead);
        ASSERT_EQ(reference.openStatus(), StatusOk);
        EXPECT_EQ(reference->blockTableRecord(), frame);
        EXPECT_EQ(reference->layerId(), doors);
        PwDbObjectPointer<PwDbTable> table(entities[3], PwDb::OpenForRead);
        ASSERT_EQ(table.openStatus(), StatusOk);
        EXPECT_EQ(table->cellTextStyle(0, 1), titles);
        EXPECT_EQ(table->cellTextStyle(1, 1), into.standardTextStyleId());
        EXPECT_EQ(table->layerId(), target.walls);
        EXPECT_EQ(pwdbtabletest::Texts(*table), (std::vector<std::vector<std::string>>{
                                                    {"Rev", "Description"}, {"A", "First issue"}}));
        PwDbObjectPointer<PwDbText> text(entities[2], PwDb::OpenForRead);
        EXPECT_EQ(wstring(text->textString()), u"a text long enough for the heap");
    }
    const std::vector<PwDbObjectId> frameEntities = EntitiesOf(frame);
    ASSERT_EQ(frameEntities.size(), 1u);
    {
        PwDbObjectPointer<PwDbEntity> line(frameEntities[0], PwDb::OpenForRead);
        EXPECT_EQ(line->layerId(), target.walls);
        PwDbObjectPointer<PwDbBlockTableRecord> frameRecord(frame, PwDb::OpenForRead);
        PwArray<PwDbObjectId> references;
        ASSERT_EQ(frameRecord->getBlockReferenceIds(references, true, false), StatusOk);
        ASSERT_EQ(references.length(), 1u);
        EXPECT_EQ(references[0], entities[4]);
    }

    // And the whole stays so in a file.
    const auto read = ReadBack(into, "cloned");
    const PwDbObjectId readSheet = Lookup(read->blockTableId(), u"Sheet");
    const std::vector<PwDbObjectId> readEntities = EntitiesOf(readSheet);
    ASSERT_EQ(readEntities.size(), entities.size());
    PwDbObjectPointer<PwDbBlockReference> readReference(readEntities[4], PwDb::OpenForRead);
    ASSERT_EQ(readReference.openStatus(), StatusOk);
    EXPECT_EQ(readReference->blockTableRecord(), Same(*read, frame));
}

TEST_P(Cloning, AFailureHalfWayLeavesTheTargetByteForByte) {
    Source source;
    Target target;
    PwDbDatabase& into = *target.drawing;
    const std::string before = NativeBytes(into, Path("before.plw"));
    ASSERT_FALSE(before.empty());
    ASSERT_EQ(NativeBytes(into, Path("again.plw")), before) << "saving is repeatable";
    const PwDbHandle handseed = into.handseed();
    const size_t objects = into.numObjects();
    const PwArray<PwDbObjectId> ids = Ids({source.sheet});
    int failures = 0;
    PwDbIdMapping mapping;
    // Each run fails one allocation later, until the clone goes through: the first runs fail
    // while copies are being made, after earlier copies were made already.
    for (long after = 0; after < 100; ++after) {
        SCOPED_TRACE(after);
        pwHeapFailAfter(after);
        const Plotwright::ErrorStatus status = into.wblockCloneObjects(
            ids, into.blockTableId(), mapping, PwDb::DuplicateRecordKeepTarget);
        const bool struck = !pwHeapFailPending();
        pwHeapFailReset();
        if (status == StatusOk) {
            EXPECT_FALSE(struck) << "a clone that met a failure reports it";
            break;
        }
        ASSERT_TRUE(struck);
        ++failures;
        EXPECT_TRUE(mapping.empty());
        EXPECT_EQ(into.handseed(), handseed);
        EXPECT_EQ(into.numObjects(), objects);
        EXPECT_TRUE(Lookup(into.blockTableId(), u"Sheet").isNull());
        EXPECT_TRUE(Lookup(into.layerTableId(), u"Doors").isNull());
        EXPECT_EQ(NativeBytes(into, Path("after.plw")), before);
    }
    EXPECT_GE(failures, 2) << "both long texts are copies that can fail";
    EXPECT_FALSE(Lookup(into.blockTableId(), u"Sheet").isNull());
    EXPECT_NE(NativeBytes(into, Path("cloned.plw")), before);
}

TEST_P(Cloning, DuplicateModesRefuseOrRename) {
    Source source;
    Target target;
    PwDbDatabase& into = *target.drawing;
    PwDbIdMapping mapping;
    const std::string before = NativeBytes(into, Path("before.plw"));
    EXPECT_EQ(into.wblockCloneObjects(Ids({source.sheet}), into.blockTableId(), mapping,
                                      PwDb::DuplicateRecordRefuse),
              Plotwright::StatusDuplicateKey);
    EXPECT_EQ(NativeBytes(into, Path("refused.plw")), before);

    ASSERT_EQ(into.wblockCloneObjects(Ids({source.sheet}), into.blockTableId(), mapping,
                                      PwDb::DuplicateRecordRename),
              StatusOk);
    const PwDbObjectId renamed = Lookup(into.layerTableId(), u"Walls$1");
    ASSERT_FALSE(renamed.isNull());
    PwDbIdPair walls(source.walls);
    ASSERT_TRUE(mapping.compute(walls));
    EXPECT_EQ(walls.value, renamed);
    EXPECT_TRUE(walls.isCloned);
    PwDbObjectPointer<PwDbLayerTableRecord> layer(renamed, PwDb::OpenForRead);
    EXPECT_EQ(layer->colorIndex(), 3);
    // A second clone of the same block renames the blocks too.
    ASSERT_EQ(into.wblockCloneObjects(Ids({source.sheet}), into.blockTableId(), mapping,
                                      PwDb::DuplicateRecordRename),
              StatusOk);
    EXPECT_FALSE(Lookup(into.blockTableId(), u"Sheet$1").isNull());
    EXPECT_FALSE(Lookup(into.layerTableId(), u"Walls$2").isNull());
    // Keeping the target's: a block it has already is used as it is, and nothing is copied.
    const size_t objects = into.numObjects();
    ASSERT_EQ(into.wblockCloneObjects(Ids({source.sheet}), into.blockTableId(), mapping,
                                      PwDb::DuplicateRecordKeepTarget),
              StatusOk);
    EXPECT_EQ(into.numObjects(), objects);
    PwDbIdPair sheet(source.sheet);
    ASSERT_TRUE(mapping.compute(sheet));
    EXPECT_FALSE(sheet.isCloned);
    EXPECT_EQ(sheet.value, Lookup(into.blockTableId(), u"Sheet"));
}

TEST_P(Cloning, ARenamedCopyNeverTakesTheNameOfAnotherCopy) {
    auto source = PwDbAuthoring::createDrawing();
    PwDbObjectId walls, wallsOne, block;
    ASSERT_EQ(PwDbAuthoring::addLayer(*source, u"Walls", {}, &walls), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLayer(*source, u"walls$1", {}, &wallsOne), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addBlock(*source, u"Both", &block), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLine(*source, block, {0, 0, 0}, {1, 0, 0}, walls), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addLine(*source, block, {0, 0, 0}, {0, 1, 0}, wallsOne), StatusOk);
    Target target;
    PwDbDatabase& into = *target.drawing;
    PwDbIdMapping mapping;
    ASSERT_EQ(into.wblockCloneObjects(Ids({block}), into.blockTableId(), mapping,
                                      PwDb::DuplicateRecordRename),
              StatusOk);
    PwDbIdPair first(walls), second(wallsOne);
    ASSERT_TRUE(mapping.compute(first));
    ASSERT_TRUE(mapping.compute(second));
    EXPECT_EQ(first.value, Lookup(into.layerTableId(), u"Walls$1"));
    EXPECT_EQ(second.value, Lookup(into.layerTableId(), u"walls$1$1"));
    EXPECT_NE(first.value, second.value);
    const auto read = ReadBack(into, "renamed");
    EXPECT_EQ(EntitiesOf(Lookup(read->blockTableId(), u"Both")).size(), 2u);
}

TEST_P(Cloning, EntitiesGoIntoTheBlockNamedAsOwner) {
    Source source;
    Target target;
    PwDbDatabase& into = *target.drawing;
    PwDbIdMapping mapping;
    ASSERT_EQ(
        into.wblockCloneObjects(Ids({source.reference, source.sheetEntities[1]}),
                                into.modelSpaceId(), mapping, PwDb::DuplicateRecordKeepTarget),
        StatusOk);
    const std::vector<PwDbObjectId> model = EntitiesOf(into.modelSpaceId());
    ASSERT_EQ(model.size(), 2u);
    PwDbObjectPointer<PwDbBlockReference> reference(model[0], PwDb::OpenForRead);
    ASSERT_EQ(reference.openStatus(), StatusOk);
    EXPECT_EQ(reference->blockTableRecord(), Lookup(into.blockTableId(), u"Frame"));
    EXPECT_TRUE(Lookup(into.blockTableId(), u"Sheet").isNull()) << "only what is needed";
    const auto read = ReadBack(into, "entities");
    EXPECT_EQ(EntitiesOf(read->modelSpaceId()).size(), 2u);
}

TEST_P(Cloning, RefusalsChangeNothing) {
    Source source;
    Target target;
    PwDbDatabase& into = *target.drawing;
    const std::string before = NativeBytes(into, Path("before.plw"));
    PwDbIdMapping mapping;
    const auto ids = Ids({source.sheet});
    // Into itself.
    EXPECT_EQ(source.drawing->wblockCloneObjects(ids, source.drawing->blockTableId(), mapping,
                                                 PwDb::DuplicateRecordRename),
              Plotwright::StatusInvalidInput);
    EXPECT_EQ(into.wblockCloneObjects(Ids({target.walls}), into.layerTableId(), mapping, 1),
              Plotwright::StatusInvalidInput);
    // Ids of two drawings, an empty list, null ids and owners, an unknown mode.
    EXPECT_EQ(
        into.wblockCloneObjects(Ids({source.sheet, target.walls}), into.blockTableId(), mapping, 1),
        Plotwright::StatusInvalidInput);
    EXPECT_EQ(into.wblockCloneObjects(Ids({}), into.blockTableId(), mapping, 1),
              Plotwright::StatusNullObjectId);
    EXPECT_EQ(into.wblockCloneObjects(Ids({PwDbObjectId()}), into.blockTableId(), mapping, 1),
              Plotwright::StatusNullObjectId);
    EXPECT_EQ(into.wblockCloneObjects(ids, PwDbObjectId(), mapping, 1),
              Plotwright::StatusNullObjectId);
    EXPECT_EQ(into.wblockCloneObjects(ids, into.blockTableId(), mapping, 7),
              Plotwright::StatusInvalidInput);
    // Owners that don't fit or aren't the target's.
    EXPECT_EQ(into.wblockCloneObjects(ids, into.layerTableId(), mapping, 1),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(into.wblockCloneObjects(Ids({source.reference}), into.layerTableId(), mapping, 1),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(into.wblockCloneObjects(ids, source.drawing->blockTableId(), mapping, 1),
              Plotwright::StatusWrongDatabase);
    // A layout's block belongs to its layout.
    EXPECT_EQ(into.wblockCloneObjects(Ids({source.drawing->modelSpaceId()}), into.blockTableId(),
                                      mapping, 1),
              Plotwright::StatusNotApplicable);
    {  // The target's block table held open for read by another.
        PwDbObjectPointer<PwDbBlockTable> held(into.blockTableId(), PwDb::OpenForRead);
        EXPECT_EQ(into.wblockCloneObjects(ids, into.blockTableId(), mapping, 1),
                  Plotwright::StatusWasOpenForRead);
    }
    EXPECT_TRUE(mapping.empty());
    EXPECT_EQ(NativeBytes(into, Path("after.plw")), before);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, Cloning,
                         testing::Values(pwdbtabletest::Format::Native,
                                         pwdbtabletest::Format::Exchange),
                         pwdbtabletest::FormatName);

}  // namespace
