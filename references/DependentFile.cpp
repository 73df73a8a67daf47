// Finding a dependent file on disk: the stored path, then the places the host searches.
#include <lodeqdb/references/DependentFile.h>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBUtil {

Plotwright::ErrorStatus FindDependentFullName(wstring& fullPath, const wstring& dependentPath,
                                              PwDbDatabase* host) {
    if (&fullPath != &dependentPath) fullPath = dependentPath;
    const wstring hostPath = host != nullptr ? GetDatabasePath(*host) : wstring();
    const wstring hostFolder = LodeUtil::Path::GetDirectoryName(hostPath);
    if (!IsPathURL(fullPath) && !LodeUtil::Path::IsPathRooted(fullPath)) {
        if (hostPath.empty()) return Plotwright::StatusFileNotFound;
        fullPath = LodeUtil::CombineRelative(hostFolder, fullPath);
    }
    if (LodeUtil::File::Exists(fullPath)) return Plotwright::StatusOk;
    if (hostPath.empty()) return Plotwright::StatusFileNotFound;
    fullPath = LodeUtil::CombineRelative(hostFolder, LodeUtil::Path::GetFileName(fullPath));
    return LodeUtil::File::Exists(fullPath) ? Plotwright::StatusOk : Plotwright::StatusFileNotFound;
}

}  // namespace LodeQDBUtil
