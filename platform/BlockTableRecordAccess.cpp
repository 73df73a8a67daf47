// Block table records' names, reference paths and states in wide strings.
#include <lodeqdb/platform/BlockTableRecordAccess.h>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Strings.h>
#include "platform/UpgradedWrite.h"
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace LodeQDBUtil::BlockTableRecord {

wstring Name(const PwDbBlockTableRecord* record) {
    const char16_t* name = nullptr;
    record->getName(name);
    return LodeUtil::MakeWideString(name);
}

wstring PathName(const PwDbObjectId& id) {
    PwDbObjectPointer<PwDbBlockTableRecord> record(id, PwDb::OpenForRead);
    if (record.openStatus() != Plotwright::StatusOk) return wstring();
    return PathName(record.object());
}

wstring PathName(const PwDbBlockTableRecord* record) {
    if (record == nullptr) return wstring();
    PwString path;
    record->pathName(path);
    return LodeUtil::MakeWideString(path.kwszPtr());
}

bool SetName(PwDbBlockTableRecord& record, const wstring& name) {
    return record.setName(LodeUtil::MakeWideString(name).c_str()) == Plotwright::StatusOk;
}

bool SetName(const PwDbBlockTableRecord& record, const wstring& name) {
    return detail::WriteThroughReadOpen(
        record, [&](PwDbBlockTableRecord& writable) { return SetName(writable, name); });
}

bool SetPathName(PwDbBlockTableRecord& record, const wstring& path) {
    return record.setPathName(LodeUtil::MakeWideString(path).c_str()) == Plotwright::StatusOk;
}

bool SetPathName(const PwDbBlockTableRecord& record, const wstring& path) {
    return detail::WriteThroughReadOpen(
        record, [&](PwDbBlockTableRecord& writable) { return SetPathName(writable, path); });
}

PwDb::XrefStatus Status(const PwDbObjectId& id) {
    // An id that can't be opened has no reference state to give: it counts as no reference.
    PwDbObjectPointer<PwDbBlockTableRecord> record(id, PwDb::OpenForRead);
    if (record.openStatus() != Plotwright::StatusOk) return PwDb::XrefNotAnXref;
    return record->xrefStatus();
}

PwDb::XrefStatus Status(const PwDbObjectId& id, const wstring& path) {
    const PwDb::XrefStatus status = Status(id);
    if (status == PwDb::XrefFileMissing && LodeUtil::File::Exists(path))
        return PwDb::XrefFilePresentUnresolved;
    return status;
}

}  // namespace LodeQDBUtil::BlockTableRecord
