// The names of the library's enumerations, as the client prints them.
#pragma once

#include <string>

#include "identification/CreatorKind.h"
#include "identification/FileFormat.h"
#include "service/FileData.h"
#include "toolkit/db/PwDb.h"

namespace lodeqdb::cli {

std::string PlwFileTypeName(lode::PlwFileType type);
std::string PlotwrightFileFormatName(lode::PlotwrightFileFormat format);
std::string FileTypeName(lode::FileType type);
std::string XrefStatusName(PwDb::XrefStatus status);

}  // namespace lodeqdb::cli
