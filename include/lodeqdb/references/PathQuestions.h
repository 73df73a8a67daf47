// The small path questions the whole library asks: is a path absolute, is it a URL, which
// file does a database stand for, and where was a reference drawing loaded from.
//
//   if (!LodeQDBUtil::IsPathAbsolute(name))
//       name = LodeUtil::CombineRelative(
//           LodeUtil::Path::GetDirectoryName(LodeQDBUtil::GetDatabasePath(drawing)), name);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

class PwDbDatabase;

namespace LodeQDBUtil {

/// True when the host services count `path` as a URL; false without host services.
bool IsPathURL(const wstring& path);
/// True for a URL, else when the path has a root (a drive, a share, a leading separator).
bool IsPathAbsolute(const wstring& path);
/// The file name of `database`; empty when it has none.
wstring GetDatabasePath(const PwDbDatabase& database);

}  // namespace LodeQDBUtil

namespace pwdb {

/// The full path from which `database` was loaded for a reference; empty for any other
/// drawing.
wstring OriginalXrefFullPathFor(const PwDbDatabase& database);

}  // namespace pwdb
