// The references of a DGN design file, as the DGN reader module "PwDgnIO.qdb" reads them.
//
//   PwArray<PwDbDgnRefFileData*> references(0, 8);
//   if (pwdbGetDgnFileReferences(u"/srv/site.dgn", nullptr, references) == Plotwright::StatusOk) {
//       for (size_t i = 0; i < references.length(); ++i) {
//           use(references[i]->storedPath, references[i]->resolvedPath);
//           delete references[i];
//       }
//   }
//
// The module is loaded on the first call; the toolkit links no DGN code of its own.
#pragma once

#include <cstdint>

#include "toolkit/core/PwArray.h"
#include "toolkit/core/PwErrorStatus.h"
#include "toolkit/core/PwString.h"

/// One reference (attachment) of a DGN file.
struct PwDbDgnRefFileData {
    /// The path as the DGN file records it; may be relative or a file:// URL.
    PwString storedPath;
    /// The reference's full path when the file was found; empty otherwise.
    PwString resolvedPath;
    /// Identifies the attachment within its file, the same at every read.
    uint64_t refId = 0;
};

/// The name of the module's entry that reads a file's references.
inline constexpr char kPwDbDgnReferencesEntry[] = "DGNGetFileReferences";

/// The entry's type: the DGN file, a text the toolkit passes as null, the array to fill.
using PwDbDgnReferencesFunction = Plotwright::ErrorStatus (*)(const char16_t*, const char16_t*,
                                                              PwArray<PwDbDgnRefFileData*>&);

/// Appends the references of the DGN file `name` to `references`; the caller owns the records
/// (delete each). The module's status: StatusFileNotFound for a missing file,
/// StatusBadFileFormat for a file that isn't a readable DGN file. StatusModuleNotFound when the
/// module can't be loaded or lacks the entry; StatusInvalidInput for a null name.
Plotwright::ErrorStatus pwdbGetDgnFileReferences(const char16_t* name, const char16_t* unused,
                                                 PwArray<PwDbDgnRefFileData*>& references);
