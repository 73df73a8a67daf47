// PwDbPlwFrame: the parts of the native file that every layout revision shares: the header,
// the application information, the framing of sections, the settings and the preview.
// Internal to the file layer; PwDbPlwCodec.h describes the bytes.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwBytes.h"

inline constexpr size_t kPwDbPlwHeaderSize = 128;
/// The layout revisions: 1 keeps every record whole, one after another; 2 keeps a class
/// table, an index and records packed in checked pages.
inline constexpr uint32_t kPwDbPlwWholeRecordsRevision = 1;
inline constexpr uint32_t kPwDbPlwIndexedRevision = 2;

constexpr uint32_t pwdbPlwSectionTag(const char (&name)[5]) {
    return static_cast<uint32_t>(static_cast<uint8_t>(name[0])) |
           static_cast<uint32_t>(static_cast<uint8_t>(name[1])) << 8 |
           static_cast<uint32_t>(static_cast<uint8_t>(name[2])) << 16 |
           static_cast<uint32_t>(static_cast<uint8_t>(name[3])) << 24;
}
inline constexpr uint32_t kPwDbPlwSettingsTag = pwdbPlwSectionTag("SETT");
inline constexpr uint32_t kPwDbPlwClassesTag = pwdbPlwSectionTag("CLSS");
inline constexpr uint32_t kPwDbPlwIndexTag = pwdbPlwSectionTag("INDX");
inline constexpr uint32_t kPwDbPlwObjectsTag = pwdbPlwSectionTag("OBJS");
inline constexpr uint32_t kPwDbPlwRunsTag = pwdbPlwSectionTag("RUNS");
inline constexpr uint32_t kPwDbPlwPreviewTag = pwdbPlwSectionTag("PREV");
inline constexpr uint32_t kPwDbPlwEndTag = pwdbPlwSectionTag("ENDS");
/// A section's tag and length, before its payload.
inline constexpr size_t kPwDbPlwSectionHeadSize = 4 + 8;

/// What the header says about the rest of the file.
struct PwDbPlwHeader {
    int32_t version = 0;
    uint32_t revision = 0;
    uint32_t appInfoCrc = 0;
    uint64_t sectionsOffset = 0;
    uint64_t sectionsLength = 0;
};

/// The header at the start of a file of `fileSize` bytes; false unless it is sound, of a
/// revision this toolkit reads, and its lengths agree with the size.
bool pwdbPlwReadHeader(std::string_view start, uint64_t fileSize, PwDbPlwHeader& header);
/// Fills the 128 header bytes at the start of `file`, whose application information runs from
/// offset 128 to `sectionsOffset` and whose sections run from there to its end.
void pwdbPlwWriteHeader(std::string& file, int32_t version, uint32_t revision,
                        size_t sectionsOffset);

bool pwdbPlwWriteAppInfo(PwDbPlwWriter& out, const std::vector<PwDbAppInfoEntry>& entries);
bool pwdbPlwReadAppInfo(std::string_view section, std::vector<PwDbAppInfoEntry>& entries);

/// Writes a section's tag and a length to be patched by pwdbPlwEndSection; gives where it
/// starts.
size_t pwdbPlwBeginSection(PwDbPlwWriter& out, uint32_t tag);
/// Patches the length of the section begun at `start` and appends its payload's checksum.
void pwdbPlwEndSection(PwDbPlwWriter& out, size_t start);

/// One section as stored: its tag, its payload and the checksum kept for that payload.
struct PwDbPlwSection {
    uint32_t tag = 0;
    std::string_view payload;
    uint32_t crc = 0;

    bool sound() const { return pwdbPlwChecksumHolds(crc, payload); }
};
/// The next section, whole; its checksum isn't checked.
bool pwdbPlwReadSection(PwDbPlwReader& in, PwDbPlwSection& section);
/// The next section, whole and with a checksum that holds.
bool pwdbPlwReadSoundSection(PwDbPlwReader& in, PwDbPlwSection& section);

/// The settings section: version, handseed, measurement and roots.
void pwdbPlwWriteSettings(PwDbPlwWriter& out, const PwDbDrawingImage& image);
bool pwdbPlwReadSettings(std::string_view payload, int32_t version, PwDbDrawingImage& image);

/// The preview section; false for a preview the file can't hold.
bool pwdbPlwWritePreview(PwDbPlwWriter& out, const PwDbPreviewImage& preview);
bool pwdbPlwReadPreview(std::string_view payload, PwDbPreviewImage& preview);
