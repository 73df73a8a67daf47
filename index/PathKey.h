// How the index compares names of files: as the parent walk does, code unit by code unit
// after full case folding, once the name is lexically normal (a backslash counts as '/', and
// "." and ".." steps are taken: the library keeps them in the names of images and underlays).
#pragma once

#include <string>

namespace LodeQDBIndex::detail {

/// The key of the native name `path`: lexically normal, then case-folded; native bytes.
std::string PathKey(const std::string& path);

}  // namespace LodeQDBIndex::detail
