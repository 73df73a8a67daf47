// The native .plw file: header, application information and the drawing's sections.
#include "toolkit/file/PwDbPlwCodec.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

#include <lodeqdb/toolkit/file/PwDbAppInfoMarker.h>

#include "toolkit/file/PwDbPlwBytes.h"
#include "toolkit/file/PwDbPlwFrame.h"
#include "toolkit/file/PwDbPlwIndexed.h"
#include "toolkit/file/PwDbPlwRecords.h"

namespace {

using Plotwright::ErrorStatus;

constexpr size_t kHeaderSize = kPwDbPlwHeaderSize;
constexpr uint32_t kSettingsTag = kPwDbPlwSettingsTag;
constexpr uint32_t kObjectsTag = kPwDbPlwObjectsTag;
constexpr uint32_t kPreviewTag = kPwDbPlwPreviewTag;
constexpr uint32_t kEndTag = kPwDbPlwEndTag;

using PlwHeader = PwDbPlwHeader;
using Section = PwDbPlwSection;

// ---- writing ----

ErrorStatus EncodeInto(const PwDbDrawingImage& image, std::string& file) {
    if (image.measurement != PwDb::Imperial && image.measurement != PwDb::Metric) {
        return Plotwright::StatusInvalidInput;
    }
    file.assign(kHeaderSize, '\0');
    PwDbPlwWriter out(file);
    if (!pwdbPlwWriteAppInfo(out, image.appInfo)) return Plotwright::StatusInvalidInput;
    const size_t sectionsOffset = out.size();
    pwdbPlwWriteSettings(out, image);
    const size_t objects = pwdbPlwBeginSection(out, kObjectsTag);
    if (auto status = pwdbPlwWriteObjects(image.objects, file)) return status;
    pwdbPlwEndSection(out, objects);
    if (image.preview && !pwdbPlwWritePreview(out, *image.preview)) return Plotwright::StatusInvalidInput;
    pwdbPlwEndSection(out, pwdbPlwBeginSection(out, kEndTag));
    pwdbPlwWriteHeader(file, image.version, kPwDbPlwWholeRecordsRevision, sectionsOffset);
    return Plotwright::StatusOk;
}

// ---- reading ----

bool ReadSections(std::string_view sections, int32_t version, PwDbDrawingImage& image) {
    PwDbPlwReader in(sections);
    Section section;
    if (!pwdbPlwReadSoundSection(in, section) || section.tag != kSettingsTag ||
        !pwdbPlwReadSettings(section.payload, version, image)) {
        return false;
    }
    if (!pwdbPlwReadSoundSection(in, section) || section.tag != kObjectsTag ||
        !pwdbPlwReadObjects(section.payload, image.objects)) {
        return false;
    }
    if (!pwdbPlwReadSoundSection(in, section)) return false;
    if (section.tag == kPreviewTag) {
        if (!pwdbPlwReadPreview(section.payload, image.preview.emplace())) return false;
        if (!pwdbPlwReadSoundSection(in, section)) return false;
    }
    return section.tag == kEndTag && section.payload.empty() && in.left() == 0;
}

ErrorStatus DecodeInto(std::string_view file, PwDbDrawingImage& image) {
    PlwHeader header;
    if (!pwdbPlwReadHeader(file, file.size(), header)) return Plotwright::StatusBadFileFormat;
    if (header.revision == kPwDbPlwIndexedRevision) return pwdbPlwDecodeIndexed(file, image);
    const auto appInfo = file.substr(kHeaderSize, header.sectionsOffset - kHeaderSize);
    if (!pwdbPlwChecksumHolds(header.appInfoCrc, appInfo) || !pwdbPlwReadAppInfo(appInfo, image.appInfo)) {
        return Plotwright::StatusBadFileFormat;
    }
    if (!ReadSections(file.substr(header.sectionsOffset), header.version, image)) {
        return Plotwright::StatusBadFileFormat;
    }
    return Plotwright::StatusOk;
}

// Walks the sections by their lengths, checking only the order of their tags, up to the
// preview or the end; of the payloads only the preview's is read and checked.
bool FindPreview(std::string_view sections, std::optional<PwDbPreviewImage>& preview) {
    PwDbPlwReader in(sections);
    Section section;
    if (!pwdbPlwReadSection(in, section) || section.tag != kSettingsTag || !pwdbPlwReadSection(in, section) ||
        section.tag != kObjectsTag || !pwdbPlwReadSection(in, section)) {
        return false;
    }
    if (section.tag == kEndTag) return section.payload.empty();
    return section.tag == kPreviewTag && section.sound() &&
           pwdbPlwReadPreview(section.payload, preview.emplace());
}

}  // namespace

Plotwright::ErrorStatus pwdbEncodePlw(const PwDbDrawingImage& image, std::string& bytes) {
    if (pwdbSignatureForVersion(image.version) == nullptr) return Plotwright::StatusNoSuchVersion;
    try {
        std::string file;
        if (auto status = EncodeInto(image, file)) return status;
        bytes.swap(file);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    }
}

Plotwright::ErrorStatus pwdbDecodePlw(std::string_view bytes, PwDbDrawingImage& image) {
    // Every length is bounded by the bytes that remain before anything is reserved for it,
    // so running out of memory here means the drawing itself doesn't fit.
    try {
        PwDbDrawingImage read;
        if (auto status = DecodeInto(bytes, read)) return status;
        image = std::move(read);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    }
}

Plotwright::ErrorStatus pwdbDecodePlwPreview(std::string_view bytes,
                                             std::optional<PwDbPreviewImage>& preview) {
    try {
        PlwHeader header;
        std::optional<PwDbPreviewImage> read;
        if (!pwdbPlwReadHeader(bytes, bytes.size(), header)) return Plotwright::StatusBadFileFormat;
        if (header.revision == kPwDbPlwIndexedRevision) {
            // The preview stands before the records there, in the front read anyway.
            const PwDbPlwFrontExtent extent = pwdbPlwIndexedFrontExtent(bytes, bytes.size());
            PwDbPlwIndexedFront front;
            if (!extent.sound || !extent.complete ||
                !pwdbPlwReadIndexedFront(bytes.substr(0, extent.end), bytes.size(), front)) {
                return Plotwright::StatusBadFileFormat;
            }
            read = std::move(front.head.preview);
        } else if (!FindPreview(bytes.substr(header.sectionsOffset), read)) {
            return Plotwright::StatusBadFileFormat;
        }
        preview = std::move(read);
        return Plotwright::StatusOk;
    } catch (const std::bad_alloc&) {
        return Plotwright::StatusOutOfMemory;
    }
}

bool pwdbPlwStartFits(std::string_view start, uint64_t fileSize) {
    static_assert(kPwDbPlwStartBytes == kHeaderSize, "the start judged is the header");
    PlwHeader header;
    return pwdbPlwReadHeader(start, fileSize, header);
}
