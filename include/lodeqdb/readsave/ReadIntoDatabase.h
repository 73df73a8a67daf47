// Getting a drawing file into a database the caller made: native or exchange, chosen by the
// file's extension.
//
//   PwDbDatabase drawing(false, true);
//   LodeQDBUtil::ReadFileToDatabase(u"/srv/site.plw", drawing, true, true);  // throws
//
// Nothing here looks into a file before the toolkit reads it, and nothing is retried.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBUtil {

/// The toolkit's way of holding a file for the operating system's share flag `shareFlag`:
/// 16 and 48 exclusive, 32 share-read, anything else share-all.
PwDbDatabase::OpenMode ConvertOpenMode(int shareFlag);

/// The toolkit's native read of `path` into `database`, its status returned as it is. An
/// empty `password` goes to the toolkit as a null pointer.
Plotwright::ErrorStatus readPlwFile(PwDbDatabase& database, const wstring& path,
                                    PwDbDatabase::OpenMode mode, bool allowCodePageConversion,
                                    const wstring& password);

/// Reads a native file (in OpenModeAlternate with `holdNothing`, else OpenModeShareAll) or an
/// exchange file, by the extension of `path` alone. StatusUnhandledFileKind, without calling
/// the toolkit, for a name of any other kind; otherwise the toolkit's status.
Plotwright::ErrorStatus ReadPLWOrPLXToDb(const wstring& path, PwDbDatabase& database,
                                         bool holdNothing);

/// ReadPLWOrPLXToDb, then any failure as the exception ThrowLodeExceptionOnFile makes of it
/// with `path`; then, with `resolveReferences`, the drawing's references are resolved (a
/// reference that can't be loaded is no failure here: its block says so).
void ReadFileToDatabase(const wstring& path, PwDbDatabase& database, bool holdNothing,
                        bool resolveReferences);

}  // namespace LodeQDBUtil
