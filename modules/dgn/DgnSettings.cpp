// Reading the DGN import settings of the host.
#include "modules/dgn/DgnSettings.h"

#include <charconv>
#include <string>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace FileIO = Morvane::Plotwright::PAL::FileIO;

namespace {

constexpr uint64_t kMaxSettingsBytes = uint64_t{1} << 20;

wstring DecodeText(const std::string& bytes) {
    if (bytes.size() >= 2 && static_cast<uint8_t>(bytes[0]) == 0xFF &&
        static_cast<uint8_t>(bytes[1]) == 0xFE) {
        wstring text;
        for (size_t i = 2; i + 1 < bytes.size(); i += 2) {
            text.push_back(static_cast<char16_t>(static_cast<uint8_t>(bytes[i]) |
                                                 (static_cast<uint8_t>(bytes[i + 1]) << 8)));
        }
        return text;
    }
    std::string_view utf8(bytes);
    if (utf8.starts_with("\xEF\xBB\xBF")) utf8.remove_prefix(3);
    return LodeUtil::Utf16FromUtf8(utf8);
}

wstring Trim(const wstring& text) {
    const size_t first = text.find_first_not_of(u" \t\r");
    if (first == wstring::npos) return wstring();
    const size_t last = text.find_last_not_of(u" \t\r");
    return text.substr(first, last - first + 1);
}

}  // namespace

wstring dgnSettingsPath() {
    const PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    if (services == nullptr) return wstring();
    wstring root = services->rootFolder();
    if (root.empty()) return wstring();
    while (root.size() > 1 && (root.back() == u'\\' || root.back() == u'/')) root.pop_back();
    return root + u"\\Support\\DgnSetups.ini";
}

std::optional<wstring> dgnReadSetting(const wstring& path, const wstring& section,
                                      const wstring& key) {
    if (path.empty()) return std::nullopt;
    std::string bytes;
    if (FileIO::ReadWholeFile(path.c_str(), FileIO::kShareRead, bytes, nullptr,
                              kMaxSettingsBytes) != Plotwright::StatusOk)
        return std::nullopt;
    const wstring text = DecodeText(bytes);
    const wstring wantedSection = LodeUtil::FoldCase(section);
    const wstring wantedKey = LodeUtil::FoldCase(key);
    bool inSection = false;
    size_t start = 0;
    while (start <= text.size()) {
        size_t end = text.find(u'\n', start);
        if (end == wstring::npos) end = text.size();
        const wstring line = Trim(text.substr(start, end - start));
        start = end + 1;
        if (line.empty() || line[0] == u';' || line[0] == u'#') continue;
        if (line.front() == u'[') {
            const size_t close = line.find(u']');
            inSection = close != wstring::npos &&
                        LodeUtil::FoldCase(Trim(line.substr(1, close - 1))) == wantedSection;
            continue;
        }
        const size_t equals = line.find(u'=');
        if (!inSection || equals == wstring::npos) continue;
        if (LodeUtil::FoldCase(Trim(line.substr(0, equals))) == wantedKey)
            return Trim(line.substr(equals + 1));
    }
    return std::nullopt;
}

bool dgnImportInMasterUnits() {
    const std::optional<wstring> value =
        dgnReadSetting(dgnSettingsPath(), u"IMPORTSECTION", u"IsMasterUnits");
    if (!value) return false;
    const std::string narrow = LodeUtil::Utf8FromUtf16(*value);
    long long number = 0;
    const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
    return error == std::errc() && end == narrow.data() + narrow.size() && number == 1;
}
