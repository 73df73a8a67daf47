#include "service/FileClassification.h"

#include "lodeutil/FileUtil.h"
#include "lodeutil/Path.h"
#include "platform/BlockTableRecordAccess.h"
#include "readsave/DgnModule.h"
#include "references/RasterImageAccess.h"
#include "references/UnderlayAccess.h"
#include "references/XrefPath.h"
#include "toolkit/db/PwDbBlockTable.h"
#include "toolkit/db/PwDbObjectPointer.h"
#include "toolkit/image/PwDbRasterImageDef.h"
#include "toolkit/underlay/PwDbUnderlayDefinition.h"

namespace LodeQDBService::Request {

lode::FileType GetFileType(const wstring& path) {
    const wstring extension = LodeUtil::Path::GetExtension(path);
    if (LodeUtil::FileUtil::IsPLWFile(extension)) return lode::Plw;
    if (LodeUtil::FileUtil::IsPLXFile(extension)) return lode::PlxOrPlf;
    if (LodeQDBUtil::IsDGNFile(path)) return lode::Dgn;
    if (LodeUtil::FileUtil::IsPDFFile(extension)) return lode::Pdf;
    if (LodeUtil::FileUtil::IsImageFile(extension)) return lode::Image;
    return lode::Unknown;
}

void FilenameAndType(const PwDbDatabase& database, const wstring& path, const PwDbObjectId& id,
                     wstring& name, lode::FileType& type, PwDb::XrefStatus& status) {
    // Closed by the pointer on every way out, exceptions included.
    PwDbObjectPointer<PwDbObject> object(id, PwDb::OpenForRead, true);
    if (object.openStatus() != Plotwright::StatusOk) return;
    const PwRxClass* cls = object->runtimeClass();
    auto underlay = [&](lode::FileType kind) {
        type = kind;
        name = LodeQDBUtil::UnderlayDef::FileName(
            static_cast<PwDbUnderlayDefinition*>(object.object()));
    };
    if (PwRxClass::isDerivedFrom(cls, PwDbBlockTableRecord::desc())) {
        type = lode::Plw;
        name = LodeQDBUtil::GetXrefPath(
            database, static_cast<const PwDbBlockTableRecord*>(object.object()), path, false);
        status = LodeQDBUtil::BlockTableRecord::Status(id, name);
    } else if (PwRxClass::isDerivedFrom(cls, PwDbRasterImageDef::desc())) {
        type = lode::Image;
        name = LodeQDBUtil::RasterImageDef::FileName(
            static_cast<PwDbRasterImageDef*>(object.object()));
    } else if (PwRxClass::isDerivedFrom(cls, PwDbPlfDefinition::desc())) {
        underlay(lode::PlxOrPlf);
    } else if (PwRxClass::isDerivedFrom(cls, PwDbDgnDefinition::desc())) {
        underlay(lode::Dgn);
    } else if (PwRxClass::isDerivedFrom(cls, PwDbPdfDefinition::desc())) {
        underlay(lode::Pdf);
    }
}

}  // namespace LodeQDBService::Request
