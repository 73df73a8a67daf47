// The key under which the index compares names of files.
#include "index/PathKey.h"

#include <algorithm>
#include <filesystem>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeQDBIndex::detail {

std::string PathKey(const std::string& path) {
    std::string slashes = path;
    std::replace(slashes.begin(), slashes.end(), '\\', '/');
    std::string normal = std::filesystem::path(slashes).lexically_normal().native();
    while (normal.size() > 1 && normal.back() == '/') normal.pop_back();
    const wstring folded = LodeUtil::FoldCase(LodeUtil::Utf16FromNative(normal));
    return LodeUtil::NativeFromUtf16(folded).value_or(normal);
}

}  // namespace LodeQDBIndex::detail
