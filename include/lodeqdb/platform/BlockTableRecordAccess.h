// Block table records in wide strings: names, reference paths, reference states.
//
//   wstring path = LodeQDBUtil::BlockTableRecord::PathName(blockId);
//   PwDb::XrefStatus status = LodeQDBUtil::BlockTableRecord::Status(blockId, fullPath);
//
// The const overloads of the setters write through a record open for read: they upgrade the
// open, write, and downgrade again, so the caller's open is as it was; false when the upgrade
// is refused (another reader holds the record).
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbBlockTableRecord;

namespace LodeQDBUtil::BlockTableRecord {

/// The record's name. The record must be valid and open.
wstring Name(const PwDbBlockTableRecord* record);
/// The stored reference path of the block `id`; empty when it can't be opened.
wstring PathName(const PwDbObjectId& id);
/// The stored reference path; empty for null.
wstring PathName(const PwDbBlockTableRecord* record);

/// True when the name was set. The record must be open for write.
bool SetName(PwDbBlockTableRecord& record, const wstring& name);
bool SetName(const PwDbBlockTableRecord& record, const wstring& name);
/// True when the path was set. The record must be open for write.
bool SetPathName(PwDbBlockTableRecord& record, const wstring& path);
bool SetPathName(const PwDbBlockTableRecord& record, const wstring& path);

/// The reference state of the block `id`, which must be a block that can be opened (an id
/// that can't be opened gives XrefNotAnXref).
PwDb::XrefStatus Status(const PwDbObjectId& id);
/// As Status(id), but a missing file (XrefFileMissing) that exists at `path` is
/// XrefFilePresentUnresolved.
PwDb::XrefStatus Status(const PwDbObjectId& id, const wstring& path);

}  // namespace LodeQDBUtil::BlockTableRecord
