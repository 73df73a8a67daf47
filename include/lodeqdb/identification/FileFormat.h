// How old a drawing's file format is: the generation in which the file was last written.
//
//   if (LodeQDBUtil::CheckForPreviousPlotwrightFileVersion(drawing)) offerUpgrade();
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/vocabulary/FormatGeneration.h>

class PwDbDatabase;


namespace LodeQDBUtil {

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
