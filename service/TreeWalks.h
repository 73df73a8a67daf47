// Walks over a drawing's tree of dependencies, depth first in pre-order:
// PlotwrightNestedChildren lists everything a drawing depends on at any depth;
// PlotwrightParents lists the files in a root's tree that directly refer to one of some
// target files.
//
//   for (const auto& file : LodeQDBService::Request::PlotwrightNestedChildren(u"/srv/a.plw", true))
//       show(file.GetFullname());
//
// Each walk keeps the names it has met, so a cycle or a diamond is walked once. A walk that
// meets a failure at any depth (a file that can't be read, a DGN file the reader refuses)
// ends there, quietly: the caller gets what was found until then and no exception.
#pragma once

#include <vector>

#include "lodeutil/WideString.h"
#include "service/FileData.h"

class PwDbDatabase;

namespace LodeQDBService::Request {

/// Everything below `root` (not the root itself): each distinct full name once, at its first
/// meeting, in depth-first pre-order. Resolved references are entered through the drawings
/// the root has loaded; with `followDgn`, DGN files through their reference tables. Names are
/// compared exactly.
std::vector<FileData> PlotwrightNestedChildren(PwDbDatabase& root, bool followDgn);
/// The same for the drawing file `path`, read (with its references resolved) for the walk. A
/// file that can't be read throws as LodeQDBUtil::ReadFileToDatabase does.
std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn);

/// The files of `root`'s tree (`rootPath` is its path) that directly refer to one of `targets`:
/// the root first when it does (as the caller spelled `rootPath`, type Plw, resolved, null id),
/// then each such file once, in depth-first pre-order, with the record of its own level. File
/// names compare as LodeUtil::Order does with code-unit order and case folding. References
/// below the root that it hasn't loaded are read from disk.
std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const std::vector<wstring>& targets);
std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const wstring& target);

}  // namespace LodeQDBService::Request
