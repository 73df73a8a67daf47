// The native .plw file: header, application information and the drawing's sections.
#include "toolkit/file/PwDbPlwCodec.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <new>
#include <utility>

#include <lodeqdb/toolkit/file/PwDbAppInfoMarker.h>

#include "toolkit/file/PwDbPlwBytes.h"
#include "toolkit/file/PwDbPlwRecords.h"

namespace {

using Plotwright::ErrorStatus;

constexpr size_t kHeaderSize = 128;
constexpr size_t kScanStartOffset = 48;
constexpr size_t kFormatTagOffset = 52;
constexpr size_t kLayoutOffset = 56;
constexpr size_t kVersionOffset = 60;
constexpr size_t kAppInfoCrcOffset = 64;
constexpr size_t kSectionsOffsetOffset = 68;
constexpr size_t kSectionsLengthOffset = 76;
constexpr size_t kFirstReservedOffset = 84;
constexpr size_t kHeaderCrcOffset = 124;
constexpr size_t kSignatureSize = 6;
constexpr std::string_view kFormatTag = "LQDB";
constexpr uint32_t kLayoutRevision = 1;

constexpr uint32_t kAppInfoFirstField = 1;
constexpr char16_t kAppInfoHeaderText[] = u"LodeQDB application information";
// The longest text a 16-bit count can hold, its terminating zero unit being counted too.
constexpr size_t kMostAppInfoUnits = 65534;
// An entry's fewest bytes: its key and a string holding only its terminator.
constexpr size_t kMinAppInfoEntryBytes = 16 + 2 + 2;
constexpr size_t kMinAppInfoBytes = sizeof kPwDbAppInfoMarker + 4 + 2 + 2 + 4;

constexpr uint32_t SectionTag(const char (&name)[5]) {
    return static_cast<uint32_t>(static_cast<uint8_t>(name[0])) |
           static_cast<uint32_t>(static_cast<uint8_t>(name[1])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(name[2])) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(name[3])) << 24;
}
constexpr uint32_t kSettingsTag = SectionTag("SETT");
constexpr uint32_t kObjectsTag = SectionTag("OBJS");
constexpr uint32_t kPreviewTag = SectionTag("PREV");
constexpr uint32_t kEndTag = SectionTag("ENDS");
constexpr size_t kSectionHeadSize = 4 + 8;
constexpr size_t kSettingsSize = 4 + 8 + 4 + 9 * 8;

constexpr PwDbHandle PwDbDrawingRoots::*kRootOrder[] = {&PwDbDrawingRoots::blockTable,
                                                        &PwDbDrawingRoots::layerTable,
                                                        &PwDbDrawingRoots::namedObjects,
                                                        &PwDbDrawingRoots::layoutDictionary,
                                                        &PwDbDrawingRoots::plotSettingsDictionary,
                                                        &PwDbDrawingRoots::modelSpace,
                                                        &PwDbDrawingRoots::paperSpace,
                                                        &PwDbDrawingRoots::layerZero,
                                                        &PwDbDrawingRoots::currentLayer};

// What the header says about the rest of the file.
struct PlwHeader {
    int32_t version = 0;
    uint32_t appInfoCrc = 0;
    uint64_t sectionsOffset = 0;
    uint64_t sectionsLength = 0;
};

// ---- writing ----

bool WriteCountedString(PwDbPlwWriter& out, const wstring& text) {
    if (text.size() > kMostAppInfoUnits) return false;
    out.u16(static_cast<uint16_t>(text.size() + 1));
    out.units(text);
    out.u16(0);
    return true;
}

