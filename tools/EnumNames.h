// The names of the library's enumerations, as the client prints them.
#pragma once

#include <string>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/service/FileData.h>
#include <lodeqdb/toolkit/db/PwDb.h>

namespace lodeqdb::cli {

std::string PlwFileTypeName(lode::PlwFileType type);
std::string PlotwrightFileFormatName(lode::PlotwrightFileFormat format);
std::string FileTypeName(lode::FileType type);
std::string XrefStatusName(PwDb::XrefStatus status);

// Plain words for people, printed beside the names above in the human output.

/// What kind of application made a drawing, as a phrase: "made by a plain drawing application".
std::string PlwFileTypeWords(lode::PlwFileType type);
/// What a format generation means for the file: "the current generation".
std::string PlotwrightFileFormatWords(lode::PlotwrightFileFormat format);
/// What a dependency's reference status says of its file: "found", "missing", ...
std::string XrefStatusWords(PwDb::XrefStatus status);
/// The kind of a dependency's file: "drawing", "image", ...
std::string FileTypeWords(lode::FileType type);

}  // namespace lodeqdb::cli
