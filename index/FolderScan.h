// Walking a folder for the index: every regular file below it, with what tells whether it
// changed (size, modification time, inode).
#pragma once

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace LodeQDBIndex::detail {

/// A regular file found under the folder. `path` is its full name, native bytes.
struct FoundFile {
    std::string path;
    int64_t size = 0;
    int64_t mtimeNs = 0;
    int64_t inode = 0;
};

/// Every regular file below `folder` (a full, lexically normal path), in no particular order.
/// Symbolic links to files count as the files they lead to; symbolic links to folders are
/// entered only with `followLinks`, and then a folder met twice is walked once. Folders that
/// can't be opened, broken links and anything that isn't a regular file (pipes, devices) are
/// passed over; so are the folders named in `skipFolders` and the files named in `skipFiles`.
/// Throws IndexError when `folder` itself isn't a folder that can be read.
std::vector<FoundFile> ScanFolder(const std::string& folder, bool followLinks,
                                  const std::set<std::string>& skipFolders,
                                  const std::set<std::string>& skipFiles);

}  // namespace LodeQDBIndex::detail
