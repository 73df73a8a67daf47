// Building drawings from nothing, each step opening and closing what it touches.
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>

#include <string>

#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>

namespace PwDbAuthoring {
namespace {

using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

void Report(PwDbObjectId* out, PwDbObjectId id) {
    if (out != nullptr) *out = id;
}

// Applies `fill` to a new T and appends it; the entity is deleted when either fails.
template <class T, class Fill>
ErrorStatus AddMade(PwDbDatabase& drawing, PwDbObjectId block, PwDbObjectId layer, PwDbObjectId* id,
                    Fill fill) {
    auto* entity = new T;
    if (ErrorStatus status = fill(*entity)) {
        delete entity;
        return status;
    }
    return addEntity(drawing, block, entity, layer, id);
}

ErrorStatus SetLayerOptions(PwDbLayerTableRecord& layer, const LayerOptions& options) {
    if (auto status = layer.setDescription(options.description.c_str())) return status;
    if (auto status = layer.setIsFrozen(options.frozen)) return status;
    if (auto status = layer.setIsHidden(options.hidden)) return status;
    if (auto status = layer.setIsLocked(options.locked)) return status;
    if (auto status = layer.setIsOff(options.off)) return status;
    if (auto status = layer.setIsReconciled(options.reconciled)) return status;
    return layer.setColorIndex(options.colorIndex);
}

// The next free paper space block name: "*Paper_Space0", "*Paper_Space1", ...
wstring NextPaperSpaceName(const PwDbBlockTable& blocks) {
    for (int n = 0;; ++n) {
        std::string digits = std::to_string(n);
        wstring name = u"*Paper_Space" + wstring(digits.begin(), digits.end());
        if (!blocks.has(name.c_str())) return name;
    }
}

}  // namespace

std::unique_ptr<PwDbDatabase> createDrawing() {
    return std::make_unique<PwDbDatabase>();
}

ErrorStatus addLayer(PwDbDatabase& drawing, const wstring& name, const LayerOptions& options,
                     PwDbObjectId* id) {
    PwDbSymbolTablePointer<PwDbLayerTable> layers(&drawing, PwDb::OpenForWrite);
    if (layers.openStatus() != StatusOk) return layers.openStatus();
    auto* layer = new PwDbLayerTableRecord;
    if (ErrorStatus status = layer->setName(name.c_str())) {
        delete layer;
        return status;
    }
    if (ErrorStatus status = SetLayerOptions(*layer, options)) {
        delete layer;
        return status;
    }
    PwDbObjectId added;
    if (ErrorStatus status = layers->add(added, layer)) {
        delete layer;
        return status;
    }
    layer->close();
    Report(id, added);
    return StatusOk;
}

ErrorStatus addTextStyle(PwDbDatabase& drawing, const wstring& name,
                         const TextStyleOptions& options, PwDbObjectId* id) {
    PwDbSymbolTablePointer<PwDbTextStyleTable> styles(&drawing, PwDb::OpenForWrite);
    if (styles.openStatus() != StatusOk) return styles.openStatus();
    auto* style = new PwDbTextStyleTableRecord;
    ErrorStatus status = style->setName(name.c_str());
    if (status == StatusOk) status = style->setFontName(options.fontName.c_str());
    if (status == StatusOk) status = style->setTextHeight(options.textHeight);
    if (status == StatusOk) status = style->setWidthFactor(options.widthFactor);
    PwDbObjectId added;
    if (status == StatusOk) status = styles->add(added, style);
    if (status != StatusOk) {
        delete style;
        return status;
    }
    style->close();
    Report(id, added);
    return StatusOk;
}

ErrorStatus addBlock(PwDbDatabase& drawing, const wstring& name, PwDbObjectId* id) {
    PwDbSymbolTablePointer<PwDbBlockTable> blocks(&drawing, PwDb::OpenForWrite);
    if (blocks.openStatus() != StatusOk) return blocks.openStatus();
    auto* block = new PwDbBlockTableRecord;
    ErrorStatus status = block->setName(name.c_str());
    PwDbObjectId added;
    if (status == StatusOk) status = blocks->add(added, block);
    if (status != StatusOk) {
        delete block;
        return status;
    }
    block->close();
    Report(id, added);
    return StatusOk;
}

ErrorStatus addEntity(PwDbDatabase& drawing, PwDbObjectId block, PwDbEntity* entity,
                      PwDbObjectId layer, PwDbObjectId* id) {
    if (entity == nullptr) return Plotwright::StatusNullDatabase;
    if (!entity->objectId().isNull()) return Plotwright::StatusAlreadyInDatabase;
    ErrorStatus status = block.database() == &drawing ? StatusOk : Plotwright::StatusWrongDatabase;
    if (status == StatusOk && !layer.isNull()) status = entity->setLayer(layer);
    PwDbObjectPointer<PwDbBlockTableRecord> record;
    if (status == StatusOk) status = record.open(block, PwDb::OpenForWrite);
    PwDbObjectId added;
    if (status == StatusOk) status = record->appendPwDbEntity(added, entity);
    if (status != StatusOk) {
        delete entity;
        return status;
    }
    entity->close();
    Report(id, added);
    return StatusOk;
}

ErrorStatus addLine(PwDbDatabase& drawing, PwDbObjectId block, const PwGePoint3d& start,
                    const PwGePoint3d& end, PwDbObjectId layer, PwDbObjectId* id) {
    return AddMade<PwDbLine>(drawing, block, layer, id, [&](PwDbLine& line) {
        if (auto status = line.setStartPoint(start)) return status;
        return line.setEndPoint(end);
    });
}

ErrorStatus addCircle(PwDbDatabase& drawing, PwDbObjectId block, const PwGePoint3d& center,
                      double radius, PwDbObjectId layer, PwDbObjectId* id) {
    return AddMade<PwDbCircle>(drawing, block, layer, id, [&](PwDbCircle& circle) {
        if (auto status = circle.setCenter(center)) return status;
        return circle.setRadius(radius);
    });
}

ErrorStatus addText(PwDbDatabase& drawing, PwDbObjectId block, const PwGePoint3d& position,
                    double height, const wstring& text, PwDbObjectId layer, PwDbObjectId* id) {
    return AddMade<PwDbText>(drawing, block, layer, id, [&](PwDbText& entity) {
        if (auto status = entity.setPosition(position)) return status;
        if (auto status = entity.setHeight(height)) return status;
        return entity.setTextString(text.c_str());
    });
}

ErrorStatus addBlockReference(PwDbDatabase& drawing, PwDbObjectId block, PwDbObjectId referenced,
                              const PwGePoint3d& position, const PwGeScale3d& scale,
                              double rotation, PwDbObjectId layer, PwDbObjectId* id) {
    if (referenced.database() != &drawing) return Plotwright::StatusWrongDatabase;
    return AddMade<PwDbBlockReference>(drawing, block, layer, id, [&](PwDbBlockReference& ref) {
        if (auto status = ref.setReferencedBlock(referenced)) return status;
        if (auto status = ref.setInsertionPoint(position)) return status;
        if (auto status = ref.setScale3d(scale)) return status;
        return ref.setRotationAngle(rotation);
    });
}

ErrorStatus addDictionaryEntry(PwDbDatabase& drawing, PwDbObjectId dictionary, const wstring& key,
                               PwDbObject* object, PwDbObjectId* id) {
    if (object == nullptr) return Plotwright::StatusNullDatabase;
    if (!object->objectId().isNull()) return Plotwright::StatusAlreadyInDatabase;
    ErrorStatus status =
        dictionary.database() == &drawing ? StatusOk : Plotwright::StatusWrongDatabase;
    PwDbObjectPointer<PwDbDictionary> entries;
    if (status == StatusOk) status = entries.open(dictionary, PwDb::OpenForWrite);
    // Authoring adds: an existing entry is never replaced here.
    if (status == StatusOk && entries->has(key.c_str())) status = Plotwright::StatusDuplicateKey;
    PwDbObjectId added;
    if (status == StatusOk) status = entries->setAt(key.c_str(), object, added);
    if (status != StatusOk) {
        if (object->objectId().isNull()) delete object;
        return status;
    }
    object->close();
    Report(id, added);
    return StatusOk;
}

ErrorStatus addLayout(PwDbDatabase& drawing, const wstring& name, int tabOrder, double paperWidth,
                      double paperHeight, PwDbObjectId* id) {
    {
        PwDbObjectPointer<PwDbDictionary> layouts(drawing.layoutDictionaryId(), PwDb::OpenForRead);
        if (layouts.openStatus() != StatusOk) return layouts.openStatus();
        if (layouts->has(name.c_str())) return Plotwright::StatusDuplicateKey;
    }
    PwDbObjectId space;
    {
        PwDbSymbolTablePointer<PwDbBlockTable> blocks(&drawing, PwDb::OpenForRead);
        if (blocks.openStatus() != StatusOk) return blocks.openStatus();
        const wstring spaceName = NextPaperSpaceName(*blocks);
        blocks.release();
        if (auto status = addBlock(drawing, spaceName, &space)) return status;
    }
    auto* layout = new PwDbLayout;
    ErrorStatus status = layout->setLayoutName(name.c_str());
    if (status == StatusOk) status = layout->setTabOrder(tabOrder);
    if (status == StatusOk) status = layout->setPlotPaperSize(paperWidth, paperHeight);
    if (status == StatusOk) status = layout->setModelType(false);
    if (status == StatusOk) status = layout->setBlockTableRecordId(space);
    if (status != StatusOk) {
        delete layout;
        return status;
    }
    PwDbObjectId added;
    if (auto failed =
            addDictionaryEntry(drawing, drawing.layoutDictionaryId(), name, layout, &added)) {
        return failed;
    }
    PwDbObjectPointer<PwDbBlockTableRecord> record(space, PwDb::OpenForWrite);
    if (record.openStatus() != StatusOk) return record.openStatus();
    if (auto failed = record->setLayoutId(added)) return failed;
    Report(id, added);
    return StatusOk;
}

ErrorStatus addPlotSettings(PwDbDatabase& drawing, const wstring& name, bool modelType,
                            double paperWidth, double paperHeight, PwDbObjectId* id) {
    auto* settings = new PwDbPlotSettings;
    ErrorStatus status = settings->setPlotSettingsName(name.c_str());
    if (status == StatusOk) status = settings->setModelType(modelType);
    if (status == StatusOk) status = settings->setPlotPaperSize(paperWidth, paperHeight);
    if (status != StatusOk) {
        delete settings;
        return status;
    }
    return addDictionaryEntry(drawing, drawing.plotSettingsDictionaryId(), name, settings, id);
}

}  // namespace PwDbAuthoring
