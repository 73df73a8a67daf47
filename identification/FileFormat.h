// How old a drawing's file format is: the generation in which the file was last written.
//
//   if (LodeQDBUtil::CheckForPreviousPlotwrightFileVersion(drawing)) offerUpgrade();
#pragma once

#include "lodeutil/WideString.h"

class PwDbDatabase;

namespace lode {

/// The generations. The values are part of the library's interface.
enum PlotwrightFileFormat : int {
    FormatUnsupported = 0,
    /// Version 16, in an exchange file only.
    FormatOldestPlx = 1,
    /// Version 21, in a native file only.
    FormatOldestPlw = 2,
    FormatGeneration3 = 3,
    FormatGeneration4 = 4,
    FormatGeneration5 = 5,
    FormatGeneration6 = 6,
    FormatGeneration7 = 7,
    FormatCurrent = 8,
};

}  // namespace lode

namespace LodeQDBUtil {

/// The generation of `database`'s last save, or of the file it was read from when it wasn't
/// saved. Versions 22 to 33 map by pairs; 21 counts only under a native name and 16 only under
/// an exchange name, the name being `name` or, when that is null, the database's file name.
lode::PlotwrightFileFormat GetPlotwrightFileFormat(PwDbDatabase& database, const wstring* name);
/// Reads `path` (native or exchange, by its extension) and gives its generation; the
/// exceptions of ThrowLodeExceptionOnFile with the path when it can't be read.
lode::PlotwrightFileFormat GetPlotwrightFileFormat(const wstring& path);

bool CheckForCurrentPlotwrightFileVersion(lode::PlotwrightFileFormat format);
bool CheckForPreviousPlotwrightFileVersion(lode::PlotwrightFileFormat format);
bool CheckForUnsupportedPlotwrightFileVersion(lode::PlotwrightFileFormat format);
bool CheckForCurrentPlotwrightFileVersion(PwDbDatabase& database);
bool CheckForPreviousPlotwrightFileVersion(PwDbDatabase& database);
bool CheckForUnsupportedPlotwrightFileVersion(PwDbDatabase& database);

}  // namespace LodeQDBUtil
