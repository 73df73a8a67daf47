// The reference file attachments of a DGN design file, read by the DGN module "PwDgnIO.qdb",
// which is loaded on the first call (see PwDgnIOEntryPoints.h); the toolkit links no DGN code
// of its own.
//
//   PwArray<PwDbDgnRefFileData*> references(0, 8);
//   if (pwdbGetDgnFileReferences(u"/srv/site.dgn", nullptr, references) == Plotwright::StatusOk) {
//       for (size_t i = 0; i < references.length(); ++i) use(*references[i]);
//   }
//   pwdbDeleteDgnFileReferences(references);
#pragma once

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>

/// Appends one new record per reference attachment of the DGN V7 design file `fileName` to
/// `references`, in file order; the caller owns them (delete each, or call
/// pwdbDeleteDgnFileReferences). A file without attachments gives StatusOk and appends
/// nothing. Failures append nothing: StatusInvalidInput for a null or empty name,
/// StatusFileNotFound when no file is there, StatusBadFileFormat for a file that is not a DGN
/// V7 design file (a V8 file included), StatusOutOfMemory when the array can't grow, and
/// StatusModuleNotFound when the module can't be loaded or lacks the entry. `unused` is
/// accepted for callers that pass it.
Plotwright::ErrorStatus pwdbGetDgnFileReferences(const char16_t* fileName, const char16_t* unused,
                                                 PwArray<PwDbDgnRefFileData*>& references);

/// Deletes every record of `references` and empties it.
void pwdbDeleteDgnFileReferences(PwArray<PwDbDgnRefFileData*>& references);
