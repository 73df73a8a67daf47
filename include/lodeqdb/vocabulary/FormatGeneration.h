// The format generation of a drawing in memory, worked out from the database alone (the
// version it was read in or last saved in, and its file name): the question that saving and
// classification share.
//
//   if (LodeQDBUtil::GetPlotwrightFileFormat(drawing, nullptr) == lode::FormatCurrent) ...
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/vocabulary/FileKinds.h>

class PwDbDatabase;

namespace LodeQDBUtil {

/// The generation of `database`'s last save, or of the file it was read from when it wasn't
/// saved. Versions 22 to 33 map by pairs; 21 counts only under a native name and 16 only under
/// an exchange name, the name being `name` or, when that is null, the database's file name.
lode::PlotwrightFileFormat GetPlotwrightFileFormat(PwDbDatabase& database, const wstring* name);

}  // namespace LodeQDBUtil
