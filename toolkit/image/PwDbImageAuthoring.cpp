// Adding raster image definitions and their placements to a drawing.
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/image/PwDbRasterImage.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>

namespace PwDbAuthoring {

Plotwright::ErrorStatus addRasterImageDef(PwDbDatabase& drawing, const wstring& key,
                                          const wstring& sourcePath, PwDbObjectId* id) {
    PwDbObjectId dictionary;
    if (auto status = PwDbRasterImageDef::createImageDictionary(&drawing, dictionary))
        return status;
    auto* definition = new PwDbRasterImageDef;
    definition->setSourceFileName(sourcePath.c_str());
    return addDictionaryEntry(drawing, dictionary, key, definition, id);
}

Plotwright::ErrorStatus addRasterImage(PwDbDatabase& drawing, PwDbObjectId block,
                                       PwDbObjectId definition, const PwGePoint3d& position,
                                       double width, double height, PwDbObjectId layer,
                                       PwDbObjectId* id) {
    PwDbObjectPointer<PwDbRasterImageDef> placed(definition, PwDb::OpenForWrite);
    if (placed.openStatus() != Plotwright::StatusOk) return placed.openStatus();
    auto* image = new PwDbRasterImage;
    Plotwright::ErrorStatus status = image->setImageDefId(definition);
    if (status == Plotwright::StatusOk) status = image->setPosition(position);
    if (status == Plotwright::StatusOk) status = image->setSize(width, height);
    if (status != Plotwright::StatusOk) {
        delete image;
        return status;
    }
    PwDbObjectId added;
    if (auto failed = addEntity(drawing, block, image, layer, &added)) return failed;
    if (auto failed = placed->addPersistentReactor(added)) return failed;
    if (id != nullptr) *id = added;
    return Plotwright::StatusOk;
}

}  // namespace PwDbAuthoring
