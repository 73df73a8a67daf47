// Path text: roots, directories, file names and extensions, worked out from the text alone.
//
// Defines LodeUtil::Path::{GetPathRoot, IsPathRooted, GetDirectoryName, GetFileName,
// GetExtension, ParseRoot} and LodeUtil::CombineRelative.
//
//   wstring host = u"D:\\proj\\a\\host.plw";
//   Path::GetPathRoot(host);       // u"D:\\"
//   Path::GetDirectoryName(host);  // u"D:\\proj\\a"
//   Path::GetExtension(host);      // u".plw"
//   CombineRelative(Path::GetDirectoryName(host), u"..\\lib\\x.plw");
//                                  // u"D:\\proj\\a\\..\\lib\\x.plw"
//
// None of these functions touches the file system, and none rewrites separators: what comes
// back is a piece of the input, plus at most one separator that CombineRelative inserts.
//
// Both '\' and '/' separate components everywhere, so Windows paths (`C:\a\b.plw`,
// `\\srv\share\x.plw`, `\lib\x.plw`, `C:x.plw`, `\\?\C:\a`, `\\?\UNC\srv\share\a`) and POSIX
// paths (`/home/a/b.plw`) are read by the same rules. Roots are recognised as follows:
//   - Drive: an ASCII letter and ':' at the start, with the one separator after it if there
//     is one: `C:\` for `C:\a`, `C:` for the drive-relative `C:a`.
//   - UNC: two separators followed by a server name (not a third separator), then the share:
//     `\\srv\share\` for `\\srv\share\x`, `\\srv\share` when nothing follows the share,
//     `\\srv` when there is no share. `//srv/share` is UNC as well, so a POSIX path that
//     begins with exactly two slashes is read as a network path.
//   - Device: `\\?\` or `\\.\` followed by a drive (`\\?\C:\`), by `UNC\server\share\`
//     (the word UNC in any case), or by a single component such as a volume name.
//   - Separator: any other leading separator; the root is that one character (`/` for
//     `/home`, `\` for `\lib\x.plw`, `/` for `///x`).
#pragma once

#include <cstddef>
#include <string_view>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {
namespace Path {

/// The way a path is anchored; see the list at the top of this header.
enum class RootKind { None, Separator, Drive, Unc, Device };

/// The root of a path: its kind and how many leading code units it occupies.
struct RootInfo {
    RootKind kind = RootKind::None;
    std::size_t length = 0;
};

/// True for '\' and '/', the two characters that separate path components.
constexpr bool IsSeparator(char16_t unit) {
    return unit == u'\\' || unit == u'/';
}

/// Classifies the root of `path`. `length` is 0 exactly when `kind` is None.
RootInfo ParseRoot(std::u16string_view path);

/// The drive or share root of `path`, as it is written there: `D:\` for `D:\proj\a.plw`,
/// `\\srv\share\` for `\\srv\share\x.plw`, `/` for `/home/a`, `\` for `\lib\x.plw`, `C:` for
/// `C:x.plw`. Empty for a relative or empty path.
wstring GetPathRoot(const wstring& path);

/// True exactly when GetPathRoot(path) is not empty: for every anchored form including the
/// root-relative `\lib\x.plw` and the drive-relative `C:x.plw`; false for `a\b`, `..\x`, empty.
bool IsPathRooted(const wstring& path);

/// `path` without its last component: `C:\a\b.plw` -> `C:\a`, `C:\a` -> `C:\`, `/x` -> `/`,
/// `C:\a\b\` -> `C:\a\b` (a trailing separator ends an empty last component). A run of
/// separators before the last component goes with it (`C:\a\\b` -> `C:\a`). Empty for a bare
/// root (`C:\`, `\\srv\share`), for a single relative component (`a.plw`) and for empty input.
wstring GetDirectoryName(const wstring& path);

/// The last component of `path`: what follows its last separator, or what follows the root
/// (`x.plw` for `C:x.plw`). Empty when `path` ends in a separator or is a bare root.
wstring GetFileName(const wstring& path);

/// The extension of the last component with its leading dot, in the case it is stored in:
/// `.PLW` for `x.PLW`, `.gz` for `archive.tar.gz`, `.bashrc` for `.bashrc`. Empty when the
/// last component has no dot or ends in one (`name.`, `.`, `..`); a dot in a directory name
/// does not count (`a.b\c` has none).
wstring GetExtension(const wstring& path);

}  // namespace Path

/// `relative` appended to `directory` with exactly one separator between them; `.` and `..`
/// are kept as they are (`C:\a` and `..\..\b.plw` give `C:\a\..\..\b.plw`).
///   - A rooted `relative` (see Path::IsPathRooted) comes back unchanged.
///   - An empty `directory` gives `relative`; an empty `relative` gives `directory`.
///   - A directory that is a bare drive (`C:`) takes `relative` with no separator (`C:x`).
///   - Separators already ending `directory` count as the one separator; a run of them is
///     shortened to one (`C:\a\\` and `b` give `C:\a\b`), but a root is never shortened
///     (`/` and `x` give `/x`, `\\srv\share\` and `x` give `\\srv\share\x`).
///   - The inserted separator is the last separator character in `directory`; if it has
///     none, '\' when `directory` starts with a drive, else the first separator in
///     `relative`, else '/'. So `/home/a` and `..\lib\x.plw` give `/home/a/..\lib\x.plw`.
wstring CombineRelative(const wstring& directory, const wstring& relative);

}  // namespace LodeUtil
