// The files a DGN design file refers to, from its reference table, without opening a database.
//
//   for (const auto& child : LodeQDBService::Request::DGNChildren(u"/srv/site.dgn")) ...
//
// A reference the DGN reader found on disk is named by its resolved path, as it stands.
// Otherwise its stored path is used: when the stored path begins with any of the characters
// f, i, l, e, ':' or '/', its first seven characters are dropped (meant for a "file://"
// prefix, and deliberately a test of the first character only); a name that is then not
// absolute is taken against the DGN file's folder. Records keep the file's order, have the
// null object id, status 0, the attachment's id as ref id and the type GetFileType gives.
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/service/FileData.h>

namespace LodeQDBService::Request {

/// The references of the DGN file `path`. Throws as ThrowLodeExceptionOnFile does with the
/// path: lode::NotFound, lode::InvalidFormat, lode::SecurityError, and lode::ReadError for any
/// other failure, a fault inside the DGN reader among them.
std::vector<FileData> DGNChildren(const wstring& path);

}  // namespace LodeQDBService::Request
