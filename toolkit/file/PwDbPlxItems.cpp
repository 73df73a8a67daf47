// Item lines of the exchange format: one typed value a line, written and read in one place for
// lists of items and for objects that write or read themselves.
#include "toolkit/file/PwDbPlxItems.h"

#include <charconv>
#include <cstring>
#include <system_error>
#include <type_traits>
#include <variant>

#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/file/PwDbPlxText.h"

namespace {

using Plotwright::ErrorStatus;
using Item = PwDbMemoryFiler::Item;

// ---- writing: each appends "<type> <value>\n" ----

template <class Integer>
void AppendDecimal(std::string& out, Integer value) {
    char buffer[24];
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
    out.append(buffer, result.ptr);
}

void AppendText(std::string& out, std::u16string_view text) {
    out += "S ";
    pwdbPlxAppendQuoted(out, text);
    out += '\n';
}

void AppendInt32(std::string& out, int32_t value) {
    out += "I ";
    AppendDecimal(out, value);
    out += '\n';
}

void AppendInt64(std::string& out, int64_t value) {
    out += "L ";
    AppendDecimal(out, value);
    out += '\n';
}

void AppendDouble(std::string& out, double value, int precision) {
    out += "D ";
    pwdbPlxAppendDouble(out, value, precision);
    out += '\n';
}

void AppendBool(std::string& out, bool value) {
    out += value ? "B 1\n" : "B 0\n";
}

void AppendBytes(std::string& out, std::string_view bytes) {
    out += "X ";
    AppendDecimal(out, bytes.size());
    if (!bytes.empty()) out += ' ';
    pwdbPlxAppendHexBytes(out, bytes);
    out += '\n';
}

void AppendHandle(std::string& out, PwDbHandle handle) {
    out += "H ";
    pwdbPlxAppendHex(out, handle);
    out += '\n';
}

// ---- reading: each takes what stands after "<type> " ----

bool ReadText(std::string_view value, wstring& text) {
    PwDbPlxLine cursor(value);
    return cursor.readQuoted(text) && cursor.atEnd();
}

// A number that is the whole of `value`: from_chars stops at a space, so a value of more than
// one token doesn't read, as the line's rule of one token after the type asks.
template <class Integer>
bool ReadWholeInteger(std::string_view value, Integer& number, int base) {
    const char* end = value.data() + value.size();
    Integer parsed = 0;
    const auto result = std::from_chars(value.data(), end, parsed, base);
    if (result.ec != std::errc() || result.ptr != end) return false;
    number = parsed;
    return true;
}

bool ReadInt32(std::string_view value, int32_t& number) {
    return ReadWholeInteger(value, number, 10);
}

bool ReadInt64(std::string_view value, int64_t& number) {
    return ReadWholeInteger(value, number, 10);
}

bool ReadDouble(std::string_view value, double& number) {
    return pwdbPlxParseDouble(value, number);
}

// The common spelling of a number, read where it stands; anything else (NaNs, infinities, a
// number out of range, another line end) is left to the reading of whole lines.
const char* ParseFiniteDouble(const char* begin, const char* end, double& number) {
    const char* digit = (*begin == '-') ? begin + 1 : begin;
    if (digit == end || *digit < '0' || *digit > '9') return nullptr;
    const auto result = std::from_chars(begin, end, number, std::chars_format::general);
    return result.ec == std::errc() ? result.ptr : nullptr;
}

template <class Integer>
const char* ParseInteger(const char* begin, const char* end, Integer& number, int base) {
    const auto result = std::from_chars(begin, end, number, base);
    return result.ec == std::errc() ? result.ptr : nullptr;
}

bool ReadBool(std::string_view value, bool& flag) {
    if (value != "0" && value != "1") return false;
    flag = value == "1";
    return true;
}

// The byte count, then the bytes unless there are none; `expected` the count a reader asks for
// (any count when null).
bool ReadBytes(std::string_view value, std::string& bytes, const uint64_t* expected) {
    PwDbPlxLine cursor(value);
    uint64_t count = 0;
    if (!cursor.readUint64(count) || (expected != nullptr && count != *expected)) return false;
    if (count == 0) {
        bytes.clear();
    } else if (!cursor.readHexBytes(count, bytes)) {
        return false;
    }
    return cursor.atEnd();
}

bool ReadHandle(std::string_view value, PwDbHandle& handle) {
    return ReadWholeInteger(value, handle, 16);
}

}  // namespace

void pwdbPlxAppendItem(std::string& out, const Item& item, int precision) {
    std::visit(
        [&](const auto& value) {
            using T = std::decay_t<decltype(value)>;
            if constexpr (std::is_same_v<T, wstring>) {
                AppendText(out, value);
            } else if constexpr (std::is_same_v<T, int32_t>) {
                AppendInt32(out, value);
            } else if constexpr (std::is_same_v<T, int64_t>) {
                AppendInt64(out, value);
            } else if constexpr (std::is_same_v<T, double>) {
                AppendDouble(out, value, precision);
            } else if constexpr (std::is_same_v<T, bool>) {
                AppendBool(out, value);
            } else if constexpr (std::is_same_v<T, std::string>) {
                AppendBytes(out, value);
            } else {
                static_assert(std::is_same_v<T, PwDbMemoryFiler::Handle>);
                AppendHandle(out, value.value);
            }
        },
        item);
}

