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

#include <optional>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// UTF-8 form of `text`; lone surrogates become U+FFFD.
std::string Utf8FromUtf16(std::u16string_view text);

/// UTF-16 form of `text`; invalid UTF-8 sequences become U+FFFD.
wstring Utf16FromUtf8(std::string_view text);

// Names of files are bytes to the operating system, and need not be UTF-8. At that boundary
// they go through the two functions below, which lose nothing: each byte that isn't part of
// well-formed UTF-8 becomes the lone surrogate U+DC80..U+DCFF of its value (0x80..0xFF), and
// back. Well-formed UTF-8 never gives such a surrogate, so the two are exact inverses.
//
//   wstring name = LodeUtil::Utf16FromNative("caf\xe9.plw");       // u"caf\xDCE9.plw"
//   std::optional<std::string> bytes = LodeUtil::NativeFromUtf16(name);  // "caf\xe9.plw"

/// UTF-16 form of the native bytes `bytes`: UTF-8 decoded, every other byte kept as a lone
/// surrogate U+DC80..U+DCFF.
wstring Utf16FromNative(std::string_view bytes);

/// The native bytes of `text`: UTF-8, with each lone surrogate U+DC80..U+DCFF the byte it
/// stands for. None when `text` holds any other lone surrogate, which no name on disk gives.
std::optional<std::string> NativeFromUtf16(std::u16string_view text);

/// True when `text` is well-formed UTF-16 (no lone surrogate).
bool IsWellFormedUtf16(std::u16string_view text);

}  // namespace LodeUtil
