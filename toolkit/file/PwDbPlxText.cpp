// Tokens of the exchange file: escaping, locale-free numbers, hexadecimal, UTF-8 checking.
#include "toolkit/file/PwDbPlxText.h"

#include <bit>
#include <charconv>
#include <cstring>
#include <limits>
#include <system_error>

#include <lodeqdb/lodeutil/Utf.h>

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr uint64_t kQuietNanBits =
    std::bit_cast<uint64_t>(std::numeric_limits<double>::quiet_NaN());
// Text runs go through the UTF conversion in pieces, so that no string is too long for it and
// no temporary copy grows with the string.
constexpr size_t kRunPiece = size_t{1} << 16;

bool IsLeadSurrogate(char16_t unit) {
    return unit >= 0xD800 && unit <= 0xDBFF;
}
bool IsTrailSurrogate(char16_t unit) {
    return unit >= 0xDC00 && unit <= 0xDFFF;
}
bool IsDigit(char c) {
    return c >= '0' && c <= '9';
}

int HexValue(char c) {
    if (c >= '0' && c <= '9') return c - '0';
    if (c >= 'A' && c <= 'F') return c - 'A' + 10;
    if (c >= 'a' && c <= 'f') return c - 'a' + 10;
    return -1;
}

// Units that an editor or a terminal would not show as themselves, or would take as a line end.
bool NeedsEscape(char16_t unit) {
    return unit < 0x20 || (unit >= 0x7F && unit <= 0x9F) || unit == 0x2028 || unit == 0x2029;
}

void AppendEscape(std::string& out, char16_t unit) {
    switch (unit) {
        case u'"':
            out += "\\\"";
            return;
        case u'\\':
            out += "\\\\";
            return;
        case u'\n':
            out += "\\n";
            return;
        case u'\t':
            out += "\\t";
            return;
        case u'\r':
            out += "\\r";
            return;
        default:
            break;
    }
    out += "\\u";
    for (int shift = 12; shift >= 0; shift -= 4) out += kHexDigits[(unit >> shift) & 0xF];
}

// True when the number of an out-of-range token lies beyond the largest double rather than
// below the smallest: the place of its first non-zero digit plus its exponent is not negative.
bool IsBeyondLargest(std::string_view token) {
    size_t i = (token.front() == '-') ? 1 : 0;
    int64_t integerDigits = 0;
    int64_t fractionZeros = 0;
    bool seenNonZero = false;
    for (; i < token.size() && IsDigit(token[i]); ++i) {
        if (seenNonZero || token[i] != '0') {
            seenNonZero = true;
            ++integerDigits;
        }
    }
    if (i < token.size() && token[i] == '.') {
        for (++i; i < token.size() && IsDigit(token[i]); ++i) {
            if (seenNonZero) continue;
            if (token[i] == '0')
                ++fractionZeros;
            else
                seenNonZero = true;
        }
    }
    const int64_t place = integerDigits > 0 ? integerDigits - 1 : -(fractionZeros + 1);
    int64_t exponent = 0;
    if (i < token.size() && (token[i] == 'e' || token[i] == 'E')) {
        ++i;
        const bool negative = i < token.size() && token[i] == '-';
        if (i < token.size() && (token[i] == '-' || token[i] == '+')) ++i;
        // Saturates far beyond any double's range, and far below int64's.
        for (; i < token.size() && IsDigit(token[i]); ++i) {
            if (exponent < 1'000'000'000'000) exponent = exponent * 10 + (token[i] - '0');
        }
        if (negative) exponent = -exponent;
    }
    return place + exponent >= 0;
}

bool ParseNanBits(std::string_view token, double& value) {
    constexpr std::string_view kOpen = "nan(";
    if (token.size() != kOpen.size() + 17 || token.substr(0, kOpen.size()) != kOpen ||
        token.back() != ')') {
        return false;
    }
    uint64_t bits = 0;
    for (char c : token.substr(kOpen.size(), 16)) {
        const int digit = HexValue(c);
        if (digit < 0) return false;
        bits = (bits << 4) | static_cast<uint64_t>(digit);
    }
    const double parsed = std::bit_cast<double>(bits);
    if (parsed == parsed) return false;  // Only NaNs are written this way.
    value = parsed;
    return true;
}

}  // namespace

void pwdbPlxAppendQuoted(std::string& out, std::u16string_view text) {
    out += '"';
    size_t runStart = 0;
    const auto flush = [&](size_t end) {
        if (end > runStart) out += LodeUtil::Utf8FromUtf16(text.substr(runStart, end - runStart));
    };
    size_t i = 0;
    while (i < text.size()) {
        const char16_t unit = text[i];
        const bool pair =
            IsLeadSurrogate(unit) && i + 1 < text.size() && IsTrailSurrogate(text[i + 1]);
        const bool lone = !pair && (IsLeadSurrogate(unit) || IsTrailSurrogate(unit));
        if (lone || NeedsEscape(unit) || unit == u'"' || unit == u'\\') {
            flush(i);
            AppendEscape(out, unit);
            runStart = i + 1;
        } else if (i - runStart >= kRunPiece) {
            flush(i);  // i never stands inside a pair here
            runStart = i;
        }
        i += pair ? 2 : 1;
    }
    flush(text.size());
    out += '"';
}

