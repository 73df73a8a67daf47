// Numeric locale ids and locale tags: 1033 is "en-US", 1031 "de-DE".
//
//   int id = LodeUtil::LocaleIdFromTag(u"de-DE");     // 1031
//   wstring tag = LodeUtil::LocaleTagFromId(id);       // u"de-DE"
//
// The numbers are the widely used 32-bit locale identifiers (language in the low 10 bits,
// sub-language above); ICU holds the table.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// The id of `tag` ("de-DE", "de_DE", "de_DE.UTF-8"); 0 when the tag names no known locale.
int LocaleIdFromTag(const wstring& tag);

/// The tag of `id` as language-REGION ("de-DE"); empty when the id is unknown.
wstring LocaleTagFromId(int id);

/// The language's most likely tag ("de" and "de-AT" give "de-DE"); empty when unknown.
wstring LikelyTagForLanguageOf(const wstring& tag);

/// The id of the process's locale, taken from the environment (LC_ALL, LC_MESSAGES, LANG);
/// 1033 ("en-US") when that names no locale or the neutral "C"/"POSIX" one.
int ProcessLocaleId();

}  // namespace LodeUtil
