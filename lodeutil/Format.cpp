// Numbered-placeholder formatting of message texts.
#include <lodeqdb/lodeutil/Format.h>

#include <vector>

namespace LodeUtil {
namespace {

void Expand(wstring& out, const wstring& format, const wstring* arguments, size_t count) {
    // Built aside and swapped in, because `format` may be `out`.
    wstring result;
    result.reserve(format.size());
    for (size_t i = 0; i < format.size(); ++i) {
        const char16_t unit = format[i];
        if (unit != u'%' || i + 1 == format.size()) {
            result.push_back(unit);
            continue;
        }
        const char16_t next = format[i + 1];
        if (next == u'%') {
            result.push_back(u'%');
            ++i;
        } else if (next >= u'1' && next <= u'9' && static_cast<size_t>(next - u'1') < count) {
            result.append(arguments[next - u'1']);
            ++i;
        } else {
            result.push_back(unit);
        }
    }
    out.swap(result);
}

}  // namespace

void FormatMsg(wstring& out, const wstring& format, std::initializer_list<wstring> arguments) {
    Expand(out, format, arguments.begin(), arguments.size());
}

void FormatMsg1(wstring& out, const wstring& format, const wstring& argument) {
    Expand(out, format, &argument, 1);
}

}  // namespace LodeUtil
