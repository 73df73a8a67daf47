// The attachment layout, in bytes from the element's start, after the element and display
// headers: the attached file's name, file number, options, level flags, the two origins, the
// matrix, then the logical name and the description.
#include "modules/dgn/DgnV7Attachments.h"

#include <algorithm>
#include <cmath>

#include "modules/dgn/DgnV7Bytes.h"
#include "modules/dgn/DgnV7Reader.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>

namespace {

constexpr uint8_t kType5AttachmentLevel = 9;
constexpr uint8_t kType66AttachmentLevel = 5;

constexpr size_t kStoredPathLengthOffset = 36;
constexpr size_t kStoredPathOffset = 38;
constexpr size_t kStoredPathRoom = 65;
constexpr size_t kFileNumberOffset = 103;
constexpr size_t kReferenceOriginOffset = 188;
constexpr size_t kMatrixOffset = 200;
constexpr size_t kMasterOriginOffset = 280;
constexpr size_t kLogicalNameLengthOffset = 292;
constexpr size_t kLogicalNameOffset = 294;
constexpr size_t kLogicalNameRoom = 22;
constexpr size_t kDescriptionLengthOffset = 316;
constexpr size_t kDescriptionOffset = 318;
constexpr size_t kDescriptionRoom = 42;

// A counted text field: the count (capped by the field's room) or the first NUL ends it.
bool ReadCountedText(const DgnV7Bytes& bytes, size_t countOffset, size_t textOffset, size_t room,
                     wstring& text) {
    uint16_t count = 0;
    if (!bytes.readShort(countOffset, count) || !bytes.holds(textOffset, room)) return false;
    text.clear();
    for (size_t i = 0; i < std::min<size_t>(count, room); ++i) {
        uint8_t unit = 0;
        bytes.readByte(textOffset + i, unit);
        if (unit == 0) break;
        text.push_back(static_cast<char16_t>(unit));
    }
    return true;
}

bool ReadLongPoint(const DgnV7Bytes& bytes, size_t offset, DgnV7Point& point) {
    int32_t values[3] = {0, 0, 0};
    for (size_t i = 0; i < 3; ++i) {
        if (!bytes.readLong(offset + 4 * i, values[i])) return false;
    }
    point = {static_cast<double>(values[0]), static_cast<double>(values[1]),
             static_cast<double>(values[2])};
    return true;
}

}  // namespace

bool dgnIsAttachmentElement(const DgnV7RawElement& element) {
    return (element.type == kDgnGroupData && element.level == kType5AttachmentLevel) ||
           (element.type == kDgnApplication && element.level == kType66AttachmentLevel);
}

bool dgnDecodeAttachment(const DgnV7RawElement& element, DgnV7Attachment& attachment) {
    const DgnV7Bytes bytes(element.bytes);
    DgnV7Attachment read;
    read.wordOffset = element.wordOffset();
    read.elementType = element.type;
    if (!ReadCountedText(bytes, kStoredPathLengthOffset, kStoredPathOffset, kStoredPathRoom,
                         read.storedPath) ||
        !bytes.readByte(kFileNumberOffset, read.fileNumber) ||
        !ReadLongPoint(bytes, kReferenceOriginOffset, read.referenceOrigin) ||
        !ReadLongPoint(bytes, kMasterOriginOffset, read.masterOrigin) ||
        !ReadCountedText(bytes, kLogicalNameLengthOffset, kLogicalNameOffset, kLogicalNameRoom,
                         read.logicalName) ||
        !ReadCountedText(bytes, kDescriptionLengthOffset, kDescriptionOffset, kDescriptionRoom,
                         read.description))
        return false;
    double row[3] = {0.0, 0.0, 0.0};
    bool matrixRead = true;
    for (size_t i = 0; i < 3; ++i) matrixRead &= bytes.readDouble(kMatrixOffset + 8 * i, row[i]);
    const double scale = std::sqrt(row[0] * row[0] + row[1] * row[1] + row[2] * row[2]);
    read.scale = matrixRead && std::isfinite(scale) && scale > 0.0 ? scale : 1.0;
    attachment = std::move(read);
    return true;
}

std::vector<DgnV7Attachment> dgnCollectAttachments(const DgnV7DesignFile& document) {
    std::vector<DgnV7Attachment> attachments;
    DgnV7ElementStream stream(document.bytes());
    DgnV7RawElement element;
    while (stream.next(element)) {
        DgnV7Attachment attachment;
        if (!element.deleted && dgnIsAttachmentElement(element) &&
            dgnDecodeAttachment(element, attachment))
            attachments.push_back(std::move(attachment));
    }
    return attachments;
}

wstring dgnResolveAttachment(const wstring& designPath, const wstring& storedPath) {
    if (storedPath.empty()) return wstring();
    // The design file stands in as the holder, so that the search starts beside it.
    PwDbDatabase holder(false, true);
    if (!designPath.empty()) holder.setFilename(designPath);
    wstring found;
    if (pwdbFindDependentFile(found, storedPath, &holder, PwDbHostApplicationServices::kUnderlay) !=
        Plotwright::StatusOk)
        return wstring();
    return found;
}
