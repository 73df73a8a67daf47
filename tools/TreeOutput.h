// The human output of `lodeqdb tree`: the walk's records drawn as a tree, as tree(1) draws
// folders, with each file met again marked instead of repeated.
//
//   site.plw
//   ├── floors/ground.plw  drawing, found
//   │   └── blocks/title.plw  drawing, found
//   └── blocks/title.plw  (already listed above)
#pragma once

#include <ostream>
#include <string>
#include <vector>

#include <lodeqdb/service/TreeWalks.h>

namespace lodeqdb::cli {

/// One record of the walk as it was met.
struct TreeLine {
    LodeQDBService::FileData record;
    size_t depth = 1;
    bool metBefore = false;
};

/// Draws `lines` below the root `rootPath`. Names inside the root's folder are shown relative
/// to it, others in full.
void PrintTree(std::ostream& out, const wstring& rootPath, const std::vector<TreeLine>& lines);

}  // namespace lodeqdb::cli
