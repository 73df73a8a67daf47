// Path text for moving files: whether a path starts with a folder, the path with that folder
// replaced by another, and the path from one folder to a file. Nothing here touches the file
// system.
//
//   ReplacePathPrefix(u"C:\\proj\\lib\\title.plw", u"c:/PROJ", u"/srv/proj");
//                                        // u"/srv/proj/lib/title.plw"
//   RelativePathBetween(u"/srv/proj/floors", u"/srv/proj/blocks/title.plw", u'\\');
//                                        // u"..\\blocks\\title.plw"
//
// Paths compare as the library compares them (LodeUtil::AbsoluteFilePath): Windows-form paths
// (a drive, a share, a device prefix, or a leading backslash) without regard to case, '\' and
// '/' alike; POSIX paths (a leading '/') code unit by code unit. A path of one form never
// starts with a path of the other. Relative paths compare with '\' and '/' alike and case
// respected, as the file system here will see them. Runs of separators count as one; `.` and
// `..` are compared as the names they are, never followed.
#pragma once

#include <optional>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeQDBRelocate {

/// True when `prefix` names `path` itself or a folder that holds it, by whole components:
/// `C:\proj` starts `C:\proj\x.plw` and `C:\proj`, not `C:\project\x.plw`. An empty prefix
/// starts nothing.
bool StartsWithPath(const wstring& path, const wstring& prefix);

/// `path` with its leading `from` (see StartsWithPath) replaced by `to`; nullopt when `path`
/// doesn't start with `from`. What followed `from` is appended to `to` with one separator,
/// every separator of it written as `to` writes its own (its last one), or as `path` does when
/// `to` has none. An empty `to` leaves what followed, without a leading separator.
std::optional<wstring> ReplacePathPrefix(const wstring& path, const wstring& from,
                                         const wstring& to);

/// The separator a stored path is written with: its first separator, '/' when it has none.
char16_t SeparatorStyleOf(const wstring& path);

/// The path of the file `target` as seen from the folder `folder`, both absolute and
/// lexically normalised POSIX paths (LodeUtil::AbsoluteFilePath gives them): `..` for each
/// folder to climb, then the names down, joined with `separator`. `x.plw` for a file in the
/// folder itself. Nullopt when either isn't absolute POSIX form.
std::optional<wstring> RelativePathBetween(const wstring& folder, const wstring& target,
                                           char16_t separator);

}  // namespace LodeQDBRelocate
