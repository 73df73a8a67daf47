// Wide-string helpers: copying, comparing under a chosen order and case, replacing, trimming.
//
//   int c = LodeUtil::Order(u"Sheet10", u"sheet9", LodeUtil::StringOrder::Natural,
//                           LodeUtil::StringCase::Ignore);            // c > 0
//   wstring s = u"  Rev A \t";
//   LodeUtil::PathUtil::TrimString(s);                               // u"Rev A"
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// A copy of zero-terminated wide text. `text` must not be null.
wstring MakeWideString(const char16_t* text);
/// A copy of `text`.
wstring MakeWideString(const wstring& text);

namespace StringOrder {
enum Enum {
    /// Code unit by code unit, as unsigned 16-bit numbers; the shorter prefix first.
    CodeUnit = 0,
    /// The order people expect of names with numbers in them: runs of ASCII digits compare
    /// by their value ("Sheet9" before "Sheet10"); equal values with more leading zeros come
    /// later ("7" < "07"), so two texts are equal here exactly when they are equal in
    /// CodeUnit order. Everything else compares as in CodeUnit order.
    Natural = 1,
};
}  // namespace StringOrder

namespace StringCase {
enum Enum {
    /// Upper and lower case differ.
    Respect = 0,
    /// Both texts are compared after full Unicode case folding ("STRASSE" equals "straße").
    Ignore = 1,
};
}  // namespace StringCase

/// Compares `a` and `b`: negative when a comes first, 0 when they are equal under the given
/// order and case, positive when b comes first.
int Order(const wstring& a, const wstring& b, StringOrder::Enum order, StringCase::Enum sense);

/// Replaces every occurrence of `from` in `text` by `to`, left to right, without rescanning
/// what was put in. An empty `from` changes nothing.
void Replace(wstring& text, const wstring& from, const wstring& to);

/// Full Unicode case folding of `text` (for case-insensitive keys and comparisons);
/// `text` itself in the rare case ICU can't fold it.
wstring FoldCase(const wstring& text);

namespace PathUtil {
/// Removes Unicode white space (White_Space property) from both ends of `text`, in place.
void TrimString(wstring& text);
}  // namespace PathUtil

}  // namespace LodeUtil
