// Writing the host's DGN import settings file.
#include <lodeqdb/readsave/DgnSetups.h>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/ProfileFile.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace LodeQDBUtil {

wstring EnsureDgnSetups() {
    const wstring root = pwdbHostApplicationServices()->rootFolder();
    const wstring folder = root + u"\\Support";
    const wstring settings = folder + u"\\DgnSetups.ini";
    // A host without a root folder has no support folder: "\Support" would land in the file
    // system's root, where no host keeps its settings.
    if (root.empty()) return settings;
    if (!LodeUtil::Directory::Exists(folder)) LodeUtil::Directory::CreateDirectory(folder);
    if (!LodeUtil::File::Exists(settings))
        LodeUtil::Profile::WriteString(u"IMPORTSECTION", u"IsMasterUnits", u"1", settings);
    return settings;
}

}  // namespace LodeQDBUtil