bool pwdbPlxReadItem(std::string_view line, Item& item) {
    if (line.size() < 2 || line[1] != ' ') return false;
    const std::string_view value = line.substr(2);
    switch (line[0]) {
        case 'S':
            return ReadText(value, item.emplace<wstring>());
        case 'I':
            return ReadInt32(value, item.emplace<int32_t>());
        case 'L':
            return ReadInt64(value, item.emplace<int64_t>());
        case 'D':
            return ReadDouble(value, item.emplace<double>());
        case 'B':
            return ReadBool(value, item.emplace<bool>());
        case 'X':
            return ReadBytes(value, item.emplace<std::string>(), nullptr);
        case 'H':
            return ReadHandle(value, item.emplace<PwDbMemoryFiler::Handle>().value);
        default:
            return false;
    }
}

bool PwDbPlxItemLines::next(std::string_view& line) {
    if (m_left == 0 || m_position >= m_text.size()) return false;
    size_t end = m_text.find('\n', m_position);
    if (end == std::string_view::npos) return false;  // an item line always has a successor
    const size_t following = end + 1;
    if (end > m_position && m_text[end - 1] == '\r') --end;
    line = m_text.substr(m_position, end - m_position);
    m_position = following;
    --m_left;
    return true;
}

// ---- the writing filer ----

ErrorStatus PwDbPlxWritingFiler::writeString(const char16_t* text) {
    AppendText(m_out, text != nullptr ? std::u16string_view(text) : std::u16string_view());
    ++m_count;
    return Plotwright::StatusOk;
}
ErrorStatus PwDbPlxWritingFiler::writeInt32(int32_t value) {
    AppendInt32(m_out, value);
    ++m_count;
    return Plotwright::StatusOk;
}
ErrorStatus PwDbPlxWritingFiler::writeInt64(int64_t value) {
    AppendInt64(m_out, value);
    ++m_count;
    return Plotwright::StatusOk;
}
ErrorStatus PwDbPlxWritingFiler::writeDouble(double value) {
    AppendDouble(m_out, value, m_precision);
    ++m_count;
    return Plotwright::StatusOk;
}
ErrorStatus PwDbPlxWritingFiler::writeBool(bool value) {
    AppendBool(m_out, value);
    ++m_count;
    return Plotwright::StatusOk;
}
ErrorStatus PwDbPlxWritingFiler::writeBytes(const void* bytes, size_t size) {
    if (size > 0 && bytes == nullptr) return Plotwright::StatusInvalidInput;
    AppendBytes(m_out, std::string_view(static_cast<const char*>(bytes), size));
    ++m_count;
    return Plotwright::StatusOk;
}
ErrorStatus PwDbPlxWritingFiler::writeObjectId(PwDbObjectId id) {
    AppendHandle(m_out, id.handle());
    ++m_count;
    return Plotwright::StatusOk;
}


// ---- the reading filer ----

ErrorStatus PwDbPlxReadingFiler::fail() {
    m_status = Plotwright::StatusFilerError;
    return m_status;
}

bool PwDbPlxReadingFiler::take(char type, std::string_view& value) {
    std::string_view line;
    if (m_status != Plotwright::StatusOk || !m_lines.next(line) || line.size() < 2 ||
        line[0] != type || line[1] != ' ') {
        return false;
    }
    value = line.substr(2);
    return true;
}

ErrorStatus PwDbPlxReadingFiler::readString(char16_t*& text) {
    text = nullptr;
    std::string_view value;
    wstring read;
    if (!take('S', value) || !ReadText(value, read)) return fail();
    return pwutNewString(read.c_str(), text);
}

ErrorStatus PwDbPlxReadingFiler::readInt32(int32_t& number) {
    if (m_status == Plotwright::StatusOk &&
        m_lines.takeParsed(
            'I', [&](const char* b, const char* e) { return ParseInteger(b, e, number, 10); })) {
        return Plotwright::StatusOk;
    }
    std::string_view value;
    if (!take('I', value) || !ReadInt32(value, number)) return fail();
    return Plotwright::StatusOk;
}

ErrorStatus PwDbPlxReadingFiler::readInt64(int64_t& number) {
    std::string_view value;
    if (!take('L', value) || !ReadInt64(value, number)) return fail();
    return Plotwright::StatusOk;
}

ErrorStatus PwDbPlxReadingFiler::readDouble(double& number) {
    if (m_status == Plotwright::StatusOk &&
        m_lines.takeParsed(
            'D', [&](const char* b, const char* e) { return ParseFiniteDouble(b, e, number); })) {
        return Plotwright::StatusOk;
    }
    std::string_view value;
    if (!take('D', value) || !ReadDouble(value, number)) return fail();
    return Plotwright::StatusOk;
}

ErrorStatus PwDbPlxReadingFiler::readBool(bool& flag) {
    std::string_view value;
    if (!take('B', value) || !ReadBool(value, flag)) return fail();
    return Plotwright::StatusOk;
}

ErrorStatus PwDbPlxReadingFiler::readBytes(void* bytes, size_t size) {
    std::string_view value;
    std::string read;
    const uint64_t expected = size;
    if ((size > 0 && bytes == nullptr) || !take('X', value) || !ReadBytes(value, read, &expected)) {
        return fail();
    }
    if (size > 0) std::memcpy(bytes, read.data(), size);
    return Plotwright::StatusOk;
}

ErrorStatus PwDbPlxReadingFiler::readObjectId(PwDbObjectId& id) {
    PwDbHandle handle = 0;
    const bool taken = m_status == Plotwright::StatusOk &&
                       m_lines.takeParsed('H', [&](const char* b, const char* e) {
                           return ParseInteger(b, e, handle, 16);
                       });
    std::string_view value;
    if (!taken && (!take('H', value) || !ReadHandle(value, handle))) return fail();
    id = m_database != nullptr ? m_database->getPwDbObjectId(handle, true) : PwDbObjectId();
    return Plotwright::StatusOk;
}

