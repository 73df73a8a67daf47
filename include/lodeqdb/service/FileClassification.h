// What kind of file a name or a drawing's object stands for.
//
//   lode::FileType kind = LodeQDBService::Request::GetFileType(u"/srv/site/plan.pdf");
//
//   wstring name;
//   lode::FileType type = lode::Unknown;
//   PwDb::XrefStatus status = PwDb::XrefNotAnXref;
//   LodeQDBService::Request::FilenameAndType(drawing, drawingPath, id, name, type, status);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/service/FileData.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

namespace LodeQDBService::Request {

/// By the name: a native drawing (1), an exchange file (3), a DGN file as the DGN module tells
/// it (4; the module is loaded for this, and lode::InkstoneError comes when it can't be), a
/// PDF (7), an image (2), else Unknown. Drawings and exchange files are told by their
/// extension before the module is asked.
lode::FileType GetFileType(const wstring& path);

/// By the object `id` of `database` (whose own file is `path`): a reference block gives type 1,
/// its full path (GetXrefPath) and its reference status; an image definition type 2 and its
/// file name; a PLF, DGN or PDF underlay definition type 3, 4 or 7 and its file name. An object
/// that can't be opened, or of any other class, leaves all three outputs as they were; only a
/// block writes `status`. The name may be relative.
void FilenameAndType(const PwDbDatabase& database, const wstring& path, const PwDbObjectId& id,
                     wstring& name, lode::FileType& type, PwDb::XrefStatus& status);

}  // namespace LodeQDBService::Request
