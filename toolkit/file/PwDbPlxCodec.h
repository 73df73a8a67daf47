// PwDbPlxCodec: the exchange (.plx) format, a UTF-8 text form of PwDbDrawingImage that holds
// everything the native format holds. Pure in memory; reading and writing files is elsewhere.
//
//   std::string text;
//   if (pwdbEncodePlx(image, 16, text) != Plotwright::StatusOk) return;   // image -> text
//   PwDbDrawingImage back;
//   Plotwright::ErrorStatus status = pwdbDecodePlx(text, back);          // text -> image
//
// The text is a sequence of lines, each ended by "\n" (the reader also takes "\r\n"; the last
// line may lack its line end). Tokens on a line are separated by exactly one space. Handles
// are hexadecimal without prefix, other integers decimal. docs/exchange-file-format.md has
// the full description; in short:
//
//   PLOTWRIGHT EXCHANGE                    identification, always the first line
//   VERSION 33                             16..33
//   PRECISION 16                           digits after the point of every double, 0..17
//   HANDSEED 2A
//   MEASUREMENT METRIC                     or IMPERIAL
//   ROOT BlockTable 1                      nine ROOT lines, each name once, in any order:
//   ...                                    BlockTable LayerTable NamedObjects LayoutDictionary
//                                          PlotSettingsDictionary ModelSpace PaperSpace
//                                          LayerZero CurrentLayer
//   APPINFO 1                              the number of INFO lines that follow
//   INFO {E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E} "text"
//   PREVIEW 2 1                            or PREVIEW NONE; width and height
//   PIXELS FF000000 FFFFFFFF               0xAARRGGBB, rows top first, up to 8 per line
//   OBJECTS 1                              the number of object blocks that follow
//   OBJECT 1F 2 LIVE "PwDbLine" "PwDbEntity" "PwDbObject"    handle, item count, erased or not,
//   class chain D 1.5000000000000000e+00               one line per item: S I L D B X H H 10 END
//   OBJECT END FILE
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlxItems.h"

/// The identification line that starts every exchange file.
inline constexpr std::string_view kPwDbPlxIdentification = "PLOTWRIGHT EXCHANGE";

/// The number of bytes at an exchange file's start that pwdbPlxStartFits judges.
inline constexpr size_t kPwDbPlxStartBytes = kPwDbPlxIdentification.size() + 2;

/// Whether a file starts with the identification line of an exchange file: the check made
/// before a whole file is read, so that a file that isn't one costs a few bytes.
inline bool pwdbPlxStartFits(std::string_view start, uint64_t /*fileSize*/) {
    if (!start.starts_with(kPwDbPlxIdentification)) return false;
    const std::string_view end = start.substr(kPwDbPlxIdentification.size());
    return end.starts_with('\n') || end.starts_with("\r\n");
}
/// The largest number of digits after the point that pwdbEncodePlx takes; with 16 or more,
/// every finite double reads back exactly.
inline constexpr int kPwDbPlxMaxPrecision = 17;

/// Writes `image` as exchange text into `text`, doubles in scientific form with `precision`
/// digits after the point. StatusNoSuchVersion for a version outside 16..33;
/// StatusInvalidInput for a precision outside 0..17, a measurement other than Imperial or
/// Metric, or a preview whose pixel count isn't width * height; StatusOutOfMemory when the
/// text can't be held. `text` changes only on StatusOk.
Plotwright::ErrorStatus pwdbEncodePlx(const PwDbDrawingImage& image, int precision,
                                      std::string& text);

/// Reads exchange text into `image`. StatusBadFileFormat for anything that isn't one whole
/// exchange file: a wrong first line, an unknown version, invalid UTF-8, an unknown keyword,
/// a bad number or string, counts that don't match what follows, text after the end line or
/// no end line at all. The precision line is checked and then has no further use: numbers
/// carry their own digits. `image` changes only on StatusOk.
Plotwright::ErrorStatus pwdbDecodePlx(std::string_view text, PwDbDrawingImage& image);

