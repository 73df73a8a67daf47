// The format generation of a drawing file, and the questions asked of a generation.
#include <lodeqdb/identification/FileFormat.h>

#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBUtil {

lode::PlotwrightFileFormat GetPlotwrightFileFormat(const wstring& path) {
    PwDbDatabase database(false, true);
    ThrowLodeExceptionOnFile(ReadPLWOrPLXToDb(path, database, true), path);
    return GetPlotwrightFileFormat(database, &path);
}

bool CheckForCurrentPlotwrightFileVersion(lode::PlotwrightFileFormat format) {
    return format == lode::FormatCurrent;
}

bool CheckForUnsupportedPlotwrightFileVersion(lode::PlotwrightFileFormat format) {
    return format == lode::FormatUnsupported;
}

bool CheckForPreviousPlotwrightFileVersion(lode::PlotwrightFileFormat format) {
    return !CheckForCurrentPlotwrightFileVersion(format) &&
           !CheckForUnsupportedPlotwrightFileVersion(format);
}

bool CheckForCurrentPlotwrightFileVersion(PwDbDatabase& database) {
    return CheckForCurrentPlotwrightFileVersion(GetPlotwrightFileFormat(database, nullptr));
}

bool CheckForPreviousPlotwrightFileVersion(PwDbDatabase& database) {
    return CheckForPreviousPlotwrightFileVersion(GetPlotwrightFileFormat(database, nullptr));
}

bool CheckForUnsupportedPlotwrightFileVersion(PwDbDatabase& database) {
    return CheckForUnsupportedPlotwrightFileVersion(GetPlotwrightFileFormat(database, nullptr));
}

}  // namespace LodeQDBUtil