bool WriteAppInfo(PwDbPlwWriter& out, const std::vector<PwDbAppInfoEntry>& entries) {
    if (entries.size() > UINT32_MAX) return false;
    out.raw(std::string_view(reinterpret_cast<const char*>(kPwDbAppInfoMarker),
                             sizeof kPwDbAppInfoMarker));
    out.u32(kAppInfoFirstField);
    WriteCountedString(out, kAppInfoHeaderText);
    out.u32(static_cast<uint32_t>(entries.size()));
    for (const PwDbAppInfoEntry& entry : entries) {
        out.raw(
            std::string_view(reinterpret_cast<const char*>(entry.key.data()), entry.key.size()));
        if (!WriteCountedString(out, entry.text)) return false;
    }
    return true;
}

// Writes a section's tag and a length to be patched by EndSection; gives where it starts.
size_t BeginSection(PwDbPlwWriter& out, uint32_t tag) {
    const size_t start = out.size();
    out.u32(tag);
    out.u64(0);
    return start;
}

void EndSection(PwDbPlwWriter& out, size_t start) {
    const size_t payloadStart = start + kSectionHeadSize;
    const size_t length = out.size() - payloadStart;
    out.patchU64(start + 4, length);
    out.u32(pwdbPlwCrc32(std::string_view(out.bytes()).substr(payloadStart, length)));
}

void WriteSettings(PwDbPlwWriter& out, const PwDbDrawingImage& image) {
    const size_t start = BeginSection(out, kSettingsTag);
    out.u32(static_cast<uint32_t>(image.version));
    out.u64(image.handseed);
    out.u32(static_cast<uint32_t>(image.measurement));
    for (auto root : kRootOrder) out.u64(image.roots.*root);
    EndSection(out, start);
}

bool WritePreview(PwDbPlwWriter& out, const PwDbPreviewImage& preview) {
    if (preview.width > kPwDbPlwMaxPreviewSide || preview.height > kPwDbPlwMaxPreviewSide ||
        preview.pixels.size() != static_cast<size_t>(preview.width) * preview.height) {
        return false;
    }
    const size_t start = BeginSection(out, kPreviewTag);
    out.u32(preview.width);
    out.u32(preview.height);
    for (uint32_t pixel : preview.pixels) out.u32(pixel);
    EndSection(out, start);
    return true;
}

void WriteHeader(std::string& file, int32_t version, size_t sectionsOffset) {
    PwDbPlwWriter out(file);
    std::memcpy(file.data(), pwdbSignatureForVersion(version), kSignatureSize);
    out.patchU32(kScanStartOffset, kHeaderSize);
    std::memcpy(file.data() + kFormatTagOffset, kFormatTag.data(), kFormatTag.size());
    out.patchU32(kLayoutOffset, kLayoutRevision);
    out.patchU32(kVersionOffset, static_cast<uint32_t>(version));
    const std::string_view whole(file);
    const auto appInfo = whole.substr(kHeaderSize, sectionsOffset - kHeaderSize);
    out.patchU32(kAppInfoCrcOffset, pwdbPlwCrc32(appInfo));
    out.patchU64(kSectionsOffsetOffset, sectionsOffset);
    out.patchU64(kSectionsLengthOffset, file.size() - sectionsOffset);
    out.patchU32(kHeaderCrcOffset, pwdbPlwCrc32(whole.substr(0, kHeaderCrcOffset)));
}

ErrorStatus EncodeInto(const PwDbDrawingImage& image, std::string& file) {
    if (image.measurement != PwDb::Imperial && image.measurement != PwDb::Metric) {
        return Plotwright::StatusInvalidInput;
    }
    file.assign(kHeaderSize, '\0');
    PwDbPlwWriter out(file);
    if (!WriteAppInfo(out, image.appInfo)) return Plotwright::StatusInvalidInput;
    const size_t sectionsOffset = out.size();
    WriteSettings(out, image);
    const size_t objects = BeginSection(out, kObjectsTag);
    if (auto status = pwdbPlwWriteObjects(image.objects, file)) return status;
    EndSection(out, objects);
    if (image.preview && !WritePreview(out, *image.preview)) return Plotwright::StatusInvalidInput;
    EndSection(out, BeginSection(out, kEndTag));
    WriteHeader(file, image.version, sectionsOffset);
    return Plotwright::StatusOk;
}