/// An object's class chain as its OBJECT line writes it: each name quoted, each after a space.
std::string pwdbPlxQuotedChain(const std::vector<wstring>& chain);

/// Writes an exchange text piece by piece, so that objects can write themselves into it
/// (PwDbPlxWritingFiler) without a list of items in between:
///
///   PwDbPlxWriter writer(text, 16);
///   if (auto status = writer.writeHead(head, objectCount)) return status;
///   writer.writeObject(handle, erased, pwdbPlxQuotedChain(chain), itemCount, itemLines);
///   writer.writeEnd();
class PwDbPlxWriter {
  public:
    PwDbPlxWriter(std::string& out, int precision) : m_out(out), m_precision(precision) {}

    /// Everything before the objects, from `head` (its objects aside), ending with the line
    /// that counts `objectCount` objects. Refuses as pwdbEncodePlx does, writing nothing.
    Plotwright::ErrorStatus writeHead(const PwDbDrawingImage& head, uint64_t objectCount);
    /// One object: `quotedChain` as pwdbPlxQuotedChain gives it, and its `itemCount` item lines.
    void writeObject(PwDbHandle handle, bool erased, std::string_view quotedChain,
                     uint64_t itemCount, std::string_view itemLines);
    /// The end line, after the last object.
    void writeEnd();
    int precision() const { return m_precision; }

  private:
    std::string& m_out;
    int m_precision;
};

/// The line that starts one object of an exchange text.
struct PwDbPlxObjectLine {
    PwDbHandle handle = 0;
    bool erased = false;
    /// The class chain as the line holds it: quoted names, each after a space (pwdbPlxReadChain
    /// reads them). The same chain is spelt the same way by every writer of the toolkit.
    std::string_view quotedChain;
    uint64_t itemCount = 0;
};

/// The names of a class chain as an OBJECT line holds them; false when they don't read.
bool pwdbPlxReadChain(std::string_view quotedChain, std::vector<wstring>& chain);

/// Reads an exchange text piece by piece, so that objects can read themselves from their item
/// lines (PwDbPlxReadingFiler) without a list of items in between. Each call returns false
/// when the text isn't what it should be there; the text is then not an exchange file.
///
///   PwDbPlxReader reader(text);                   // text checked with pwdbPlxIsValidUtf8
///   reader.readHead(head);                        // head.objects stays empty
///   for (uint64_t n = 0; n < reader.objectCount(); ++n) {
///       PwDbPlxObjectLine object;
///       reader.readObjectLine(object);
///       PwDbPlxItemLines items = reader.items(object);
///       ... read the items ...
///       reader.readObjectEnd(items);              // every item taken, then "END OBJECT"
///   }
///   reader.readEnd();
class PwDbPlxReader {
  public:
    explicit PwDbPlxReader(std::string_view text) : m_text(text) {}

    bool readHead(PwDbDrawingImage& head);
    uint64_t objectCount() const { return m_objectCount; }
    bool readObjectLine(PwDbPlxObjectLine& object);
    /// The item lines of the object whose line was read last.
    PwDbPlxItemLines items(const PwDbPlxObjectLine& object) const;
    bool readObjectEnd(const PwDbPlxItemLines& items);
    bool readEnd();

  private:
    bool nextLine(std::string_view& line);
    bool readFixedLine(std::string_view expected);
    bool readCount(std::string_view keyword, size_t minBytes, uint64_t& count);
    bool readVersionAndSeed(PwDbDrawingImage& head);
    bool readRoots(PwDbDrawingRoots& roots);
    bool readAppInfo(std::vector<PwDbAppInfoEntry>& entries);
    bool readPreview(std::optional<PwDbPreviewImage>& preview);
    bool readPixels(PwDbPreviewImage& preview);
    bool readObjectLineByTokens(std::string_view line, PwDbPlxObjectLine& object);
    size_t remaining() const { return m_text.size() - m_position; }

    std::string_view m_text;
    size_t m_position = 0;
    uint64_t m_objectCount = 0;
};
