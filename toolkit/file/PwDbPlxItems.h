// PwDbPlxItems: the item lines of an exchange (.plx) object, one typed value a line, and the
// two filers that let an object write itself as such lines and read itself back from them,
// with no list of items in between.
//
//   std::string lines;
//   PwDbPlxWritingFiler out(&database, lines, 16);
//   line->plwOutFields(&out);                    // "H 5\nI 0\n...D 5.0...e+01\n", out.count()
//   PwDbPlxItemLines source(lines, out.count());
//   PwDbPlxReadingFiler in(&database, source);
//   copy->plwInFields(&in);                      // source.left() == 0 when all was read
//
// A line is a type letter, a space and the value: S "text", I and L decimal, D a double as
// pwdbPlxAppendDouble writes it, B 0 or 1, X the byte count then (unless 0) the bytes in
// hexadecimal, H a handle in hexadecimal.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include "toolkit/file/PwDbOneWayFilers.h"

/// Appends `item` as one line, its line end included.
void pwdbPlxAppendItem(std::string& out, const PwDbMemoryFiler::Item& item, int precision);

/// Reads one item line (no line end) into `item`; false when it isn't one.
bool pwdbPlxReadItem(std::string_view line, PwDbMemoryFiler::Item& item);

/// The item lines of one object: the next lines of a text, as many as the object's count.
class PwDbPlxItemLines {
  public:
    /// `count` lines of `text` from `position` on; each ends with "\n" or "\r\n".
    PwDbPlxItemLines(std::string_view text, uint64_t count, size_t position = 0)
        : m_text(text), m_position(position), m_left(count) {}

    /// The next line, without its line end; false when the count is used up or the text ends.
    bool next(std::string_view& line);
    /// Takes the next line when it is `type`, a space and a value that `parse` reads whole, the
    /// line ending right after it with "\n". `parse(begin, end)` reads from `begin` as far as
    /// it can and returns where it stopped, or null when it read nothing it accepts. False
    /// leaves the line where it was (the caller then reads it by next()).
    template <class Parse>
    bool takeParsed(char type, Parse&& parse) {
        const size_t at = m_position;
        if (m_left == 0 || m_text.size() - at < 4 || m_text[at] != type || m_text[at + 1] != ' ') {
            return false;
        }
        const char* end = m_text.data() + m_text.size();
        const char* stop = parse(m_text.data() + at + 2, end);
        if (stop == nullptr || stop == end || *stop != '\n') return false;
        m_position = static_cast<size_t>(stop + 1 - m_text.data());
        --m_left;
        return true;
    }
    /// How many lines of the count were not taken.
    uint64_t left() const { return m_left; }
    /// Where the line after the last one taken starts.
    size_t position() const { return m_position; }

  private:
    std::string_view m_text;
    size_t m_position;
    uint64_t m_left;
};

/// A filer that writes each item as a line appended to a text.
class PwDbPlxWritingFiler : public PwDbWriteOnlyFiler {
  public:
    PwDbPlxWritingFiler(PwDbDatabase* database, std::string& out, int precision)
        : m_database(database), m_out(out), m_precision(precision) {}
    /// The number of items written so far.
    uint64_t count() const { return m_count; }

    Plotwright::ErrorStatus writeString(const char16_t* text) override;
    Plotwright::ErrorStatus writeInt32(int32_t value) override;
    Plotwright::ErrorStatus writeInt64(int64_t value) override;
    Plotwright::ErrorStatus writeDouble(double value) override;
    Plotwright::ErrorStatus writeBool(bool value) override;
    Plotwright::ErrorStatus writeBytes(const void* bytes, size_t size) override;
    Plotwright::ErrorStatus writeObjectId(PwDbObjectId id) override;
    PwDbDatabase* database() const override { return m_database; }

    using PwDbPlwFiler::readString;
    using PwDbPlwFiler::writeString;

  private:
    PwDbDatabase* m_database;
    std::string& m_out;
    int m_precision;
    uint64_t m_count = 0;
};

/// A filer that reads an object straight from its item lines, ids resolved in `database` (made
/// there when it doesn't hold the handle yet). A read whose line is of another type, or that
/// finds no line left, fails, and the filer stays failed.
class PwDbPlxReadingFiler : public PwDbReadOnlyFiler {
  public:
    PwDbPlxReadingFiler(PwDbDatabase* database, PwDbPlxItemLines& lines)
        : m_database(database), m_lines(lines) {}

    Plotwright::ErrorStatus readString(char16_t*& text) override;
    Plotwright::ErrorStatus readInt32(int32_t& value) override;
    Plotwright::ErrorStatus readInt64(int64_t& value) override;
    Plotwright::ErrorStatus readDouble(double& value) override;
    Plotwright::ErrorStatus readBool(bool& value) override;
    Plotwright::ErrorStatus readBytes(void* bytes, size_t size) override;
    Plotwright::ErrorStatus readObjectId(PwDbObjectId& id) override;
    Plotwright::ErrorStatus filerStatus() const override { return m_status; }
    PwDbDatabase* database() const override { return m_database; }

    using PwDbPlwFiler::readString;
    using PwDbPlwFiler::writeString;

  private:
    /// The next line, when it is of `type`: `value` is what stands after the type and its space.
    bool take(char type, std::string_view& value);
    Plotwright::ErrorStatus fail();

    PwDbDatabase* m_database;
    PwDbPlxItemLines& m_lines;
    Plotwright::ErrorStatus m_status = Plotwright::StatusOk;
};
