// Turning one reference attachment of a design file into a DGN underlay of the drawing: a
// definition naming the referenced file, and a reference that places it.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

struct DgnUnderlayPlacement {
    /// The definition's key in the drawing's DGN underlay dictionary.
    wstring key;
    /// The referenced file: where it was found, or as stored when it wasn't.
    wstring sourcePath;
    /// Where the referenced file's origin lands, in drawing units.
    PwGePoint3d position;
    double scale = 1.0;
};

/// Adds the definition and a reference to it in `block`; `className` receives the class name
/// of the reference entity made. On failure nothing stays in the drawing and the status of the
/// refused step is given back (StatusDuplicateKey for a key in use).
Plotwright::ErrorStatus dgnAddAttachmentUnderlay(PwDbDatabase& drawing, PwDbObjectId block,
                                                 const DgnUnderlayPlacement& placement,
                                                 wstring& className);
