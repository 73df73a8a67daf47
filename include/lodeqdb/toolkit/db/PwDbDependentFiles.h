// Finding the files a drawing depends on: its external references, images and underlays.
//
//   wstring found;
//   if (pwdbFindDependentFile(found, u"..\\lib\\title.plw", &host,
//                             PwDbHostApplicationServices::kXrefDrawing) == Plotwright::StatusOk)
//       read(found);
//
// The places tried, in order:
//   1. The stored path itself: a relative one against the folder of the holder's file; one
//      rooted at a single separator (`\lib\x.plw`) under the root of the holder's path; any
//      other rooted path as it stands.
//   2. The folder of the holder's file with the stored path's bare file name.
//   3. The host services' findFile hook, with the hint.
// A URL goes only to the hook. The holder is the drawing that holds the reference; without a
// file name of its own, steps 1 (for a relative path) and 2 are left out.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

class PwDbDatabase;

/// Finds the file stored as `storedPath` in `holder` (may be null). On success `found` is the
/// absolute, lexically normalised path of an existing regular file. StatusFileNotFound when
/// no place holds one, StatusInvalidInput for an empty stored path; `found` is then empty.
Plotwright::ErrorStatus pwdbFindDependentFile(wstring& found, const wstring& storedPath,
                                              const PwDbDatabase* holder,
                                              PwDbHostApplicationServices::FindFileHint hint);

/// The path of `database`'s file; empty when it has none.
wstring pwdbDatabasePath(const PwDbDatabase* database);
