// Model document references of Gearmark, the mechanical design product, behind wide strings:
// whether a drawing shows Gearmark model document views, its redirection information, the
// Gearmark drawing file it may carry, and how a Tandem reference id looks.
//
//   if (LodeQDBUtil::GearmarkRef::PlwHasGearmarkModelDocViews(u"/srv/gear.plw")) { ... }
//   wstring unpacked;
//   if (LodeQDBUtil::GearmarkRef::UnpackGearmarkDrawingFile(&drawing, unpacked) == 0)
//       open(unpacked);   // the caller removes the file and its folder
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;

namespace LodeQDBUtil::GearmarkRef {

/// Reads the drawing file `path` (.plw or .plx) into a database of its own and tells whether
/// it shows Gearmark model document views. A file that can't be read throws what
/// ThrowLodeExceptionOnFile makes of the status.
bool PlwHasGearmarkModelDocViews(const wstring& path);
/// As above, reading into the caller's `database`, which then holds the file.
bool PlwHasGearmarkModelDocViews(const wstring& path, PwDbDatabase& database);
/// Asks about `database` as it is; nothing is read. False for null.
bool PlwHasGearmarkModelDocViews(PwDbDatabase* database);

/// The pattern that a Tandem reference id matches: "TDM_GMK:GMD:" and then a named group
/// GearmarkRefId of one or more characters of any kind, line ends included. The library
/// doesn't apply it; it hands it to clients.
wstring GetTandemGearmarkRefIdPattern();

/// Stores `info` (the empty text included) as the drawing's redirection information; the
/// toolkit's status.
Plotwright::ErrorStatus SetRedirectionsInfo(PwDbDatabase& database, const wstring& info);

/// Writes the Gearmark drawing file that `database` carries to disk and gives its full path
/// in `result`; on any other status than StatusOk `result` stays as it was. The toolkit's
/// status, StatusKeyNotFound when the drawing carries no file.
Plotwright::ErrorStatus UnpackGearmarkDrawingFile(PwDbDatabase* database, wstring& result);

}  // namespace LodeQDBUtil::GearmarkRef
