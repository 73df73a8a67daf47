// Saving a drawing in the format generation its file was in, or in one the caller names.
//
//   Plotwright::ErrorStatus status = LodeQDBUtil::DbSaveAsOriginalVersion(drawing, path);
//   LodeQDBUtil::ThrowLodeExceptionOnFile(status, path);   // if the caller wants exceptions
//
// Each generation is written in the higher version number of its pair (33, 31, 29, 27, 25,
// 23; 21 for the oldest native and 16 for the oldest exchange generation). StatusNoSuchVersion
// (434) means that nothing was written. The path goes to the toolkit as given. While a save
// runs the drawing is the working database where the host allows (see SetWorkingDBMgr).
#pragma once

#include <lodeqdb/vocabulary/FormatGeneration.h>
#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;

namespace LodeQDBUtil {

/// By the extension of `path`: native (DbSaveAsforLODEHOST) or exchange (DbSaveAsforPLX);
/// 434 for any other name, without looking at the drawing.
Plotwright::ErrorStatus DbSaveAsOriginalVersion(PwDbDatabase& database, const wstring& path);

/// A native file in the drawing's own generation (as GetPlotwrightFileFormat tells it for
/// `path`): the current one becomes the drawing's file; an older one is written after the
/// drawing let go of its input file (DbSaveAsPreviousVersionforLODEHOST); 434 when the
/// generation is unsupported.
Plotwright::ErrorStatus DbSaveAsforLODEHOST(PwDbDatabase& database, const wstring& path);

/// A native copy in the earlier generation `format` (2 to 7). For any other format nothing is
/// written and the answer is 0.
Plotwright::ErrorStatus DbSaveAsPreviousVersionforLODEHOST(PwDbDatabase& database,
                                                           const wstring& path,
                                                           lode::PlotwrightFileFormat format);

/// An exchange file in the drawing's own generation, with doubles to 16 decimal places.
Plotwright::ErrorStatus DbSaveAsforPLX(PwDbDatabase& database, const wstring& path);
/// An exchange file in `format` (1 or 3 to 8; 434 for 0 and 2, which no exchange file has).
Plotwright::ErrorStatus DbSaveAsforPLX(PwDbDatabase& database, const wstring& path,
                                       const lode::PlotwrightFileFormat& format);

}  // namespace LodeQDBUtil