void pwdbPlxAppendDouble(std::string& out, double value, int precision) {
    if (value != value) {
        const uint64_t bits = std::bit_cast<uint64_t>(value);
        if (bits == kQuietNanBits) {
            out += "nan";
            return;
        }
        out += "nan(";
        for (int shift = 60; shift >= 0; shift -= 4) out += kHexDigits[(bits >> shift) & 0xF];
        out += ')';
        return;
    }
    if (value == std::numeric_limits<double>::infinity()) {
        out += "inf";
        return;
    }
    if (value == -std::numeric_limits<double>::infinity()) {
        out += "-inf";
        return;
    }
    // "-d.<17 digits>e-308" needs 25 characters.
    char buffer[40];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value,
                                      std::chars_format::scientific, precision);
    out.append(buffer, result.ptr);
}

void pwdbPlxAppendHex(std::string& out, uint64_t value) {
    int shift = 60;
    while (shift > 0 && ((value >> shift) & 0xF) == 0) shift -= 4;
    for (; shift >= 0; shift -= 4) out += kHexDigits[(value >> shift) & 0xF];
}

void pwdbPlxAppendHex8(std::string& out, uint32_t value) {
    for (int shift = 28; shift >= 0; shift -= 4) out += kHexDigits[(value >> shift) & 0xF];
}

void pwdbPlxAppendHexBytes(std::string& out, std::string_view bytes) {
    for (char c : bytes) {
        const auto byte = static_cast<unsigned char>(c);
        out += kHexDigits[byte >> 4];
        out += kHexDigits[byte & 0xF];
    }
}

bool pwdbPlxIsValidUtf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const unsigned char*>(text.data());
    const size_t size = text.size();
    size_t i = 0;
    while (i < size) {
        // An exchange file is nearly all ASCII: eight bytes at a time while no top bit is set.
        while (size - i >= 16) {
            uint64_t low = 0;
            uint64_t high = 0;
            std::memcpy(&low, bytes + i, 8);
            std::memcpy(&high, bytes + i + 8, 8);
            if (((low | high) & 0x8080808080808080ULL) != 0) break;
            i += 16;
        }
        if (i >= size) break;
        const unsigned char first = bytes[i];
        if (first < 0x80) {
            ++i;
            continue;
        }
        size_t length = 0;
        // The second byte's range narrows after E0, ED, F0 and F4 (no overlong forms, no
        // surrogates, nothing above U+10FFFF).
        unsigned char low = 0x80, high = 0xBF;
        if (first >= 0xC2 && first <= 0xDF)
            length = 2;
        else if (first >= 0xE0 && first <= 0xEF)
            length = 3;
        else if (first >= 0xF0 && first <= 0xF4)
            length = 4;
        else
            return false;
        if (first == 0xE0) low = 0xA0;
        if (first == 0xED) high = 0x9F;
        if (first == 0xF0) low = 0x90;
        if (first == 0xF4) high = 0x8F;
        if (size - i < length) return false;
        if (bytes[i + 1] < low || bytes[i + 1] > high) return false;
        for (size_t k = 2; k < length; ++k) {
            if (bytes[i + k] < 0x80 || bytes[i + k] > 0xBF) return false;
        }
        i += length;
    }
    return true;
}

bool pwdbPlxParseDouble(std::string_view token, double& value) {
    if (token == "nan") {
        value = std::numeric_limits<double>::quiet_NaN();
        return true;
    }
    if (token == "inf" || token == "-inf") {
        value = (token == "inf" ? 1.0 : -1.0) * std::numeric_limits<double>::infinity();
        return true;
    }
    if (token.substr(0, 3) == "nan") return ParseNanBits(token, value);
    // from_chars alone would also take "infinity", ".5" and hexadecimal-looking words.
    const size_t digitAt = (!token.empty() && token.front() == '-') ? 1 : 0;
    if (digitAt >= token.size() || !IsDigit(token[digitAt])) return false;
    double parsed = 0.0;
    const char* end = token.data() + token.size();
    const auto result = std::from_chars(token.data(), end, parsed, std::chars_format::general);
    if (result.ptr != end) return false;
    if (result.ec == std::errc::result_out_of_range) {
        const double magnitude = IsBeyondLargest(token) ? std::numeric_limits<double>::max() : 0.0;
        value = (digitAt == 1) ? -magnitude : magnitude;
        return true;
    }
    if (result.ec != std::errc()) return false;
    value = parsed;
    return true;
}

bool PwDbPlxLine::tokenStart(size_t& start) const {
    start = m_position;
    if (m_position == 0) return m_position < m_line.size();
    if (m_position >= m_line.size() || m_line[m_position] != ' ') return false;
    start = m_position + 1;
    return start < m_line.size() && m_line[start] != ' ';
}

