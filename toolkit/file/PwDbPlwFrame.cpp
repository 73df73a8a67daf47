// The parts of the native file every layout revision shares: header, application
// information, sections, settings and preview.
#include "toolkit/file/PwDbPlwFrame.h"

#include <algorithm>
#include <cstring>

#include <lodeqdb/toolkit/file/PwDbAppInfoMarker.h>

#include "toolkit/file/PwDbPlwCodec.h"

namespace {

constexpr size_t kHeaderSize = kPwDbPlwHeaderSize;
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

constexpr uint32_t kAppInfoFirstField = 1;
constexpr char16_t kAppInfoHeaderText[] = u"LodeQDB application information";
// The longest text a 16-bit count can hold, its terminating zero unit being counted too.
constexpr size_t kMostAppInfoUnits = 65534;
// An entry's fewest bytes: its key and a string holding only its terminator.
constexpr size_t kMinAppInfoEntryBytes = 16 + 2 + 2;
constexpr size_t kMinAppInfoBytes = sizeof kPwDbAppInfoMarker + 4 + 2 + 2 + 4;

constexpr uint32_t kSettingsTag = kPwDbPlwSettingsTag;
constexpr uint32_t kPreviewTag = kPwDbPlwPreviewTag;
constexpr size_t kSectionHeadSize = kPwDbPlwSectionHeadSize;
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

bool WriteCountedString(PwDbPlwWriter& out, const wstring& text) {
    if (text.size() > kMostAppInfoUnits) return false;
    out.u16(static_cast<uint16_t>(text.size() + 1));
    out.units(text);
    out.u16(0);
    return true;
}
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
bool ReadCountedString(PwDbPlwReader& in, wstring& text) {
    uint16_t count = 0;
    if (!in.u16(count) || count == 0 || !in.units(count, text)) return false;
    if (text.back() != u'\0') return false;
    text.pop_back();
    return true;
}

}  // namespace

bool pwdbPlwWriteAppInfo(PwDbPlwWriter& out, const std::vector<PwDbAppInfoEntry>& entries) {
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
size_t pwdbPlwBeginSection(PwDbPlwWriter& out, uint32_t tag) {
    const size_t start = out.size();
    out.u32(tag);
    out.u64(0);
    return start;
}

void pwdbPlwEndSection(PwDbPlwWriter& out, size_t start) {
    const size_t payloadStart = start + kSectionHeadSize;
    const size_t length = out.size() - payloadStart;
    out.patchU64(start + 4, length);
    out.u32(pwdbPlwCrc32(std::string_view(out.bytes()).substr(payloadStart, length)));
}

void pwdbPlwWriteSettings(PwDbPlwWriter& out, const PwDbDrawingImage& image) {
    const size_t start = pwdbPlwBeginSection(out, kSettingsTag);
    out.u32(static_cast<uint32_t>(image.version));
    out.u64(image.handseed);
    out.u32(static_cast<uint32_t>(image.measurement));
    for (auto root : kRootOrder) out.u64(image.roots.*root);
    pwdbPlwEndSection(out, start);
}

bool pwdbPlwWritePreview(PwDbPlwWriter& out, const PwDbPreviewImage& preview) {
    if (preview.width > kPwDbPlwMaxPreviewSide || preview.height > kPwDbPlwMaxPreviewSide ||
        preview.pixels.size() != static_cast<size_t>(preview.width) * preview.height) {
        return false;
    }
    const size_t start = pwdbPlwBeginSection(out, kPreviewTag);
    out.u32(preview.width);
    out.u32(preview.height);
    for (uint32_t pixel : preview.pixels) out.u32(pixel);
    pwdbPlwEndSection(out, start);
    return true;
}

void pwdbPlwWriteHeader(std::string& file, int32_t version, uint32_t revision,
                        size_t sectionsOffset) {
    PwDbPlwWriter out(file);
    std::memcpy(file.data(), pwdbSignatureForVersion(version), kSignatureSize);
    out.patchU32(kScanStartOffset, kHeaderSize);
    std::memcpy(file.data() + kFormatTagOffset, kFormatTag.data(), kFormatTag.size());
    out.patchU32(kLayoutOffset, revision);
    out.patchU32(kVersionOffset, static_cast<uint32_t>(version));
    const std::string_view whole(file);
    const auto appInfo = whole.substr(kHeaderSize, sectionsOffset - kHeaderSize);
    out.patchU32(kAppInfoCrcOffset, pwdbPlwCrc32(appInfo));
    out.patchU64(kSectionsOffsetOffset, sectionsOffset);
    out.patchU64(kSectionsLengthOffset, file.size() - sectionsOffset);
    out.patchU32(kHeaderCrcOffset, pwdbPlwCrc32(whole.substr(0, kHeaderCrcOffset)));
}

// ---- reading ----

// The header at the start of a file of `fileSize` bytes; false unless it is sound and its
// lengths agree with the size.
bool pwdbPlwReadHeader(std::string_view start, uint64_t fileSize, PwDbPlwHeader& header) {
    if (start.size() < kHeaderSize || fileSize < kHeaderSize) return false;
    const std::string_view head = start.substr(0, kHeaderSize);
    if (!pwdbPlwChecksumHolds(static_cast<uint32_t>(LittleAt(head, kHeaderCrcOffset, 4)),
                              head.substr(0, kHeaderCrcOffset))) {
        return false;
    }
    const uint64_t version = LittleAt(head, kVersionOffset, 4);
    if (!pwdbIsWritableVersion(version)) return false;
    header.version = static_cast<int32_t>(version);
    header.revision = static_cast<uint32_t>(LittleAt(head, kLayoutOffset, 4));
    if (head.substr(0, kSignatureSize) != pwdbSignatureForVersion(header.version) ||
        head.substr(kFormatTagOffset, kFormatTag.size()) != kFormatTag ||
        (header.revision != kPwDbPlwWholeRecordsRevision &&
         header.revision != kPwDbPlwIndexedRevision) ||
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

bool pwdbPlwReadAppInfo(std::string_view section, std::vector<PwDbAppInfoEntry>& entries) {
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

bool pwdbPlwReadSection(PwDbPlwReader& in, PwDbPlwSection& section) {
    uint64_t length = 0;
    return in.u32(section.tag) && in.u64(length) && in.view(length, section.payload) &&
           in.u32(section.crc);
}

// The next section, whole and with a checksum that holds.
bool pwdbPlwReadSoundSection(PwDbPlwReader& in, PwDbPlwSection& section) {
    return pwdbPlwReadSection(in, section) && section.sound();
}

bool pwdbPlwReadSettings(std::string_view payload, int32_t version, PwDbDrawingImage& image) {
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

bool pwdbPlwReadPreview(std::string_view payload, PwDbPreviewImage& preview) {
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
