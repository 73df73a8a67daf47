// The reader of formatted text's codes: what stays of it as plain text.
#include <lodeqdb/toolkit/table/PwDbFormattedText.h>

#include <lodeqdb/toolkit/core/PwStringBuffer.h>

namespace {

// Codes whose parameter runs to the next ';' (or to the end of a text that lacks one).
bool takesParameter(char16_t code) {
    return code == u'f' || code == u'F' || code == u'H';
}

}  // namespace

wstring pwdbPlainText(const char16_t* text) {
    wstring plain;
    if (text == nullptr) return plain;
    // Every step looks at most one unit ahead, and only after finding that the current unit
    // isn't the terminating zero.
    const char16_t* at = text;
    while (*at != u'\0') {
        const char16_t unit = *at++;
        if (unit == u'{' || unit == u'}') continue;
        if (unit != u'\\') {
            plain.push_back(unit);
            continue;
        }
        const char16_t code = *at;
        if (code == u'\0') {
            plain.push_back(u'\\');
            break;
        }
        ++at;
        switch (code) {
            case u'\\':
            case u'{':
            case u'}':
                plain.push_back(code);
                break;
            case u'P':
                plain.push_back(u'\n');
                break;
            case u'~':
                plain.push_back(u'\u00A0');
                break;
            case u'L':
            case u'l':
                break;
            default:
                if (takesParameter(code)) {
                    while (*at != u'\0' && *at != u';') ++at;
                    if (*at == u';') ++at;
                } else {
                    plain.push_back(u'\\');
                    plain.push_back(code);
                }
                break;
        }
    }
    return plain;
}

char16_t* pwdbStripMTextFormatting(const char16_t* text, PwDbObjectId /*style*/, int /*flags*/) {
    if (text == nullptr) return nullptr;
    const wstring plain = pwdbPlainText(text);
    char16_t* buffer = nullptr;
    if (pwutNewString(plain.c_str(), buffer) != Plotwright::StatusOk) return nullptr;
    return buffer;
}

wstring pwdbEscapeFormattedText(const wstring& text) {
    wstring escaped;
    escaped.reserve(text.size());
    for (const char16_t unit : text) {
        if (unit == u'\\' || unit == u'{' || unit == u'}') escaped.push_back(u'\\');
        escaped.push_back(unit);
    }
    return escaped;
}
