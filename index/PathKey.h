// How the index compares names of files: as the parent walk does, code unit by code unit
// after full case folding.
#pragma once

#include <string>

namespace LodeQDBIndex::detail {

/// The key of the native name `path`: its case-folded form, native bytes.
std::string PathKey(const std::string& path);

}  // namespace LodeQDBIndex::detail
