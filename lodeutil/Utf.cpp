// UTF-16 <-> UTF-8 through ICU, substituting U+FFFD for what is ill-formed.
#include "lodeutil/Utf.h"

#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <climits>
#include <stdexcept>

namespace LodeUtil {
namespace {

constexpr UChar32 kReplacement = 0xFFFD;

int32_t CheckedLength(size_t size) {
    if (size > static_cast<size_t>(INT32_MAX / 4)) throw std::length_error("text too long");
    return static_cast<int32_t>(size);
}

}  // namespace

std::string Utf8FromUtf16(std::u16string_view text) {
    if (text.empty()) return {};
    const int32_t length = CheckedLength(text.size());
    // Every UTF-16 unit becomes at most 3 UTF-8 bytes (a surrogate pair: 4 bytes for 2 units).
    std::string out(static_cast<size_t>(length) * 3, '\0');
    int32_t written = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strToUTF8WithSub(out.data(), static_cast<int32_t>(out.size()), &written,
                       reinterpret_cast<const UChar*>(text.data()), length, kReplacement, nullptr,
                       &error);
    if (U_FAILURE(error)) throw std::runtime_error("UTF-16 to UTF-8 conversion failed");
    out.resize(static_cast<size_t>(written));
    return out;
}

wstring Utf16FromUtf8(std::string_view text) {
    if (text.empty()) return {};
    const int32_t length = CheckedLength(text.size());
    // Every UTF-8 byte becomes at most one UTF-16 unit.
    wstring out(static_cast<size_t>(length), u'\0');
    int32_t written = 0;
    UErrorCode error = U_ZERO_ERROR;
    u_strFromUTF8WithSub(reinterpret_cast<UChar*>(out.data()), length, &written, text.data(),
                         length, kReplacement, nullptr, &error);
    if (U_FAILURE(error)) throw std::runtime_error("UTF-8 to UTF-16 conversion failed");
    out.resize(static_cast<size_t>(written));
    return out;
}

bool IsWellFormedUtf16(std::u16string_view text) {
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (U16_IS_LEAD(unit)) {
            if (i + 1 == text.size() || !U16_IS_TRAIL(text[i + 1])) return false;
            ++i;
        } else if (U16_IS_TRAIL(unit)) {
            return false;
        }
    }
    return true;
}

}  // namespace LodeUtil
