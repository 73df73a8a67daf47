// The format generation of a database's drawing.
#include <lodeqdb/vocabulary/FormatGeneration.h>

#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBUtil {

lode::PlotwrightFileFormat GetPlotwrightFileFormat(PwDbDatabase& database, const wstring* name) {
    int version = database.lastSavedAsVersion();
    if (version == 0) version = database.originalFileVersion();
    // From the newest pair down: 32 and 33 are the current generation, 22 and 23 the third.
    for (int generation = lode::FormatCurrent; generation >= lode::FormatGeneration3;
         --generation) {
        const int newer = 2 * generation + 17;
        if (version == newer || version == newer - 1)
            return static_cast<lode::PlotwrightFileFormat>(generation);
    }
    wstring fileName;
    if (name != nullptr) {
        fileName = *name;
    } else {
        const char16_t* text = nullptr;
        if (database.getFilename(text) == Plotwright::StatusOk && text != nullptr)
            fileName = LodeUtil::MakeWideString(text);
    }
    if (fileName.empty()) return lode::FormatUnsupported;
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(fileName);
    if (LodeUtil::FileUtil::IsPLWFile(extension) && version == 21) return lode::FormatOldestPlw;
    if (LodeUtil::FileUtil::IsPLXFile(extension) && version == 16) return lode::FormatOldestPlx;
    return lode::FormatUnsupported;
}

}  // namespace LodeQDBUtil