// ---- reading ----

bool AllZero(std::string_view bytes) {
    return std::all_of(bytes.begin(), bytes.end(), [](char byte) { return byte == '\0'; });
}

uint64_t LittleAt(std::string_view bytes, size_t offset, size_t size) {
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i) {
        value |= static_cast<uint64_t>(static_cast<uint8_t>(bytes[offset + i])) << (8 * i);
    }
    return value;
}

bool ReservedBytesAreZero(std::string_view header) {
    return AllZero(header.substr(kSignatureSize, kScanStartOffset - kSignatureSize)) &&
           AllZero(header.substr(kFirstReservedOffset, kHeaderCrcOffset - kFirstReservedOffset));
}

// The header at the start of a file of `fileSize` bytes; false unless it is sound and its
// lengths agree with the size.
bool ReadHeader(std::string_view start, uint64_t fileSize, PlwHeader& header) {
    if (start.size() < kHeaderSize || fileSize < kHeaderSize) return false;
    const std::string_view head = start.substr(0, kHeaderSize);
    if (!pwdbPlwChecksumHolds(static_cast<uint32_t>(LittleAt(head, kHeaderCrcOffset, 4)),
                              head.substr(0, kHeaderCrcOffset))) {
        return false;
    }
    const uint64_t version = LittleAt(head, kVersionOffset, 4);
    if (version < kPwDbOldestVersion || version > kPwDbNewestVersion) return false;
    header.version = static_cast<int32_t>(version);
    if (head.substr(0, kSignatureSize) != pwdbSignatureForVersion(header.version) ||
        head.substr(kFormatTagOffset, kFormatTag.size()) != kFormatTag ||
        LittleAt(head, kLayoutOffset, 4) != kLayoutRevision ||
        LittleAt(head, kScanStartOffset, 4) != kHeaderSize || !ReservedBytesAreZero(head)) {
        return false;
    }
    header.appInfoCrc = static_cast<uint32_t>(LittleAt(head, kAppInfoCrcOffset, 4));
    header.sectionsOffset = LittleAt(head, kSectionsOffsetOffset, 8);
    header.sectionsLength = LittleAt(head, kSectionsLengthOffset, 8);
    // The sections run exactly to the end of the file: nothing missing, nothing appended.
    return header.sectionsOffset >= kHeaderSize + kMinAppInfoBytes &&
           header.sectionsOffset <= fileSize &&
           header.sectionsLength == fileSize - header.sectionsOffset;
}

bool ReadHeader(std::string_view file, PlwHeader& header) {
    return ReadHeader(file, file.size(), header);
}

bool ReadCountedString(PwDbPlwReader& in, wstring& text) {
    uint16_t count = 0;
    if (!in.u16(count) || count == 0 || !in.units(count, text)) return false;
    if (text.back() != u'\0') return false;
    text.pop_back();
    return true;
}

bool ReadAppInfo(std::string_view section, std::vector<PwDbAppInfoEntry>& entries) {
    PwDbPlwReader in(section);
    std::string_view marker;
    uint32_t firstField = 0;
    wstring headerText;
    uint32_t count = 0;
    if (!in.view(sizeof kPwDbAppInfoMarker, marker) ||
        std::memcmp(marker.data(), kPwDbAppInfoMarker, sizeof kPwDbAppInfoMarker) != 0 ||
        !in.u32(firstField) || firstField != kAppInfoFirstField ||
        !ReadCountedString(in, headerText) || !in.u32(count) ||
        count > in.left() / kMinAppInfoEntryBytes) {
        return false;
    }
    entries.resize(count);
    for (PwDbAppInfoEntry& entry : entries) {
        std::string_view key;
        if (!in.view(entry.key.size(), key)) return false;
        std::memcpy(entry.key.data(), key.data(), key.size());
        if (!ReadCountedString(in, entry.text)) return false;
    }
    return in.left() == 0;
}

