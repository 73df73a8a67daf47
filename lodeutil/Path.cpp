// Path text functions: every answer is a slice of the input, found by scanning for separators.
#include <lodeqdb/lodeutil/Path.h>

#include <algorithm>

namespace LodeUtil {
namespace Path {
namespace {

constexpr std::size_t kNone = std::u16string_view::npos;

bool IsAsciiLetter(char16_t unit) {
    return (unit >= u'A' && unit <= u'Z') || (unit >= u'a' && unit <= u'z');
}

bool StartsWithDrive(std::u16string_view path, std::size_t at) {
    return path.size() >= at + 2 && IsAsciiLetter(path[at]) && path[at + 1] == u':';
}

/// Position of the first separator at or after `from`, or path.size().
std::size_t ComponentEnd(std::u16string_view path, std::size_t from) {
    while (from < path.size() && !IsSeparator(path[from])) ++from;
    return from;
}

/// Position just past a separator at `at`, or `at` when there is none.
std::size_t TakeSeparator(std::u16string_view path, std::size_t at) {
    return at < path.size() && IsSeparator(path[at]) ? at + 1 : at;
}

/// The end of `server[\share[\]]` that starts at `at`.
std::size_t UncRootEnd(std::u16string_view path, std::size_t at) {
    const std::size_t serverEnd = ComponentEnd(path, at);
    if (serverEnd == path.size()) return serverEnd;
    const std::size_t shareEnd = ComponentEnd(path, serverEnd + 1);
    return TakeSeparator(path, shareEnd);
}

bool IsUncWord(std::u16string_view path, std::size_t at) {
    if (path.size() < at + 3) return false;
    const auto upper = [](char16_t unit) {
        return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
    };
    return upper(path[at]) == u'U' && upper(path[at + 1]) == u'N' && upper(path[at + 2]) == u'C' &&
           (path.size() == at + 3 || IsSeparator(path[at + 3]));
}

/// The end of what follows a `\\?\` or `\\.\` prefix (which ends at `at`).
std::size_t DeviceRootEnd(std::u16string_view path, std::size_t at) {
    if (StartsWithDrive(path, at)) return TakeSeparator(path, at + 2);
    if (IsUncWord(path, at)) {
        if (path.size() == at + 3) return path.size();
        return UncRootEnd(path, at + 4);
    }
    return TakeSeparator(path, ComponentEnd(path, at));
}

std::size_t LastSeparator(std::u16string_view path) {
    const auto found = std::find_if(path.rbegin(), path.rend(), IsSeparator);
    return found == path.rend() ? kNone : static_cast<std::size_t>(path.rend() - found) - 1;
}

}  // namespace

RootInfo ParseRoot(std::u16string_view path) {
    if (path.empty()) return {};
    if (StartsWithDrive(path, 0)) return {RootKind::Drive, TakeSeparator(path, 2)};
    if (!IsSeparator(path[0])) return {};
    const bool doubled = path.size() >= 3 && IsSeparator(path[1]) && !IsSeparator(path[2]);
    if (!doubled) return {RootKind::Separator, 1};
    const bool device =
        path.size() >= 4 && (path[2] == u'?' || path[2] == u'.') && IsSeparator(path[3]);
    if (device) return {RootKind::Device, DeviceRootEnd(path, 4)};
    return {RootKind::Unc, UncRootEnd(path, 2)};
}

wstring GetPathRoot(const wstring& path) {
    return path.substr(0, ParseRoot(path).length);
}

bool IsPathRooted(const wstring& path) {
    return ParseRoot(path).length != 0;
}

wstring GetDirectoryName(const wstring& path) {
    const std::size_t root = ParseRoot(path).length;
    if (path.size() <= root) return {};
    const std::size_t last = LastSeparator(std::u16string_view(path).substr(root));
    if (last == kNone) return path.substr(0, root);
    std::size_t end = root + last;
    while (end > root && IsSeparator(path[end - 1])) --end;
    return path.substr(0, end);
}

wstring GetFileName(const wstring& path) {
    const std::size_t root = ParseRoot(path).length;
    const std::size_t last = LastSeparator(std::u16string_view(path).substr(root));
    return path.substr(last == kNone ? root : root + last + 1);
}

wstring GetExtension(const wstring& path) {
    const wstring name = GetFileName(path);
    const std::size_t dot = name.rfind(u'.');
    if (dot == wstring::npos || dot + 1 == name.size()) return {};
    return name.substr(dot);
}

}  // namespace Path

namespace {

char16_t JoiningSeparator(const wstring& directory, const wstring& relative) {
    const auto last = std::find_if(directory.rbegin(), directory.rend(), Path::IsSeparator);
    if (last != directory.rend()) return *last;
    if (Path::ParseRoot(directory).kind == Path::RootKind::Drive) return u'\\';
    const auto first = std::find_if(relative.begin(), relative.end(), Path::IsSeparator);
    return first != relative.end() ? *first : u'/';
}

}  // namespace

wstring CombineRelative(const wstring& directory, const wstring& relative) {
    if (relative.empty()) return directory;
    if (directory.empty() || Path::IsPathRooted(relative)) return relative;
    const std::size_t root = Path::ParseRoot(directory).length;
    // A bare drive (`C:`, `\\?\C:`) means "the current directory of that drive"; a separator
    // would change it into the drive's top directory.
    if (root == directory.size() && directory.back() == u':') return directory + relative;
    std::size_t end = directory.size();
    while (end > root && Path::IsSeparator(directory[end - 1])) --end;
    wstring joined = directory.substr(0, end);
    if (end != root || root == 0 || !Path::IsSeparator(directory[root - 1])) {
        joined += JoiningSeparator(directory, relative);
    }
    joined += relative;
    return joined;
}

}  // namespace LodeUtil
