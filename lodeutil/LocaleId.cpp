// Locale ids and tags through ICU's locale table.
#include <lodeqdb/lodeutil/LocaleId.h>

#include <unicode/uloc.h>

#include <cstdlib>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil {
namespace {

constexpr int kEnglishUnitedStates = 1033;

// ICU's own form of a locale ("de_DE"), or empty when ICU can't parse the tag.
std::string IcuLocaleOf(const wstring& tag) {
    std::string narrow = Utf8FromUtf16(tag);
    // A POSIX locale name may carry a code set and a modifier: "de_DE.UTF-8@euro".
    narrow = narrow.substr(0, narrow.find_first_of(".@"));
    if (narrow.empty()) return {};
    char buffer[ULOC_FULLNAME_CAPACITY] = {};
    UErrorCode error = U_ZERO_ERROR;
    if (narrow.find('-') != std::string::npos) {
        int32_t parsed = 0;
        uloc_forLanguageTag(narrow.c_str(), buffer, sizeof buffer, &parsed, &error);
        if (parsed != static_cast<int32_t>(narrow.size())) return {};
    } else {
        uloc_canonicalize(narrow.c_str(), buffer, sizeof buffer, &error);
    }
    if (U_FAILURE(error) || error == U_STRING_NOT_TERMINATED_WARNING) return {};
    return buffer;
}

// "language-REGION" of an ICU locale; empty when it has no region.
wstring TagOf(const std::string& icuLocale) {
    char language[ULOC_LANG_CAPACITY] = {};
    char country[ULOC_COUNTRY_CAPACITY] = {};
    UErrorCode error = U_ZERO_ERROR;
    uloc_getLanguage(icuLocale.c_str(), language, sizeof language, &error);
    uloc_getCountry(icuLocale.c_str(), country, sizeof country, &error);
    if (U_FAILURE(error) || language[0] == '\0' || country[0] == '\0') return {};
    return Utf16FromUtf8(std::string(language) + "-" + country);
}

std::string LikelyIcuLocale(const std::string& icuLocale) {
    char language[ULOC_LANG_CAPACITY] = {};
    char likely[ULOC_FULLNAME_CAPACITY] = {};
    UErrorCode error = U_ZERO_ERROR;
    uloc_getLanguage(icuLocale.c_str(), language, sizeof language, &error);
    uloc_addLikelySubtags(language, likely, sizeof likely, &error);
    if (U_FAILURE(error) || language[0] == '\0') return {};
    return likely;
}

}  // namespace

int LocaleIdFromTag(const wstring& tag) {
    const std::string icuLocale = IcuLocaleOf(tag);
    if (icuLocale.empty()) return 0;
    return static_cast<int>(uloc_getLCID(icuLocale.c_str()));
}

wstring LocaleTagFromId(int id) {
    if (id <= 0) return {};
    char buffer[ULOC_FULLNAME_CAPACITY] = {};
    UErrorCode error = U_ZERO_ERROR;
    uloc_getLocaleForLCID(static_cast<uint32_t>(id), buffer, sizeof buffer, &error);
    if (U_FAILURE(error) || buffer[0] == '\0') return {};
    wstring tag = TagOf(buffer);
    return tag.empty() ? TagOf(LikelyIcuLocale(buffer)) : tag;
}

wstring LikelyTagForLanguageOf(const wstring& tag) {
    const std::string icuLocale = IcuLocaleOf(tag);
    if (icuLocale.empty()) return {};
    return TagOf(LikelyIcuLocale(icuLocale));
}

int ProcessLocaleId() {
    for (const char* variable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const char* value = std::getenv(variable);
        if (value == nullptr || value[0] == '\0') continue;
        const std::string name = value;
        if (name == "C" || name == "POSIX" || name.rfind("C.", 0) == 0) break;
        const int id = LocaleIdFromTag(Utf16FromUtf8(name));
        return id != 0 ? id : kEnglishUnitedStates;
    }
    return kEnglishUnitedStates;
}

}  // namespace LodeUtil
