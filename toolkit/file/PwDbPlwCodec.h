// PwDbPlwCodec: the native .plw file format, between a PwDbDrawingImage and its bytes.
//
//   std::string bytes;
//   if (auto status = pwdbEncodePlw(image, bytes)) return status;
//   PwDbDrawingImage read;
//   if (auto status = pwdbDecodePlw(bytes, read)) return status;   // StatusBadFileFormat
//   std::optional<PwDbPreviewImage> preview;
//   pwdbDecodePlwPreview(bytes, preview);                           // the picture alone
//
// The codec works on memory only; reading and writing files is the caller's business.
// Every number is little-endian. A file is a 128-byte header, the application information
// section at offset 128, then the drawing as a run of checksummed sections (docs/
// native-file-format.md tells the whole story).
//
// The header:
//
//   OFFSET  SIZE  DESCRIPTION
//   0       6     signature of the version, pwdbSignatureForVersion ("PW1032", ...)
//   6       7     zero
//   13      4     zero
//   17      27    zero
//   44      4     zero
//   48      4     uint32 scan start: 128, where the application information begins
//   52      4     format tag "LQDB"
//   56      4     uint32 layout revision: 1 (whole records, this codec) or 2 (PwDbPlwIndexed.h)
//   60      4     uint32 exact version, 16 to 33; its signature is the one at offset 0
//   64      4     uint32 CRC-32 of the application information section
//   68      8     uint64 offset of the drawing sections (the end of the application information)
//   76      8     uint64 length of the drawing sections, up to the end of the file
//   84      40    zero
//   124     4     uint32 CRC-32 of header bytes 0 to 123
//
// The application information section, at offset 128:
//
//   OFFSET  SIZE  DESCRIPTION
//   0       32    marker 53 DE 38 1D EC 43 21 CA 96 19 E1 E2 17 1A 2A 67
//                        3B D9 7F F7 3C BB CE 08 A0 53 D8 ED D2 8D C5 C7
//   32      4     uint32 1
//   36      s     header string "LodeQDB application information"
//   36+s    4     uint32 number of entries
//   ...           per entry: 16 GUID bytes as PwDbGuidBytes holds them, then the text string
//
//   A string there is a uint16 count of UTF-16LE units that follow, the terminating zero unit
//   included, then those units.
//
// Each drawing section:
//
//   OFFSET  SIZE  DESCRIPTION
//   0       4     tag: "SETT", "OBJS", "PREV" or "ENDS"
//   4       8     uint64 payload length n
//   12      n     payload
//   12+n    4     uint32 CRC-32 of the payload
//
//   The sections come in this order: SETT, OBJS, PREV (only when there is a preview), ENDS
//   (empty), and the file ends with the last one.
//
// The settings payload (SETT), 88 bytes:
//
//   OFFSET  SIZE  DESCRIPTION
//   0       4     uint32 exact version, equal to the header's
//   4       8     uint64 handseed
//   12      4     uint32 measurement: 0 imperial, 1 metric
//   16      72    nine uint64 root handles: block table, layer table, named objects, layout
//                 dictionary, plot settings dictionary, model space, paper space, layer "0",
//                 current layer
//
// The objects payload (OBJS): a uint64 number of records, then per record:
//
//   SIZE  DESCRIPTION
//   4     uint32 number of class names, at least 1
//   ...   each name: uint32 count of UTF-16LE units (at least 1), then the units
//   8     uint64 handle
//   1     erased flag, 0 or 1
//   4     uint32 number of data items
//   ...   each item: a 1-byte tag, then its payload:
//           1 text    uint32 count of UTF-16LE units, then the units
//           2 int32   4 bytes
//           3 int64   8 bytes
//           4 double  8 bytes, the IEEE 754 bits
//           5 bool    1 byte, 0 or 1
//           6 bytes   uint32 count, then the bytes
//           7 handle  uint64
//
// The preview payload (PREV): uint32 width, uint32 height (each at most 4096), then
// width * height uint32 pixels 0xAARRGGBB, rows top first; nothing more.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include "toolkit/file/PwDbDrawingImage.h"

/// The largest preview width and height a file holds.
inline constexpr uint32_t kPwDbPlwMaxPreviewSide = 4096;

/// Writes `image` as a native file into `bytes` (which is replaced only on success).
/// StatusNoSuchVersion for a version outside 16..33; StatusInvalidInput for what the file
/// can't hold: an application information text longer than 65534 units, a record without
/// class names or with an empty one, a measurement other than imperial or metric, a preview
/// whose pixel count isn't width * height or whose side passes 4096, a count past 32 bits.
Plotwright::ErrorStatus pwdbEncodePlw(const PwDbDrawingImage& image, std::string& bytes);

/// The number of bytes at a native file's start that pwdbPlwStartFits judges.
inline constexpr size_t kPwDbPlwStartBytes = 128;

/// Whether the first kPwDbPlwStartBytes of a file of `fileSize` bytes are a sound native header
/// whose lengths agree with that size: the check made before a whole file is read, so that a
/// file that isn't a drawing costs a few bytes however large it is.
bool pwdbPlwStartFits(std::string_view start, uint64_t fileSize);

/// Reads a whole native file. StatusBadFileFormat for anything that isn't one, sound from
/// its first byte to its last, checksums included; `image` is written only on success.
Plotwright::ErrorStatus pwdbDecodePlw(std::string_view bytes, PwDbDrawingImage& image);

/// Reads the preview of a native file without reading its objects: the header, then the
/// sections skipped by their lengths until the preview. Only the header's and the preview's
/// checksums are checked. StatusOk with an empty `preview` when the file has none;
/// StatusBadFileFormat for a header, section run or preview that isn't sound. `preview` is
/// written only on success.
Plotwright::ErrorStatus pwdbDecodePlwPreview(std::string_view bytes,
                                             std::optional<PwDbPreviewImage>& preview);
