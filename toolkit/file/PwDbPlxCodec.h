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

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include "toolkit/file/PwDbDrawingImage.h"

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
