// Where each packed file goes in the archive: its place below the base folder, or below
// `_outside/` with its whole path when it lies elsewhere.
#pragma once

#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeQDBRelocate::detail {

/// The folder of archive entries for files outside the base folder.
inline constexpr char16_t kOutsideFolder[] = u"_outside";

struct ArchiveLayout {
    /// The folder on disk that the archive's top stands for.
    wstring base;
    /// Per file, in the order given: its archive path, names joined by '/'.
    std::vector<wstring> paths;
};

/// Lays out `files` (absolute, lexically normalised POSIX paths; the first is the root): the
/// base is the deepest folder holding the root and every file that shares at least its first
/// folder with the root. Throws std::runtime_error when two files would get one name, or a
/// file would be named `manifest.json` at the top.
ArchiveLayout LayOutArchive(const std::vector<wstring>& files);

/// The archive path of `file` (absolute, lexically normalised) when it lies below the base;
/// empty otherwise.
wstring PlaceBelowBase(const ArchiveLayout& layout, const wstring& file);

/// The archive path `path` as the bytes of a zip entry's name.
std::string EntryName(const wstring& path);

}  // namespace LodeQDBRelocate::detail
