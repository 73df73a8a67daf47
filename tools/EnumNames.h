// The names of the library's enumerations, as the client prints them.
#pragma once

#include <string>

#include "identification/CreatorKind.h"
#include "identification/FileFormat.h"

namespace lodeqdb::cli {

std::string PlwFileTypeName(lode::PlwFileType type);
std::string PlotwrightFileFormatName(lode::PlotwrightFileFormat format);

}  // namespace lodeqdb::cli
