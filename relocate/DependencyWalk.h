// The files a pack takes: the root and everything it depends on at any depth, each file once
// (told apart by canonical path), with every stored path and the file it found.
#pragma once

#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/relocate/StoredPaths.h>

namespace LodeQDBRelocate::detail {

/// One stored path of a file and what it found.
struct DependencyEdge {
    StoredPath stored;
    /// Its place in ListStoredPaths (or in the design file's attachments), so that a second
    /// read of the same file finds it again.
    size_t position = 0;
    /// The node of the file it found; -1 when it found none.
    long target = -1;
    /// For a path that found nothing: where the stored path itself points, absolute and
    /// lexically normalised; empty for a path in Windows form, which names no file here.
    wstring lookedFor;
};

enum class NodeKind { Drawing, DesignFile, File };

struct DependencyNode {
    /// Absolute and lexically normalised: the first spelling met.
    wstring path;
    NodeKind kind = NodeKind::File;
    std::vector<DependencyEdge> edges;
    /// Why a drawing or design file was taken as plain bytes; empty otherwise.
    std::string note;
};

/// Node 0 is the root; the others in the order met, breadth first. Throws as the readers do
/// when the root can't be read.
std::vector<DependencyNode> WalkDependencies(const wstring& root);

/// True for a name with the extension of a drawing or an exchange file.
bool IsDrawingName(const wstring& path);

}  // namespace LodeQDBRelocate::detail
