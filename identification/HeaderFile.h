// The header reader's files: opened for reading, others allowed to read, never created.
#pragma once

#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace LodeQDBUtil {

using HeaderFile = Morvane::Plotwright::PAL::FileIO::File;

/// Opens `path` the one way the header reader opens files.
HeaderFile OpenHeaderFile(const char16_t* path);

}  // namespace LodeQDBUtil
