// PwDbDgnRefFileData: one reference file attachment of a DGN design file, as
// pwdbGetDgnFileReferences and the DGN module's DGNGetFileReferences report it. Records come
// from the heap; whoever receives them deletes each one.
#pragma once

#include <cstdint>

#include <lodeqdb/toolkit/core/PwString.h>

struct PwDbDgnRefFileData {
    /// The attached file's name exactly as the attachment stores it.
    PwString storedPath;
    /// The absolute path of the file found for it (beside the design file by the stored path,
    /// then by its bare name, then through the host's findFile hook); empty when none is found.
    PwString resolvedPath;
    /// Identifies the attachment within its design file and stays the same between reads of
    /// an unchanged file: the word offset of the attachment element from the file's start.
    uint64_t refId = 0;
    /// The attachment's logical name and description; empty when it has none.
    PwString logicalName;
    PwString description;
    /// The file number the design file gives the attachment (1 to 255).
    int32_t fileNumber = 0;
    /// 5 for an attachment element of type 5 (level 9), 66 for one of type 66 (level 5).
    int32_t elementType = 0;
    /// The attachment's scale: reference file units to master file units.
    double scale = 1.0;
};
