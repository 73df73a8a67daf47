// Message formatting with numbered placeholders, as message texts are written.
//
//   wstring text;
//   LodeUtil::FormatMsg1(text, u"The file \"%1\" was not found.", path);
//   LodeUtil::FormatMsg(text, u"%2 of %1", {u"10", u"3"});            // "3 of 10"
//
// Placeholders are %1 to %9. "%%" gives one '%'. A placeholder whose argument was not given,
// and a '%' before anything else, stay in the text as they stand.
#pragma once

#include <initializer_list>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// Writes `format` into `out` with each %N replaced by the Nth of `arguments`.
/// `format` may be `out` itself.
void FormatMsg(wstring& out, const wstring& format, std::initializer_list<wstring> arguments);

/// FormatMsg with the one argument `argument` for %1.
void FormatMsg1(wstring& out, const wstring& format, const wstring& argument);

}  // namespace LodeUtil
