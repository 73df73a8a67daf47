// Telling PDF, DGN and PLF files apart by their first bytes.
#include <lodeqdb/toolkit/underlay/PwDbUnderlayFileFormats.h>

#include <cstring>
#include <string>

#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace {

constexpr size_t kFirstBytes = 1024;

bool IsDgnV7(std::string_view bytes) {
    if (bytes.size() < 4) return false;
    const auto* p = reinterpret_cast<const unsigned char*>(bytes.data());
    // Word 0: the level in the low six bits of its first byte (bit 6 marks a 3D file, bit 7 a
    // complex element), the type in the low seven bits of its second. Word 1: words to follow.
    const unsigned level = p[0] & 0x3F;
    const unsigned type = p[1] & 0x7F;
    const unsigned wordsToFollow = p[2] | p[3] << 8;
    return type == 9 && level == 8 && (p[1] & 0x80) == 0 && wordsToFollow >= 16 &&
           wordsToFollow < 0x8000;
}

bool IsCompoundDocument(std::string_view bytes) {
    static const char kSignature[8] = {'\xD0', '\xCF', '\x11', '\xE0',
                                       '\xA1', '\xB1', '\x1A', '\xE1'};
    return bytes.size() >= 8 && std::memcmp(bytes.data(), kSignature, 8) == 0;
}

}  // namespace

PwDbUnderlayFileKind pwdbUnderlayKindOfBytes(std::string_view bytes) {
    if (bytes.size() >= 8 && std::memcmp(bytes.data(), kPwDbPlfSignature, 8) == 0)
        return PwDbUnderlayFileKind::Plf;
    if (IsDgnV7(bytes) || IsCompoundDocument(bytes)) return PwDbUnderlayFileKind::Dgn;
    if (bytes.substr(0, kFirstBytes).find("%PDF-") != std::string_view::npos)
        return PwDbUnderlayFileKind::Pdf;
    return PwDbUnderlayFileKind::Unknown;
}

Plotwright::ErrorStatus pwdbUnderlayFileKind(const wstring& path, PwDbUnderlayFileKind& kind) {
    kind = PwDbUnderlayFileKind::Unknown;
    std::string first;
    if (auto status =
            Morvane::Plotwright::PAL::FileIO::ReadFileStart(path.c_str(), kFirstBytes, first))
        return status;
    kind = pwdbUnderlayKindOfBytes(first);
    return Plotwright::StatusOk;
}
