// Walking a folder for the index, without following links to folders unless asked.
#include "index/FolderScan.h"

#include <sys/stat.h>

#include <filesystem>
#include <system_error>
#include <utility>

#include <lodeqdb/index/IndexError.h>

namespace LodeQDBIndex::detail {

std::vector<FoundFile> ScanFolder(const std::string& folder, bool followLinks,
                                  const std::set<std::string>& skipFolders,
                                  const std::set<std::string>& skipFiles) {
    namespace fs = std::filesystem;
    struct stat top {};
    if (::stat(folder.c_str(), &top) != 0 || !S_ISDIR(top.st_mode))
        throw IndexError("not a folder that can be read: " + folder);

    std::vector<FoundFile> found;
    std::set<std::pair<dev_t, ino_t>> folders{{top.st_dev, top.st_ino}};
    auto options = fs::directory_options::skip_permission_denied;
    if (followLinks) options |= fs::directory_options::follow_directory_symlink;
    std::error_code error;
    fs::recursive_directory_iterator walk(folder, options, error);
    if (error) throw IndexError("can't walk " + folder + ": " + error.message());
    for (; walk != fs::recursive_directory_iterator(); walk.increment(error)) {
        if (error) {
            // A folder that vanished or can't be listed: go on with the rest.
            error.clear();
            continue;
        }
        const std::string path = walk->path().native();
        struct stat info {};
        if (::stat(path.c_str(), &info) != 0) continue;  // a broken link, a file gone meanwhile
        if (S_ISDIR(info.st_mode)) {
            const bool link = walk->is_symlink(error);
            if (skipFolders.count(path) != 0 || (link && !followLinks) ||
                !folders.insert({info.st_dev, info.st_ino}).second)
                walk.disable_recursion_pending();
            continue;
        }
        if (!S_ISREG(info.st_mode) || skipFiles.count(path) != 0) continue;
        found.push_back({path, static_cast<int64_t>(info.st_size),
                         static_cast<int64_t>(info.st_mtim.tv_sec) * 1000000000 +
                             info.st_mtim.tv_nsec,
                         static_cast<int64_t>(info.st_ino)});
    }
    return found;
}

}  // namespace LodeQDBIndex::detail
