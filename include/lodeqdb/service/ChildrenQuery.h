// The files a drawing depends on directly: its external references, then its raster images,
// then its underlays (PLF, DGN, PDF), one record each, in that order and nothing sorted.
//
//   for (const auto& child : LodeQDBService::Request::PlotwrightChildren(u"/srv/site.plw",
//   nullptr))
//       show(child.GetFullname(), child.GetType(), child.GetXrefStatus());
//
// Only the drawing's own references count, not those of its references. A reference is
// listed whatever its state, with the status it has; an image definition that no placed image
// uses is not (PwDbRasterImageDef::skipAsChild). Relative names are made absolute against the
// folder of the drawing asked about, never the working directory. A file that can't be read
// throws as LodeQDBUtil::ReadFileToDatabase does.
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/service/FileData.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;

namespace LodeQDBService::Request {

/// Lets a caller who knows better where a dependency's file lies correct the name of a record.
class FoundAtPathHelper {
  public:
    FoundAtPathHelper() = default;
    FoundAtPathHelper(const FoundAtPathHelper&) = default;
    FoundAtPathHelper(FoundAtPathHelper&&) = default;
    FoundAtPathHelper& operator=(const FoundAtPathHelper&) = default;
    FoundAtPathHelper& operator=(FoundAtPathHelper&&) = default;

    /// For the object `id` that makes a reference: true with a non-empty `path` replaces the
    /// record's name (a relative path is taken against the drawing's folder). The base knows
    /// nothing better: false, `path` untouched.
    virtual bool GetFullPath(const PwDbObjectId& id, wstring& path);
};

/// The children of the drawing at `path` below `drawing`: the reference drawing that
/// `drawing` has loaded from that path, else the file read now (and then gone again, as for
/// the form by file).
std::vector<FileData> PlotwrightChildren(PwDbDatabase& drawing, const wstring& path,
                                         FoundAtPathHelper* helper);
/// The children of the drawing loaded for the reference block `referenceId` below
/// `drawing`; that block must be a resolved reference. Empty when nothing is loaded for it.
std::vector<FileData> PlotwrightChildren(PwDbDatabase& drawing, const PwDbObjectId& referenceId,
                                         FoundAtPathHelper* helper);
/// The children of `drawing` itself.
std::vector<FileData> PlotwrightChildren(PwDbDatabase& drawing, FoundAtPathHelper* helper);
/// The children of the drawing file `path`, read (with its references resolved) for the query.
/// That drawing is gone when the query returns: the records' object ids name nothing any more,
/// only their ref ids (the objects' handles) stay meaningful.
std::vector<FileData> PlotwrightChildren(const wstring& path, FoundAtPathHelper* helper);

}  // namespace LodeQDBService::Request
