// The header reader's files: opened for reading, others allowed to read, never created.
#pragma once

#include <cstdint>

#include <lodeqdb/toolkit/pal/PwFileIO.h>

namespace LodeQDBUtil {

using HeaderFile = Morvane::Plotwright::PAL::FileIO::File;

/// Opens `path` the one way the header reader opens files.
HeaderFile OpenHeaderFile(const char16_t* path);

/// The version signature's code in a file's first 128 bytes `header` (zeros behind a shorter
/// file's end), and where the search for the application information starts: what
/// ReadFileVersionSignature reads from a file.
int ParseFileVersionSignature(const unsigned char* header, uint32_t& scanStart);

}  // namespace LodeQDBUtil
