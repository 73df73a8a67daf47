// Questions and changes about the model documents of a drawing: its views of Gearmark model
// documents, the redirection information of those documents, and the Gearmark drawing file it
// may carry (see PwModelDocObjects.h for where a drawing keeps them).
//
//   if (PwModelDocObjUtil::hasGearmarkModelDocViews(&drawing)) {
//       PwString unpacked;
//       if (PwModelDocObjUtil::unpackGearmarkDrawingFile(&drawing, unpacked) ==
//           Plotwright::StatusOk)
//           open(unpacked.kwszPtr());   // the caller removes the file and its folder
//   }
//
// These live in the toolkit library itself, not in a module loaded on demand: the object
// classes must be registered before any drawing is read, or a reader makes proxies of them.
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/core/PwString.h>

class PwDbDatabase;

namespace PwModelDocObjUtil {

/// True when the drawing's views dictionary holds a view that isn't erased and comes from
/// Gearmark. False for null, for a drawing without the dictionary, and when the dictionary
/// can't be opened.
bool hasGearmarkModelDocViews(PwDbDatabase* database);

/// Stores `info` as the drawing's redirection information, replacing what was there; the
/// empty text is stored as it is (a drawing that redirects nothing). StatusNullDatabase for
/// null; StatusNotThatKindOfClass when the root dictionary's entry is of another class; else
/// the status of opening or filing the object.
Plotwright::ErrorStatus setRedirectionsInfo(PwDbDatabase* database, const PwString& info);

/// The redirection information stored in the drawing. StatusNullDatabase for null,
/// StatusKeyNotFound when none is stored, StatusNotThatKindOfClass for an entry of another
/// class. `info` is changed only on success.
Plotwright::ErrorStatus getRedirectionsInfo(PwDbDatabase* database, PwString& info);

/// Writes the Gearmark drawing file that the drawing carries into a new folder made for it
/// under the system's folder for temporary files, under the file's own name, and gives the
/// file's full path. The caller owns the file and its folder. StatusNullDatabase for null,
/// StatusKeyNotFound when the drawing carries no file, StatusNotThatKindOfClass for an entry
/// of another class, StatusFileIOError (or another file status) when it can't be written;
/// nothing is left on disk after a failure. `path` is changed only on success.
Plotwright::ErrorStatus unpackGearmarkDrawingFile(PwDbDatabase* database, PwString& path);

/// As above, into the existing folder `folder`. A file of that name there is never replaced:
/// StatusFileIOError.
Plotwright::ErrorStatus unpackGearmarkDrawingFile(PwDbDatabase* database, const PwString& folder,
                                                  PwString& path);

}  // namespace PwModelDocObjUtil
