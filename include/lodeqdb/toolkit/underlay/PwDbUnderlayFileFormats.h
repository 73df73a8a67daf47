// Telling the files that underlays show by their first bytes: PDF documents, DGN design files
// and PLF sheets.
//
//   if (pwdbUnderlayFileKind(path) == PwDbUnderlayFileKind::Pdf) { ... }
//
//   PDF  the text "%PDF-" within the first 1024 bytes.
//   DGN  a V7 design file: its first element is the type 9 control block (type 9, level 8,
//        2D or 3D, with 16 or more words to follow); or a V8 design file, a compound document
//        (D0 CF 11 E0 A1 B1 1A E1), which is taken for one without looking inside.
//   PLF  the eight bytes 'P' 'W' 'P' 'L' 'F' 1A 0D 0A: the letters, a byte that text doesn't
//        hold, and a line end that a text transfer would change.
#pragma once

#include <string_view>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

enum class PwDbUnderlayFileKind { Unknown = 0, Pdf, Dgn, Plf };

/// The PLF signature.
inline constexpr char kPwDbPlfSignature[8] = {'P', 'W', 'P', 'L', 'F', '\x1A', '\r', '\n'};

/// The kind of file whose first bytes are `bytes` (at least the first 1024 there are).
PwDbUnderlayFileKind pwdbUnderlayKindOfBytes(std::string_view bytes);

/// The kind of the file `path`: StatusFileNotFound for a missing file or a folder, the
/// statuses of a file the toolkit may not read; otherwise StatusOk and `kind` (Unknown for a
/// file of no kind).
Plotwright::ErrorStatus pwdbUnderlayFileKind(const wstring& path, PwDbUnderlayFileKind& kind);
