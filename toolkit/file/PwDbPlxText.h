// PwDbPlxText: the tokens of an exchange (.plx) file, quoted strings, numbers and hexadecimal,
// written so that they read back exactly. PwDbPlxCodec.h builds the file from them.
//
//   std::string line = "S ";
//   pwdbPlxAppendQuoted(line, u"say \"hi\"\n");   // S "say \"hi\"\n"
//   PwDbPlxLine cursor(line);
//   wstring text;
//   bool ok = cursor.expectWord("S") && cursor.readQuoted(text) && cursor.atEnd();
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/WideString.h>

/// Appends `text` in double quotes. Printable characters stand as UTF-8; the quote, the
/// backslash, line feed, tab and carriage return become \" \\ \n \t \r; every other control
/// unit, U+2028, U+2029 and every lone surrogate becomes \uXXXX (one UTF-16 unit each), so
/// that any sequence of UTF-16 units, U+0000 included, reads back unchanged.
void pwdbPlxAppendQuoted(std::string& out, std::u16string_view text);

/// Appends `value` in scientific form with `precision` (0..17) digits after the point, as
/// printf "%.*e" does in the "C" locale, whatever the process locale. Infinities become "inf"
/// and "-inf"; the quiet NaN of std::numeric_limits becomes "nan", any other NaN
/// "nan(XXXXXXXXXXXXXXXX)" with its 64 bits in hexadecimal, so that no NaN loses its bits.
void pwdbPlxAppendDouble(std::string& out, double value, int precision);

/// Appends `value` in upper-case hexadecimal without leading zeros ("0" for zero).
void pwdbPlxAppendHex(std::string& out, uint64_t value);

/// Appends `value` as exactly eight upper-case hexadecimal digits.
void pwdbPlxAppendHex8(std::string& out, uint32_t value);

/// Appends every byte of `bytes` as two upper-case hexadecimal digits.
void pwdbPlxAppendHexBytes(std::string& out, std::string_view bytes);

/// True when `text` is well-formed UTF-8: no overlong form, no encoded surrogate, nothing
/// above U+10FFFF, no truncated sequence.
bool pwdbPlxIsValidUtf8(std::string_view text);

/// Parses one number token as pwdbPlxAppendDouble writes it, and also fixed notation ("2.5").
/// A finite number beyond the range of double reads as the largest finite double of its
/// sign, one below the smallest denormal as zero of its sign. False for anything else.
bool pwdbPlxParseDouble(std::string_view token, double& value);

/// One line of an exchange file, read token by token from the left. Tokens are separated by
/// exactly one space; the line holds no line end. Every read returns false, and leaves the
/// cursor where it was, when the next token is not of the kind asked for.
class PwDbPlxLine {
  public:
    explicit PwDbPlxLine(std::string_view line) : m_line(line) {}

    /// True when every token has been read (nothing, not even a space, is left).
    bool atEnd() const { return m_position == m_line.size(); }
    /// Reads the next token, whatever it is, up to the next space.
    bool readWord(std::string_view& word);
    /// Reads the next token when it is exactly `word`.
    bool expectWord(std::string_view word);
    /// Decimal integers, an optional leading '-' for the signed ones.
    bool readInt32(int32_t& value);
    bool readInt64(int64_t& value);
    bool readUint32(uint32_t& value);
    bool readUint64(uint64_t& value);
    /// Hexadecimal digits, either case, whose value fits 64 bits; no prefix.
    bool readHex(uint64_t& value);
    /// Exactly 8 hexadecimal digits, either case.
    bool readHex8(uint32_t& value);
    /// A number as pwdbPlxParseDouble takes it.
    bool readDouble(double& value);
    /// A quoted string as pwdbPlxAppendQuoted writes it. Expects the line to be valid UTF-8.
    bool readQuoted(wstring& text);
    /// Exactly 2 * `count` hexadecimal digits; `count` is checked against the line's length
    /// before anything is allocated.
    bool readHexBytes(uint64_t count, std::string& bytes);

  private:
    /// Where the next token starts: after the separating space, except for the first token.
    bool tokenStart(size_t& start) const;
    bool readToken(std::string_view& token, size_t& end) const;
    template <class Integer>
    bool readInteger(Integer& value, int base);

    std::string_view m_line;
    size_t m_position = 0;
};
