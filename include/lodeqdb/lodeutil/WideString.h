// The wide string of every interface in LodeQDB: UTF-16 code units.
//
//   wstring name = u"host.plw";
//   const char16_t* text = name.c_str();   // zero-terminated wide text
//
// UTF-8 appears only where text crosses into the operating system (see Utf.h).
#pragma once

#include <string>

/// Wide text as the library's interfaces take and give it: UTF-16 code units.
/// Comparisons "by code unit" compare these 16-bit units as unsigned numbers.
using wstring = std::u16string;
