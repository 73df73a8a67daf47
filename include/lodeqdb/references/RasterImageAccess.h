// Raster image definitions for the library: their names, their load state, and the
// definitions of one image file across a drawing and its references. `RasterImage` takes the
// id of a definition, not of a placed image.
//
//   for (PwDbObjectId id : LodeQDBUtil::RasterImageDef::ObjectId(path, &host))
//       LodeQDBUtil::RasterImage::Reload(id);
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/platform/ObjectPointer.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>

class PwDbDatabase;
class PwDbDictionary;

namespace LodeQDBUtil {

namespace RasterImageDef {

/// The active file name; the pointer must be usable.
wstring ActiveFileName(const ObjectPointer<PwDbRasterImageDef>& image);
/// The active file name; empty for null.
wstring ActiveFileName(const PwDbRasterImageDef* image);
wstring SourceFileName(const ObjectPointer<PwDbRasterImageDef>& image);
/// The active file name, or the source file name when that is empty. Not null.
wstring FileName(PwDbRasterImageDef* image);
/// The setters need the definition open for write; they neither test nor upgrade the open.
Plotwright::ErrorStatus SetActiveFileName(ObjectPointer<PwDbRasterImageDef>& image,
                                          const wstring& path);
Plotwright::ErrorStatus SetActiveFileName(PwDbRasterImageDef& image, const wstring& path);
Plotwright::ErrorStatus SetSourceFileName(ObjectPointer<PwDbRasterImageDef>& image,
                                          const wstring& path);
/// The definitions named `path` (active name, else source name, compared exactly) in
/// `database` and every drawing loaded below it: at most one a drawing, in the graph's order.
std::vector<PwDbObjectId> ObjectId(const wstring& path, PwDbDatabase* database);

}  // namespace RasterImageDef

namespace RasterImage {

/// Whether the definition `id` is loaded; false for the null id or one that can't be reached.
bool IsLoaded(const PwDbObjectId& id);
/// Unloads the definition `id` when loaded, then loads it; the status of the load, or of the
/// open when the definition can't be reached.
Plotwright::ErrorStatus Reload(const PwDbObjectId& id);
Plotwright::ErrorStatus Reload(PwDbRasterImageDef* image);

}  // namespace RasterImage

namespace ImageDictionary {

/// `database`'s image dictionary opened for read (the caller closes it); null when there is
/// none or it can't be opened.
PwDbDictionary* Get(const PwDbDatabase& database);

}  // namespace ImageDictionary

}  // namespace LodeQDBUtil
