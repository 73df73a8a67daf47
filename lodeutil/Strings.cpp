// Copying, ordering, replacing and trimming wide strings; case folding by ICU.
#include <lodeqdb/lodeutil/Strings.h>

#include <unicode/uchar.h>
#include <unicode/ustring.h>
#include <unicode/utf16.h>

#include <climits>

namespace LodeUtil {
namespace {

bool IsAsciiDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

int Sign(long value) {
    return value < 0 ? -1 : (value > 0 ? 1 : 0);
}

int CompareCodeUnits(const wstring& a, const wstring& b) {
    // std::u16string compares char16_t, which is unsigned: exactly code-unit order.
    return Sign(static_cast<long>(a.compare(b)));
}

// Compares two digit runs by value without converting them (they can be any length).
int CompareDigitRuns(const wstring& a, size_t aBegin, size_t aEnd, const wstring& b, size_t bBegin,
                     size_t bEnd) {
    size_t aSignificant = aBegin;
    while (aSignificant + 1 < aEnd && a[aSignificant] == u'0') ++aSignificant;
    size_t bSignificant = bBegin;
    while (bSignificant + 1 < bEnd && b[bSignificant] == u'0') ++bSignificant;
    const size_t aDigits = aEnd - aSignificant;
    const size_t bDigits = bEnd - bSignificant;
    if (aDigits != bDigits) return aDigits < bDigits ? -1 : 1;
    for (size_t i = 0; i < aDigits; ++i) {
        if (a[aSignificant + i] != b[bSignificant + i]) {
            return a[aSignificant + i] < b[bSignificant + i] ? -1 : 1;
        }
    }
    // Same value: the shorter run (fewer leading zeros) first, so that only equal texts
    // compare equal.
    const size_t aLength = aEnd - aBegin;
    const size_t bLength = bEnd - bBegin;
    if (aLength != bLength) return aLength < bLength ? -1 : 1;
    return 0;
}

int CompareNatural(const wstring& a, const wstring& b) {
    size_t i = 0;
    size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsAsciiDigit(a[i]) && IsAsciiDigit(b[j])) {
            size_t iEnd = i;
            while (iEnd < a.size() && IsAsciiDigit(a[iEnd])) ++iEnd;
            size_t jEnd = j;
            while (jEnd < b.size() && IsAsciiDigit(b[jEnd])) ++jEnd;
            if (int c = CompareDigitRuns(a, i, iEnd, b, j, jEnd)) return c;
            i = iEnd;
            j = jEnd;
            continue;
        }
        if (a[i] != b[j]) return a[i] < b[j] ? -1 : 1;
        ++i;
        ++j;
    }
    if (i < a.size()) return 1;
    if (j < b.size()) return -1;
    return 0;
}

}  // namespace

wstring MakeWideString(const char16_t* text) {
    return wstring(text);
}

wstring MakeWideString(const wstring& text) {
    return text;
}

wstring FoldCase(const wstring& text) {
    if (text.empty() || text.size() > static_cast<size_t>(INT32_MAX / 4)) return text;
    const auto* source = reinterpret_cast<const UChar*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    UErrorCode error = U_ZERO_ERROR;
    const int32_t needed = u_strFoldCase(nullptr, 0, source, length, U_FOLD_CASE_DEFAULT, &error);
    if (error != U_BUFFER_OVERFLOW_ERROR || needed <= 0) return text;
    wstring folded(static_cast<size_t>(needed), u'\0');
    error = U_ZERO_ERROR;
    u_strFoldCase(reinterpret_cast<UChar*>(folded.data()), needed, source, length,
                  U_FOLD_CASE_DEFAULT, &error);
    return U_FAILURE(error) ? text : folded;
}

int Order(const wstring& a, const wstring& b, StringOrder::Enum order, StringCase::Enum sense) {
    if (sense == StringCase::Ignore) {
        const wstring foldedA = FoldCase(a);
        const wstring foldedB = FoldCase(b);
        return order == StringOrder::Natural ? CompareNatural(foldedA, foldedB)
                                             : CompareCodeUnits(foldedA, foldedB);
    }
    return order == StringOrder::Natural ? CompareNatural(a, b) : CompareCodeUnits(a, b);
}

void Replace(wstring& text, const wstring& from, const wstring& to) {
    if (from.empty()) return;
    wstring result;
    size_t start = 0;
    for (size_t found = text.find(from); found != wstring::npos; found = text.find(from, start)) {
        result.append(text, start, found - start);
        result.append(to);
        start = found + from.size();
    }
    if (start == 0) return;
    result.append(text, start, wstring::npos);
    text.swap(result);
}

namespace PathUtil {

void TrimString(wstring& text) {
    const auto* units = reinterpret_cast<const UChar*>(text.data());
    const auto length = static_cast<int32_t>(text.size());
    int32_t begin = 0;
    while (begin < length) {
        int32_t next = begin;
        UChar32 c;
        U16_NEXT(units, next, length, c);
        if (!u_isUWhiteSpace(c)) break;
        begin = next;
    }
    int32_t end = length;
    while (end > begin) {
        int32_t previous = end;
        UChar32 c;
        U16_PREV(units, begin, previous, c);
        if (!u_isUWhiteSpace(c)) break;
        end = previous;
    }
    text = text.substr(static_cast<size_t>(begin), static_cast<size_t>(end - begin));
}

}  // namespace PathUtil
}  // namespace LodeUtil
