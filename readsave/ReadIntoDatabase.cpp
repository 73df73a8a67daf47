// The library's doors for reading drawing files.
#include <lodeqdb/readsave/ReadIntoDatabase.h>

#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace LodeQDBUtil {

PwDbDatabase::OpenMode ConvertOpenMode(int shareFlag) {
    switch (shareFlag) {
        case 16:
        case 48:
            return PwDbDatabase::OpenModeExclusive;
        case 32:
            return PwDbDatabase::OpenModeShareRead;
        default:
            return PwDbDatabase::OpenModeShareAll;
    }
}

Plotwright::ErrorStatus readPlwFile(PwDbDatabase& database, const wstring& path,
                                    PwDbDatabase::OpenMode mode, bool allowCodePageConversion,
                                    const wstring& password) {
    const wstring text = LodeUtil::MakeWideString(path);
    return database.readPlwFile(text.c_str(), mode, allowCodePageConversion,
                                password.empty() ? nullptr : password.c_str());
}

Plotwright::ErrorStatus ReadPLWOrPLXToDb(const wstring& path, PwDbDatabase& database,
                                         bool holdNothing) {
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(path);
    if (LodeUtil::FileUtil::IsPLWFile(extension)) {
        return database.readPlwFile(
            path.c_str(),
            holdNothing ? PwDbDatabase::OpenModeAlternate : PwDbDatabase::OpenModeShareAll, false,
            nullptr);
    }
    if (LodeUtil::FileUtil::IsPLXFile(extension)) return database.plxIn(path.c_str(), nullptr);
    return Plotwright::StatusUnhandledFileKind;
}

void ReadFileToDatabase(const wstring& path, PwDbDatabase& database, bool holdNothing,
                        bool resolveReferences) {
    ThrowLodeExceptionOnFile(ReadPLWOrPLXToDb(path, database, holdNothing), path);
    if (resolveReferences) pwdbResolveCurrentXRefs(&database, false, true);
}

}  // namespace LodeQDBUtil
