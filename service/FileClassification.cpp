// The kind and status of a file a drawing depends on, by its name or its object.
#include <lodeqdb/service/FileClassification.h>

#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/platform/BlockTableRecordAccess.h>
#include <lodeqdb/readsave/DgnModule.h>
#include <lodeqdb/references/RasterImageAccess.h>
#include <lodeqdb/references/UnderlayAccess.h>
#include <lodeqdb/references/XrefPath.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>

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
