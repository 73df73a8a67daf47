// Whether a path is absolute or a URL, and which path a drawing has.
#include <lodeqdb/references/PathQuestions.h>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace LodeQDBUtil {

bool IsPathURL(const wstring& path) {
    // A process whose host installed no services has nobody to say what a URL is.
    const PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    return services != nullptr && services->isURL(path.c_str()) == 1;
}

bool IsPathAbsolute(const wstring& path) {
    return IsPathURL(path) || LodeUtil::Path::IsPathRooted(path);
}

wstring GetDatabasePath(const PwDbDatabase& database) {
    return pwdbDatabasePath(&database);
}

}  // namespace LodeQDBUtil

namespace pwdb {

wstring OriginalXrefFullPathFor(const PwDbDatabase& database) {
    return wstring(pwdbOriginalXrefFullPathFor(&database));
}

}  // namespace pwdb
