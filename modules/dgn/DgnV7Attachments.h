// Reference file attachments of a DGN V7 design file: elements of type 5 on level 9, and of
// type 66 on level 5 (the form used beyond 32 attachments, for clip masks, or for a 2D file
// attached to a 3D one). Both share one layout.
//
//   for (const DgnV7Attachment& attachment : dgnCollectAttachments(*document)) {
//       wstring found = dgnResolveAttachment(document->path(), attachment.storedPath);
//   }
#pragma once

#include <cstdint>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include "modules/dgn/DgnV7DesignFile.h"
#include "modules/dgn/DgnV7Elements.h"

struct DgnV7Attachment {
    /// Where the attachment element starts, in words: its identity within the file.
    uint64_t wordOffset = 0;
    /// 5 or 66.
    int32_t elementType = 0;
    uint8_t fileNumber = 0;
    /// The attached file's name as stored (Latin-1, at most 65 characters).
    wstring storedPath;
    wstring logicalName;
    wstring description;
    /// The point of the referenced file (in its UOR) placed at masterOrigin (in this file's).
    DgnV7Point referenceOrigin;
    DgnV7Point masterOrigin;
    /// Reference units to master units: the length of the first row of the attachment's
    /// matrix; 1 when that isn't a finite positive number.
    double scale = 1.0;
};

/// True for the element kinds that hold an attachment.
bool dgnIsAttachmentElement(const DgnV7RawElement& element);

/// Decodes an attachment element; false for one too short to hold its texts.
bool dgnDecodeAttachment(const DgnV7RawElement& element, DgnV7Attachment& attachment);

/// Every attachment of the file that isn't deleted, in file order. Attachment elements too
/// short to decode are left out.
std::vector<DgnV7Attachment> dgnCollectAttachments(const DgnV7DesignFile& document);

/// The file an attachment stored as `storedPath` refers to, found as every dependent file is
/// (pwdbFindDependentFile with the design file as the holder): the stored path (a relative one
/// beside the design file), then its bare name beside the design file, then the host's hook.
/// Empty when none is found.
wstring dgnResolveAttachment(const wstring& designPath, const wstring& storedPath);
