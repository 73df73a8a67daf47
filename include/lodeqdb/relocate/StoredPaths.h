// The paths a drawing stores for the files it depends on, listed and changed in one place:
// references (block path names), raster image definitions and underlay definitions (PDF, DGN,
// PLF); and the attachments a DGN design file stores, which are listed only.
//
//   PwDbDatabase drawing(false, true);
//   LodeQDBUtil::ReadFileToDatabase(u"/srv/site.plw", drawing, true, false);
//   for (const LodeQDBRelocate::StoredPath& entry : LodeQDBRelocate::ListStoredPaths(drawing))
//       if (entry.path == u"old.plw") LodeQDBRelocate::SetStoredPath(entry, u"new.plw");
//
// Nothing here saves a drawing: a changed path lives in the database until its owner saves it.
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;

namespace LodeQDBRelocate {

/// What stores a path.
enum class StoredPathKind {
    Reference,      ///< a block that refers to another drawing
    Image,          ///< a raster image definition
    PdfUnderlay,    ///< a PDF underlay definition
    DgnUnderlay,    ///< a DGN underlay definition
    PlfUnderlay,    ///< a PLF underlay definition
    DgnAttachment,  ///< an attachment of a DGN design file (never changed here)
};

/// The kind as programs and people read it: "reference", "image", "pdf-underlay",
/// "dgn-underlay", "plf-underlay", "dgn-attachment".
const char* StoredPathKindName(StoredPathKind kind);

/// The hint pwdbFindDependentFile takes for a path of this kind.
PwDbHostApplicationServices::FindFileHint FindHintFor(StoredPathKind kind);

/// One stored path.
struct StoredPath {
    StoredPathKind kind = StoredPathKind::Reference;
    /// The block or definition that stores the path; null for a DGN attachment.
    PwDbObjectId objectId;
    /// The block's name, the definition's key in its dictionary, or the attachment's logical
    /// name.
    wstring name;
    /// The path exactly as stored.
    wstring path;
    /// False for an image definition that no placed image uses: no dependency of the drawing
    /// (the dependency listing passes over it), though its path is stored.
    bool inUse = true;
};

/// Every stored path of `drawing`: its references in block table order (erased blocks left
/// out), its image definitions in dictionary order, then its PLF, DGN and PDF underlay
/// definitions, the order in which the dependency listing names them. Objects that can't be
/// opened are passed over. The same drawing read twice gives the same list in the same order.
std::vector<StoredPath> ListStoredPaths(PwDbDatabase& drawing);

/// Stores `path` in the object of `entry` (a reference's loaded drawing, if any, is let go; a
/// definition is unloaded). The object's status: StatusNotOpenForWrite when another holder
/// keeps it open, StatusInvalidInput for a DGN attachment, which can't be changed here.
Plotwright::ErrorStatus SetStoredPath(const StoredPath& entry, const wstring& path);

/// The attachments of the DGN design file `dgnPath`, in file order, each with the path it
/// stores and, in `found`, the file the DGN reader found for it (empty when none). Throws as
/// LodeQDBService::Request::DGNChildren does for a file that can't be read.
struct DgnAttachment {
    StoredPath stored;
    wstring found;
};
std::vector<DgnAttachment> ListDgnAttachments(const wstring& dgnPath);

}  // namespace LodeQDBRelocate
