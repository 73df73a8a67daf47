// Zero-terminated wide text handed to the toolkit's setters, where a null pointer means "no
// text".
//
//   m_name = pwWideTextOrEmpty(name);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

/// A copy of `text`; empty for null.
inline wstring pwWideTextOrEmpty(const char16_t* text) {
    return text != nullptr ? wstring(text) : wstring();
}
