// UTF-16 <-> UTF-8 through ICU, substituting U+FFFD for what is ill-formed.
#include <lodeqdb/lodeutil/Utf.h>

#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <climits>
#include <stdexcept>
#include <utility>

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

namespace {

constexpr char16_t kEscapedByteBase = 0xDC00;

bool IsContinuation(unsigned char byte) {
    return (byte & 0xC0) == 0x80;
}

// The code point of the well-formed UTF-8 sequence at `bytes[at]` and its length; a length of
// 0 when the bytes there start none (RFC 3629: no overlong forms, no surrogates, at most
// U+10FFFF).
std::pair<char32_t, size_t> DecodeAt(std::string_view bytes, size_t at) {
    const auto byte = [&](size_t i) { return static_cast<unsigned char>(bytes[at + i]); };
    const size_t left = bytes.size() - at;
    const unsigned char lead = byte(0);
    if (lead < 0x80) return {lead, 1};
    size_t length = 0;
    char32_t point = 0, least = 0;
    if (lead >= 0xC2 && lead <= 0xDF) {
        length = 2, point = lead & 0x1F, least = 0x80;
    } else if (lead >= 0xE0 && lead <= 0xEF) {
        length = 3, point = lead & 0x0F, least = 0x800;
    } else if (lead >= 0xF0 && lead <= 0xF4) {
        length = 4, point = lead & 0x07, least = 0x10000;
    } else {
        return {0, 0};
    }
    if (left < length) return {0, 0};
    for (size_t i = 1; i < length; ++i) {
        if (!IsContinuation(byte(i))) return {0, 0};
        point = (point << 6) | (byte(i) & 0x3F);
    }
    if (point < least || point > 0x10FFFF || (point >= 0xD800 && point <= 0xDFFF)) return {0, 0};
    return {point, length};
}

void AppendUtf16(wstring& out, char32_t point) {
    if (point < 0x10000) {
        out.push_back(static_cast<char16_t>(point));
        return;
    }
    point -= 0x10000;
    out.push_back(static_cast<char16_t>(0xD800 + (point >> 10)));
    out.push_back(static_cast<char16_t>(0xDC00 + (point & 0x3FF)));
}

void AppendUtf8(std::string& out, char32_t point) {
    if (point < 0x80) {
        out.push_back(static_cast<char>(point));
    } else if (point < 0x800) {
        out.push_back(static_cast<char>(0xC0 | (point >> 6)));
        out.push_back(static_cast<char>(0x80 | (point & 0x3F)));
    } else if (point < 0x10000) {
        out.push_back(static_cast<char>(0xE0 | (point >> 12)));
        out.push_back(static_cast<char>(0x80 | ((point >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (point & 0x3F)));
    } else {
        out.push_back(static_cast<char>(0xF0 | (point >> 18)));
        out.push_back(static_cast<char>(0x80 | ((point >> 12) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | ((point >> 6) & 0x3F)));
        out.push_back(static_cast<char>(0x80 | (point & 0x3F)));
    }
}

}  // namespace

wstring Utf16FromNative(std::string_view bytes) {
    wstring out;
    out.reserve(bytes.size());
    for (size_t at = 0; at < bytes.size();) {
        const auto [point, length] = DecodeAt(bytes, at);
        if (length == 0) {
            out.push_back(
                static_cast<char16_t>(kEscapedByteBase + static_cast<unsigned char>(bytes[at])));
            ++at;
            continue;
        }
        AppendUtf16(out, point);
        at += length;
    }
    return out;
}

std::optional<std::string> NativeFromUtf16(std::u16string_view text) {
    std::string out;
    out.reserve(text.size());
    for (size_t i = 0; i < text.size(); ++i) {
        const char16_t unit = text[i];
        if (U16_IS_LEAD(unit) && i + 1 < text.size() && U16_IS_TRAIL(text[i + 1])) {
            AppendUtf8(out, U16_GET_SUPPLEMENTARY(unit, text[i + 1]));
            ++i;
        } else if (unit >= kEscapedByteBase + 0x80 && unit <= kEscapedByteBase + 0xFF) {
            out.push_back(static_cast<char>(unit - kEscapedByteBase));
        } else if (U16_IS_SURROGATE(unit)) {
            return std::nullopt;
        } else {
            AppendUtf8(out, unit);
        }
    }
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
