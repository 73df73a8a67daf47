// The one place where UTF-16 text becomes UTF-8 and back, for the operating system.
//
//   std::string native = LodeUtil::Utf8FromUtf16(u"Zeichnung ä.plw");
//   wstring back = LodeUtil::Utf16FromUtf8(native);
//
// Malformed input never fails and never crashes: a lone surrogate in UTF-16, or an invalid
// byte sequence in UTF-8, is replaced by U+FFFD (REPLACEMENT CHARACTER), one for each
// maximal ill-formed subsequence. A path that needed a replacement therefore names a file
// that does not exist, which every caller already handles.
#pragma once

#include <string>
#include <string_view>

#include "lodeutil/WideString.h"

namespace LodeUtil {

/// UTF-8 form of `text`; lone surrogates become U+FFFD.
std::string Utf8FromUtf16(std::u16string_view text);

/// UTF-16 form of `text`; invalid UTF-8 sequences become U+FFFD.
wstring Utf16FromUtf8(std::string_view text);

/// True when `text` is well-formed UTF-16 (no lone surrogate).
bool IsWellFormedUtf16(std::u16string_view text);

}  // namespace LodeUtil
