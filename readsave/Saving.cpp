// Saving a drawing in its own format generation or in one the caller names.
#include <lodeqdb/readsave/Saving.h>

#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/platform/SetWorkingDBMgr.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBUtil {

namespace {

constexpr int kExchangePrecision = 16;

// The version a native generation from 2 on is written in: the higher number of its pair (21
// for the oldest native generation, which has only that one).
int NewerVersionOf(lode::PlotwrightFileFormat format) {
    return 2 * static_cast<int>(format) + 17;
}

Plotwright::ErrorStatus WritePlx(PwDbDatabase& database, const wstring& path,
                                 const lode::PlotwrightFileFormat& format) {
    int version = 0;
    if (format >= lode::FormatGeneration3 && format <= lode::FormatCurrent)
        version = NewerVersionOf(format);
    else if (format == lode::FormatOldestPlx)
        version = PwDb::PwDbPlwVersionOldest;
    else
        return Plotwright::StatusNoSuchVersion;
    return database.plxOut(path.c_str(), kExchangePrecision,
                           static_cast<PwDb::PwDbPlwVersion>(version), false);
}

}  // namespace

Plotwright::ErrorStatus DbSaveAsOriginalVersion(PwDbDatabase& database, const wstring& path) {
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(path);
    if (LodeUtil::FileUtil::IsPLWFile(extension)) return DbSaveAsforLODEHOST(database, path);
    if (LodeUtil::FileUtil::IsPLXFile(extension)) return DbSaveAsforPLX(database, path);
    return Plotwright::StatusNoSuchVersion;
}

Plotwright::ErrorStatus DbSaveAsforLODEHOST(PwDbDatabase& database, const wstring& path) {
    const lode::PlotwrightFileFormat format = GetPlotwrightFileFormat(database, &path);
    SetWorkingDBMgr working(&database);
    if (format == lode::FormatCurrent)
        return database.saveAs(path.c_str(), true, PwDb::PwDbPlwVersionCurrent, nullptr);
    if (format == lode::FormatUnsupported) return Plotwright::StatusNoSuchVersion;
    database.closeInput(true);
    return DbSaveAsPreviousVersionforLODEHOST(database, path, format);
}

Plotwright::ErrorStatus DbSaveAsPreviousVersionforLODEHOST(PwDbDatabase& database,
                                                           const wstring& path,
                                                           lode::PlotwrightFileFormat format) {
    SetWorkingDBMgr working(&database);
    if (format < lode::FormatOldestPlw || format > lode::FormatGeneration7)
        return Plotwright::StatusOk;
    return database.saveAs(path.c_str(), false,
                           static_cast<PwDb::PwDbPlwVersion>(NewerVersionOf(format)), nullptr);
}

Plotwright::ErrorStatus DbSaveAsforPLX(PwDbDatabase& database, const wstring& path) {
    SetWorkingDBMgr working(&database);
    const lode::PlotwrightFileFormat format = GetPlotwrightFileFormat(database, &path);
    return WritePlx(database, path, format);
}

Plotwright::ErrorStatus DbSaveAsforPLX(PwDbDatabase& database, const wstring& path,
                                       const lode::PlotwrightFileFormat& format) {
    SetWorkingDBMgr working(&database);
    return WritePlx(database, path, format);
}

}  // namespace LodeQDBUtil
