// Lexical normalisation of paths, and comparison that folds case for Windows form through ICU.
#include <lodeqdb/lodeutil/AbsoluteFilePath.h>

#include <climits>
#include <cstddef>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>

namespace LodeUtil {
namespace {

using Path::IsSeparator;
using Path::RootKind;

/// The non-empty components of `text`, in order.
std::vector<std::u16string_view> Components(std::u16string_view text) {
    std::vector<std::u16string_view> components;
    std::size_t start = 0;
    for (std::size_t i = 0; i <= text.size(); ++i) {
        if (i < text.size() && !IsSeparator(text[i])) continue;
        if (i > start) components.push_back(text.substr(start, i - start));
        start = i + 1;
    }
    return components;
}

/// `root` (which ends in a separator) followed by `components` from `first` on, with `.`
/// and `..` evaluated; a `..` with nothing before it is dropped.
wstring Join(wstring root, const std::vector<std::u16string_view>& components, std::size_t first,
             char16_t separator) {
    std::vector<std::u16string_view> kept;
    for (std::size_t i = first; i < components.size(); ++i) {
        if (components[i] == u".") continue;
        if (components[i] != u"..") {
            kept.push_back(components[i]);
        } else if (!kept.empty()) {
            kept.pop_back();
        }
    }
    for (std::size_t i = 0; i < kept.size(); ++i) {
        if (i != 0) root += separator;
        root += kept[i];
    }
    return root;
}

bool IsUncWord(std::u16string_view text) {
    if (text.size() < 3) return false;
    return (text[0] | 0x20) == u'u' && (text[1] | 0x20) == u'n' && (text[2] | 0x20) == u'c';
}

/// `\\?\C:\a` as `C:\a` and `\\?\UNC\srv\share` as `\\srv\share`: the same places, written in
/// the form that normalises and compares like every other drive or UNC path.
wstring WithoutDevicePrefix(const wstring& path) {
    const std::u16string_view after = std::u16string_view(path).substr(4);
    if (Path::ParseRoot(after).kind == RootKind::Drive) return wstring(after);
    if (after.size() > 4 && IsUncWord(after) && IsSeparator(after[3])) {
        return u"\\\\" + wstring(after.substr(4));
    }
    return path;
}

struct Normalised {
    wstring fullPath;
    bool windowsForm = false;
};

/// A root made of a prefix and the first `literal` components (server and share, or a device
/// name), which `..` cannot remove; the rest is evaluated below it.
Normalised NormaliseNetwork(std::u16string_view prefix, std::u16string_view rest,
                            std::size_t literal) {
    const std::vector<std::u16string_view> components = Components(rest);
    wstring root(prefix);
    std::size_t used = 0;
    for (; used < literal && used < components.size(); ++used) {
        root += components[used];
        root += u'\\';
    }
    return {Join(root, components, used, u'\\'), true};
}

Normalised NormaliseRelative(std::u16string_view path) {
    std::optional<wstring> directory = detail::CurrentDirectory();
    // Without a usable current directory the path is still made absolute, against `/`, so
    // that FullPath keeps its promise.
    if (!directory || directory->empty() || (*directory)[0] != u'/') directory = u"/";
    wstring joined = *directory + u'/';
    joined += path;
    return {Join(u"/", Components(joined), 0, u'/'), false};
}

Normalised Normalise(const wstring& input) {
    if (input.empty()) return {};
    wstring path = input;
    Path::RootInfo root = Path::ParseRoot(path);
    if (root.kind == RootKind::Device) {
        path = WithoutDevicePrefix(path);
        root = Path::ParseRoot(path);
    }
    const std::u16string_view view(path);
    switch (root.kind) {
        case RootKind::None:
            return NormaliseRelative(view);
        case RootKind::Separator:
            if (view[0] == u'/') return {Join(u"/", Components(view), 0, u'/'), false};
            return {Join(u"\\", Components(view), 0, u'\\'), true};
        case RootKind::Drive: {
            wstring drive(view.substr(0, 2));
            drive += u'\\';
            return {Join(drive, Components(view.substr(2)), 0, u'\\'), true};
        }
        case RootKind::Unc:
            return NormaliseNetwork(u"\\\\", view.substr(2), 2);
        case RootKind::Device: {
            const wstring prefix = {u'\\', u'\\', view[2], u'\\'};
            return NormaliseNetwork(prefix, view.substr(4), 1);
        }
    }
    return {};
}

}  // namespace

AbsoluteFilePath::AbsoluteFilePath(const wstring& path) {
    Normalised normalised = Normalise(path);
    fullPath_ = std::move(normalised.fullPath);
    windowsForm_ = normalised.windowsForm;
}

AbsoluteFilePath::~AbsoluteFilePath() = default;

namespace {

// The text after the last separator of `path`, when normalising can't change it: not empty, not
// "." or "..", and no drive ("C:"). Normalising keeps such a last component as it is.
std::optional<std::u16string_view> StableLastComponent(std::u16string_view path) {
    std::size_t start = path.size();
    while (start > 0 && !IsSeparator(path[start - 1])) --start;
    const std::u16string_view last = path.substr(start);
    if (last.empty() || last == u"." || last == u".." || last.find(u':') != last.npos)
        return std::nullopt;
    return last;
}

char16_t AsciiLower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

// True when `a` and `b` surely differ after case folding: both ASCII, and different ignoring
// ASCII case. Text with other units is left to the full comparison.
bool SurelyDifferentIgnoringCase(std::u16string_view a, std::u16string_view b) {
    for (char16_t unit : a)
        if (unit > 0x7F) return false;
    for (char16_t unit : b)
        if (unit > 0x7F) return false;
    if (a.size() != b.size()) return true;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (AsciiLower(a[i]) != AsciiLower(b[i])) return true;
    return false;
}

}  // namespace

bool AbsoluteFilePath::operator==(const wstring& other) const {
    // Normalising `other` costs allocations; a last component that can't match settles most
    // comparisons of one path with many (a search through a reference graph) without it.
    const auto mine = StableLastComponent(fullPath_);
    const auto theirs = StableLastComponent(other);
    if (mine && theirs) {
        if (!windowsForm_ && *mine != *theirs) return false;
        if (windowsForm_ && SurelyDifferentIgnoringCase(*mine, *theirs)) return false;
    }
    return *this == AbsoluteFilePath(other);
}

bool AbsoluteFilePath::operator==(const AbsoluteFilePath& other) const {
    if (windowsForm_ != other.windowsForm_) return false;
    if (!windowsForm_) return fullPath_ == other.fullPath_;
    return fullPath_ == other.fullPath_ ||
           LodeUtil::FoldCase(fullPath_) == LodeUtil::FoldCase(other.fullPath_);
}

}  // namespace LodeUtil
