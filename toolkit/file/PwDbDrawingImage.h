// PwDbDrawingImage: a drawing as its files hold it, between the database and the bytes.
// Both file formats (the native .plw and the exchange .plx) encode and decode this one
// value, so that they can hold exactly the same things.
//
//   PwDbDrawingImage image;
//   database.captureImage(image, PwDb::PwDbPlwVersionCurrent);   // database -> image
//   std::string bytes;
//   pwdbEncodePlw(image, bytes);                                  // image -> native file bytes
//   other.loadImage(image);                                       // image -> another database
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>

/// A GUID as the files store it: a 32-bit field, two 16-bit fields (each little-endian) and
/// eight bytes, 16 bytes in all.
using PwDbGuidBytes = std::array<uint8_t, 16>;

/// One entry of a drawing's application information: a GUID key and its text.
struct PwDbAppInfoEntry {
    PwDbGuidBytes key{};
    wstring text;
    bool operator==(const PwDbAppInfoEntry&) const = default;
};

/// A small picture of the drawing, kept in its file.
struct PwDbPreviewImage {
    uint32_t width = 0;
    uint32_t height = 0;
    /// width * height pixels, rows top first, each 0xAARRGGBB.
    std::vector<uint32_t> pixels;
    bool operator==(const PwDbPreviewImage&) const = default;
};

/// The handles of the objects a drawing is built around.
struct PwDbDrawingRoots {
    PwDbHandle blockTable = 0;
    PwDbHandle layerTable = 0;
    PwDbHandle namedObjects = 0;
    PwDbHandle layoutDictionary = 0;
    PwDbHandle plotSettingsDictionary = 0;
    PwDbHandle modelSpace = 0;
    PwDbHandle paperSpace = 0;
    PwDbHandle layerZero = 0;
    PwDbHandle currentLayer = 0;
    bool operator==(const PwDbDrawingRoots&) const = default;
};

struct PwDbDrawingImage {
    /// The exact format version, 16 to 33 (PwDbPlwVersion numbers).
    int32_t version = 33;
    /// The handle the next new object gets.
    PwDbHandle handseed = 1;
    PwDb::MeasurementValue measurement = PwDb::Metric;
    PwDbDrawingRoots roots;
    std::vector<PwDbAppInfoEntry> appInfo;
    std::optional<PwDbPreviewImage> preview;
    /// Every object of the drawing, erased ones included and marked.
    std::vector<PwDbObjectRecord> objects;
};

/// The oldest and newest versions the files can be written in.
inline constexpr int32_t kPwDbOldestVersion = 16;
inline constexpr int32_t kPwDbNewestVersion = 33;

/// Whether files can be written in `version`.
inline bool pwdbIsWritableVersion(int32_t version) {
    return version >= kPwDbOldestVersion && version <= kPwDbNewestVersion;
}

/// The six-character signature that starts a native file of `version`: 33 and 32
/// "PW1032", 31 and 30 "PW1027", 29 and 28 "PW1024", 27 and 26 "PW1021", 25 and 24
/// "PW1018", 23 and 22 "PW1015", 21 "PW1014", 16 to 20 "PW1012"; null for any other version.
const char* pwdbSignatureForVersion(int32_t version);

/// The GUID keys of the two application information entries every saved drawing carries.
/// The owner: {E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}, its text the owner's GUID in text form.
extern const PwDbGuidBytes kPwDbOwnerGuidKey;
/// The summary property set: {F29F85E0-4FF9-1068-AB91-08002B27B3D9}, its text a property set
/// of that format id whose property 258 is the creator's name.
extern const PwDbGuidBytes kPwDbSummaryFormatId;

/// The GUID in text form "{XXXXXXXX-XXXX-XXXX-XXXX-XXXXXXXXXXXX}", upper-case hexadecimal.
wstring pwdbGuidText(const PwDbGuidBytes& guid);
/// Parses that text form (either case); false when it isn't one.
bool pwdbParseGuidText(const wstring& text, PwDbGuidBytes& guid);
/// The property set text that holds `creatorName` as property 258, a "string" value.
wstring pwdbCreatorPropertySet(const wstring& creatorName);
