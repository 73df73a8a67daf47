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
// ends there, quietly: the caller gets what was found until then and no exception. A caller
// that must know whether the list is whole passes a WalkStop, which says whether and why the
// walk ended early:
//
//   LodeQDBService::Request::WalkStop stop;
//   auto files = LodeQDBService::Request::PlotwrightNestedChildren(u"/srv/a.plw", true, stop);
//   if (stop.stopped) warn(stop.file, stop.exceptionClass, stop.message);
//
// The walks keep their way down on the heap, not on the thread's stack: any depth of
// references is walked, and time and memory grow with the number of records met.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/service/FileData.h>

class PwDbDatabase;

namespace LodeQDBService::Request {

/// How a walk ended: whole, or stopped early by a failure, which is described here.
struct WalkStop {
    /// True when the walk ended before it had met everything below the root.
    bool stopped = false;
    /// The class of what stopped it: a class of the library's exceptions ("NotFound",
    /// "InvalidFormat", ...), "bad_alloc" for memory running out, or "exception" for any other.
    std::string exceptionClass;
    /// The library exception's code(); 0 for other exceptions.
    int32_t code = 0;
    /// The library exception's message() (often empty), or the other exception's what().
    wstring message;
    /// The file whose dependencies were being asked for when it stopped; empty for the root.
    wstring file;
};

/// One record as the nested walk meets it, for a caller that draws the tree: its depth below
/// the root (1 for the root's own dependencies) and whether a record of its name was met
/// before (the walk then neither lists nor enters it again).
struct WalkStep {
    const FileData& record;
    size_t depth;
    bool metBefore;
};
using WalkObserver = std::function<void(const WalkStep&)>;

/// Everything below `root` (not the root itself): each distinct full name once, at its first
/// meeting, in depth-first pre-order. Resolved references are entered through the drawings
/// the root has loaded; with `followDgn`, DGN files through their reference tables. Names are
/// compared exactly.
std::vector<FileData> PlotwrightNestedChildren(PwDbDatabase& root, bool followDgn);
/// The same for the drawing file `path`, read (with its references resolved) for the walk. A
/// file that can't be read throws as LodeQDBUtil::ReadFileToDatabase does.
std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn);
/// The two walks above, telling in `stop` whether the list is whole (see WalkStop).
std::vector<FileData> PlotwrightNestedChildren(PwDbDatabase& root, bool followDgn, WalkStop& stop);
std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn, WalkStop& stop);
/// The walk of the drawing file `path`, telling `observer` of every record it meets, in the
/// order it meets them, repeats included (WalkStep).
std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn,
                                               WalkStop& stop, const WalkObserver& observer);

/// The files of `root`'s tree (`rootPath` is its path) that directly refer to one of `targets`:
/// the root first when it does (as the caller spelled `rootPath`, type Plw, resolved, null id),
/// then each such file once, in depth-first pre-order, with the record of its own level. File
/// names compare as LodeUtil::Order does with code-unit order and case folding. References
/// below the root that it hasn't loaded are read from disk.
std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const std::vector<wstring>& targets);
std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const wstring& target);
/// PlotwrightParents, telling in `stop` whether the walk went through the whole tree.
std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const std::vector<wstring>& targets, WalkStop& stop);

}  // namespace LodeQDBService::Request