bool PwDbPlxLine::readToken(std::string_view& token, size_t& end) const {
    size_t start = 0;
    if (!tokenStart(start)) return false;
    end = m_line.find(' ', start);
    if (end == std::string_view::npos) end = m_line.size();
    token = m_line.substr(start, end - start);
    return !token.empty();
}

bool PwDbPlxLine::readWord(std::string_view& word) {
    size_t end = 0;
    if (!readToken(word, end)) return false;
    m_position = end;
    return true;
}

bool PwDbPlxLine::expectWord(std::string_view word) {
    std::string_view token;
    size_t end = 0;
    if (!readToken(token, end) || token != word) return false;
    m_position = end;
    return true;
}

template <class Integer>
bool PwDbPlxLine::readInteger(Integer& value, int base) {
    std::string_view token;
    size_t end = 0;
    if (!readToken(token, end)) return false;
    Integer parsed = 0;
    const char* last = token.data() + token.size();
    const auto result = std::from_chars(token.data(), last, parsed, base);
    if (result.ec != std::errc() || result.ptr != last) return false;
    value = parsed;
    m_position = end;
    return true;
}

bool PwDbPlxLine::readInt32(int32_t& value) {
    return readInteger(value, 10);
}
bool PwDbPlxLine::readInt64(int64_t& value) {
    return readInteger(value, 10);
}
bool PwDbPlxLine::readUint32(uint32_t& value) {
    return readInteger(value, 10);
}
bool PwDbPlxLine::readUint64(uint64_t& value) {
    return readInteger(value, 10);
}
bool PwDbPlxLine::readHex(uint64_t& value) {
    return readInteger(value, 16);
}

bool PwDbPlxLine::readHex8(uint32_t& value) {
    std::string_view token;
    size_t end = 0;
    if (!readToken(token, end) || token.size() != 8) return false;
    uint32_t parsed = 0;
    for (char c : token) {
        const int digit = HexValue(c);
        if (digit < 0) return false;
        parsed = (parsed << 4) | static_cast<uint32_t>(digit);
    }
    value = parsed;
    m_position = end;
    return true;
}

bool PwDbPlxLine::readDouble(double& value) {
    std::string_view token;
    size_t end = 0;
    if (!readToken(token, end) || !pwdbPlxParseDouble(token, value)) return false;
    m_position = end;
    return true;
}

bool PwDbPlxLine::readHexBytes(uint64_t count, std::string& bytes) {
    std::string_view token;
    size_t end = 0;
    if (count > m_line.size() / 2 || !readToken(token, end) || token.size() != 2 * count) {
        return false;
    }
    std::string parsed(static_cast<size_t>(count), '\0');
    for (size_t i = 0; i < parsed.size(); ++i) {
        const int high = HexValue(token[2 * i]);
        const int low = HexValue(token[2 * i + 1]);
        if (high < 0 || low < 0) return false;
        parsed[i] = static_cast<char>((high << 4) | low);
    }
    bytes = std::move(parsed);
    m_position = end;
    return true;
}

bool PwDbPlxLine::readQuoted(wstring& text) {
    size_t i = 0;
    if (!tokenStart(i) || m_line[i] != '"') return false;
    wstring parsed;
    size_t runStart = ++i;
    const auto flush = [&](size_t end) {
        if (end > runStart)
            parsed += LodeUtil::Utf16FromUtf8(m_line.substr(runStart, end - runStart));
    };
    while (i < m_line.size()) {
        const auto c = static_cast<unsigned char>(m_line[i]);
        if (c == '"') {
            flush(i);
            text = std::move(parsed);
            m_position = i + 1;
            return true;
        }
        if (c == '\\') {
            flush(i);
            if (i + 1 >= m_line.size()) return false;
            const char kind = m_line[i + 1];
            i += 2;
            if (kind == '"' || kind == '\\')
                parsed += static_cast<char16_t>(kind);
            else if (kind == 'n')
                parsed += u'\n';
            else if (kind == 't')
                parsed += u'\t';
            else if (kind == 'r')
                parsed += u'\r';
            else if (kind != 'u' || m_line.size() - i < 4)
                return false;
            if (kind == 'u') {
                unsigned unit = 0;
                for (size_t k = 0; k < 4; ++k) {
                    const int digit = HexValue(m_line[i + k]);
                    if (digit < 0) return false;
                    unit = (unit << 4) | static_cast<unsigned>(digit);
                }
                parsed += static_cast<char16_t>(unit);
                i += 4;
            }
            runStart = i;
            continue;
        }
        if (c < 0x20 || c == 0x7F) return false;
        // A piece ends only before the first byte of a character.
        if (i - runStart >= kRunPiece && (c & 0xC0) != 0x80) {
            flush(i);
            runStart = i;
        }
        ++i;
    }
    return false;
}
