// The case-folded key of a file's name.
#include "index/PathKey.h"

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeQDBIndex::detail {

std::string PathKey(const std::string& path) {
    const wstring folded = LodeUtil::FoldCase(LodeUtil::Utf16FromNative(path));
    return LodeUtil::NativeFromUtf16(folded).value_or(path);
}

}  // namespace LodeQDBIndex::detail
