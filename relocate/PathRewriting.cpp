// Path text for moving files: prefixes by whole components, replacing them, relative paths.
#include <lodeqdb/relocate/PathRewriting.h>

#include <vector>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>

namespace LodeQDBRelocate {
namespace {

using LodeUtil::Path::IsSeparator;

enum class Form { Windows, Posix, Relative };

Form FormOf(const wstring& path, const LodeUtil::Path::RootInfo& root) {
    switch (root.kind) {
        case LodeUtil::Path::RootKind::None:
            return Form::Relative;
        case LodeUtil::Path::RootKind::Separator:
            return path[0] == u'/' ? Form::Posix : Form::Windows;
        default:
            return Form::Windows;
    }
}

// A component of a path: where it starts and how long it is.
struct Component {
    size_t start;
    size_t length;
};

// The components after `from`; runs of separators count as one.
std::vector<Component> ComponentsOf(const wstring& path, size_t from) {
    std::vector<Component> components;
    size_t at = from;
    while (at < path.size()) {
        while (at < path.size() && IsSeparator(path[at])) ++at;
        const size_t start = at;
        while (at < path.size() && !IsSeparator(path[at])) ++at;
        if (at > start) components.push_back({start, at - start});
    }
    return components;
}

// `text` with both separators written as '\'.
wstring WithBackslashes(std::u16string_view text) {
    wstring out(text);
    for (char16_t& unit : out)
        if (unit == u'/') unit = u'\\';
    return out;
}

bool SameText(std::u16string_view a, std::u16string_view b, bool foldCase) {
    if (!foldCase) return a == b;
    return LodeUtil::FoldCase(wstring(a)) == LodeUtil::FoldCase(wstring(b));
}

// The length of `path`'s part that `prefix` names, by whole components; npos when it doesn't.
size_t MatchedLength(const wstring& path, const wstring& prefix) {
    if (prefix.empty() || path.empty()) return wstring::npos;
    const auto pathRoot = LodeUtil::Path::ParseRoot(path);
    const auto prefixRoot = LodeUtil::Path::ParseRoot(prefix);
    const Form form = FormOf(path, pathRoot);
    if (form != FormOf(prefix, prefixRoot)) return wstring::npos;
    const bool fold = form == Form::Windows;
    if (pathRoot.kind != prefixRoot.kind) return wstring::npos;
    // Roots compare without their trailing separators, '\' and '/' alike.
    auto bareRoot = [](const wstring& text, size_t length) {
        while (length > 1 && IsSeparator(text[length - 1])) --length;
        return WithBackslashes(std::u16string_view(text).substr(0, length));
    };
    if (!SameText(bareRoot(path, pathRoot.length), bareRoot(prefix, prefixRoot.length), fold))
        return wstring::npos;
    const std::vector<Component> wanted = ComponentsOf(prefix, prefixRoot.length);
    const std::vector<Component> have = ComponentsOf(path, pathRoot.length);
    if (wanted.size() > have.size()) return wstring::npos;
    for (size_t i = 0; i < wanted.size(); ++i) {
        const std::u16string_view a =
            std::u16string_view(prefix).substr(wanted[i].start, wanted[i].length);
        const std::u16string_view b =
            std::u16string_view(path).substr(have[i].start, have[i].length);
        if (!SameText(a, b, fold)) return wstring::npos;
    }
    return wanted.empty() ? pathRoot.length : have[wanted.size() - 1].start +
                                                  have[wanted.size() - 1].length;
}

char16_t LastSeparatorOf(const wstring& path) {
    for (size_t i = path.size(); i > 0; --i)
        if (IsSeparator(path[i - 1])) return path[i - 1];
    return 0;
}

}  // namespace

bool StartsWithPath(const wstring& path, const wstring& prefix) {
    return MatchedLength(path, prefix) != wstring::npos;
}

std::optional<wstring> ReplacePathPrefix(const wstring& path, const wstring& from,
                                         const wstring& to) {
    const size_t matched = MatchedLength(path, from);
    if (matched == wstring::npos) return std::nullopt;
    size_t restStart = matched;
    while (restStart < path.size() && IsSeparator(path[restStart])) ++restStart;
    wstring rest = path.substr(restStart);
    if (rest.empty()) return to;
    const char16_t style = LastSeparatorOf(to) != 0 ? LastSeparatorOf(to) : SeparatorStyleOf(path);
    for (char16_t& unit : rest)
        if (IsSeparator(unit)) unit = style;
    if (to.empty()) return rest;
    // `to` loses its trailing separators, but never a part of its root (`/`, `C:\`).
    const size_t rootLength = LodeUtil::Path::ParseRoot(to).length;
    size_t end = to.size();
    while (end > rootLength && IsSeparator(to[end - 1])) --end;
    wstring result = to.substr(0, end);
    const bool endsInSeparator = !result.empty() && IsSeparator(result.back());
    const bool bareDrive = LodeUtil::Path::ParseRoot(result).kind ==
                               LodeUtil::Path::RootKind::Drive &&
                           result.size() == rootLength && !endsInSeparator;
    if (!endsInSeparator && !bareDrive) result += style;
    return result + rest;
}

char16_t SeparatorStyleOf(const wstring& path) {
    for (const char16_t unit : path)
        if (IsSeparator(unit)) return unit;
    return u'/';
}

std::optional<wstring> RelativePathBetween(const wstring& folder, const wstring& target,
                                           char16_t separator) {
    if (folder.empty() || target.empty() || folder[0] != u'/' || target[0] != u'/')
        return std::nullopt;
    const auto folderRoot = LodeUtil::Path::ParseRoot(folder);
    const auto targetRoot = LodeUtil::Path::ParseRoot(target);
    if (folderRoot.kind != LodeUtil::Path::RootKind::Separator ||
        targetRoot.kind != LodeUtil::Path::RootKind::Separator)
        return std::nullopt;
    const std::vector<Component> from = ComponentsOf(folder, folderRoot.length);
    const std::vector<Component> to = ComponentsOf(target, targetRoot.length);
    auto text = [](const wstring& path, const Component& c) {
        return std::u16string_view(path).substr(c.start, c.length);
    };
    size_t common = 0;
    while (common < from.size() && common < to.size() &&
           text(folder, from[common]) == text(target, to[common]))
        ++common;
    // The target is the folder itself, or above it: no file name would be left.
    if (common == to.size()) return std::nullopt;
    wstring relative;
    for (size_t i = common; i < from.size(); ++i) {
        relative += u"..";
        relative += separator;
    }
    for (size_t i = common; i < to.size(); ++i) {
        if (i > common) relative += separator;
        relative += text(target, to[i]);
    }
    return relative;
}

}  // namespace LodeQDBRelocate
