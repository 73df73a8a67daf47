// Version signatures, the fixed GUID keys and the texts of the application information.
#include "toolkit/file/PwDbDrawingImage.h"

#include <cstdio>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>

namespace {

PwDbGuidBytes MakeGuid(uint32_t first, uint16_t second, uint16_t third,
                       std::array<uint8_t, 8> last) {
    PwDbGuidBytes guid{};
    for (int i = 0; i < 4; ++i) guid[i] = static_cast<uint8_t>(first >> (8 * i));
    for (int i = 0; i < 2; ++i) guid[4 + i] = static_cast<uint8_t>(second >> (8 * i));
    for (int i = 0; i < 2; ++i) guid[6 + i] = static_cast<uint8_t>(third >> (8 * i));
    for (int i = 0; i < 8; ++i) guid[8 + i] = last[i];
    return guid;
}

}  // namespace

const PwDbGuidBytes kPwDbOwnerGuidKey =
    MakeGuid(0xE006715E, 0x1EB4, 0x4AE0, {0xBC, 0x05, 0x4B, 0xC5, 0xEF, 0xDD, 0xB4, 0x1E});
const PwDbGuidBytes kPwDbSummaryFormatId =
    MakeGuid(0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9});

const char* pwdbSignatureForVersion(int32_t version) {
    if (version >= 32 && version <= 33) return "PW1032";
    if (version >= 30 && version <= 31) return "PW1027";
    if (version >= 28 && version <= 29) return "PW1024";
    if (version >= 26 && version <= 27) return "PW1021";
    if (version >= 24 && version <= 25) return "PW1018";
    if (version >= 22 && version <= 23) return "PW1015";
    if (version == 21) return "PW1014";
    if (version >= 16 && version <= 20) return "PW1012";
    return nullptr;
}

wstring pwdbGuidText(const PwDbGuidBytes& guid) {
    const uint32_t first =
        guid[0] | (guid[1] << 8) | (guid[2] << 16) | (static_cast<uint32_t>(guid[3]) << 24);
    const unsigned second = guid[4] | (guid[5] << 8);
    const unsigned third = guid[6] | (guid[7] << 8);
    char text[40];
    std::snprintf(text, sizeof text, "{%08X-%04X-%04X-%02X%02X-%02X%02X%02X%02X%02X%02X}",
                  static_cast<unsigned>(first), second, third, guid[8], guid[9], guid[10], guid[11],
                  guid[12], guid[13], guid[14], guid[15]);
    return LodeUtil::Utf16FromUtf8(text);
}

bool pwdbParseGuidText(const wstring& text, PwDbGuidBytes& guid) {
    if (text.size() != 38) return false;
    const std::string narrow = LodeUtil::Utf8FromUtf16(text);
    unsigned first = 0, second = 0, third = 0;
    unsigned last[8] = {};
    int consumed = 0;
    const int converted = std::sscanf(narrow.c_str(), "{%8x-%4x-%4x-%2x%2x-%2x%2x%2x%2x%2x%2x}%n",
                                      &first, &second, &third, &last[0], &last[1], &last[2],
                                      &last[3], &last[4], &last[5], &last[6], &last[7], &consumed);
    if (converted != 11 || consumed != 38) return false;
    std::array<uint8_t, 8> bytes{};
    for (int i = 0; i < 8; ++i) bytes[i] = static_cast<uint8_t>(last[i]);
    guid = MakeGuid(first, static_cast<uint16_t>(second), static_cast<uint16_t>(third), bytes);
    return true;
}

wstring pwdbCreatorPropertySet(const wstring& creatorName) {
    return u"<prop_set fmt_id=\"" + pwdbGuidText(kPwDbSummaryFormatId) +
           u"\"><prop id=\"258\"><string>" + creatorName + u"</string></prop></prop_set>";
}