// One section as stored: its tag, its payload and the checksum kept for that payload.
struct Section {
    uint32_t tag = 0;
    std::string_view payload;
    uint32_t crc = 0;

    bool sound() const { return pwdbPlwChecksumHolds(crc, payload); }
};

bool ReadSection(PwDbPlwReader& in, Section& section) {
    uint64_t length = 0;
    return in.u32(section.tag) && in.u64(length) && in.view(length, section.payload) &&
           in.u32(section.crc);
}

// The next section, whole and with a checksum that holds.
bool ReadSoundSection(PwDbPlwReader& in, Section& section) {
    return ReadSection(in, section) && section.sound();
}

bool ReadSettings(std::string_view payload, int32_t version, PwDbDrawingImage& image) {
    PwDbPlwReader in(payload);
    uint32_t storedVersion = 0;
    uint32_t measurement = 0;
    if (payload.size() != kSettingsSize || !in.u32(storedVersion) ||
        storedVersion != static_cast<uint32_t>(version) || !in.u64(image.handseed) ||
        !in.u32(measurement) || measurement > PwDb::Metric) {
        return false;
    }
    image.version = version;
    image.measurement = measurement == PwDb::Metric ? PwDb::Metric : PwDb::Imperial;
    for (auto root : kRootOrder) {
        if (!in.u64(image.roots.*root)) return false;
    }
    return true;
}

bool ReadPreview(std::string_view payload, PwDbPreviewImage& preview) {
    PwDbPlwReader in(payload);
    if (!in.u32(preview.width) || !in.u32(preview.height) ||
        preview.width > kPwDbPlwMaxPreviewSide || preview.height > kPwDbPlwMaxPreviewSide) {
        return false;
    }
    const size_t count = static_cast<size_t>(preview.width) * preview.height;
    if (in.left() != count * 4) return false;
    preview.pixels.resize(count);
    for (uint32_t& pixel : preview.pixels) in.u32(pixel);
    return true;
}

bool ReadSections(std::string_view sections, int32_t version, PwDbDrawingImage& image) {
    PwDbPlwReader in(sections);
    Section section;
    if (!ReadSoundSection(in, section) || section.tag != kSettingsTag ||
        !ReadSettings(section.payload, version, image)) {
        return false;
    }
    if (!ReadSoundSection(in, section) || section.tag != kObjectsTag ||
        !pwdbPlwReadObjects(section.payload, image.objects)) {
        return false;
    }
    if (!ReadSoundSection(in, section)) return false;
    if (section.tag == kPreviewTag) {
        if (!ReadPreview(section.payload, image.preview.emplace())) return false;
        if (!ReadSoundSection(in, section)) return false;
    }
    return section.tag == kEndTag && section.payload.empty() && in.left() == 0;
}

ErrorStatus DecodeInto(std::string_view file, PwDbDrawingImage& image) {
    PlwHeader header;
    if (!ReadHeader(file, header)) return Plotwright::StatusBadFileFormat;
    const auto appInfo = file.substr(kHeaderSize, header.sectionsOffset - kHeaderSize);
    if (!pwdbPlwChecksumHolds(header.appInfoCrc, appInfo) || !ReadAppInfo(appInfo, image.appInfo)) {
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
    if (!ReadSection(in, section) || section.tag != kSettingsTag || !ReadSection(in, section) ||
        section.tag != kObjectsTag || !ReadSection(in, section)) {
        return false;
    }
    if (section.tag == kEndTag) return section.payload.empty();
    return section.tag == kPreviewTag && section.sound() &&
           ReadPreview(section.payload, preview.emplace());
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
        if (!ReadHeader(bytes, header) || !FindPreview(bytes.substr(header.sectionsOffset), read)) {
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
    return ReadHeader(start, fileSize, header);
}
