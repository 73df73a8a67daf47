// Opening files for the header reader: read-only, shared, never created.
#include "identification/HeaderFile.h"

namespace LodeQDBUtil {

HeaderFile OpenHeaderFile(const char16_t* path) {
    namespace FileIO = Morvane::Plotwright::PAL::FileIO;
    return HeaderFile::openFile(path, FileIO::kWideChars, FileIO::kOpenForRead, FileIO::kShareRead,
                                FileIO::kOpenExisting);
}

}  // namespace LodeQDBUtil
