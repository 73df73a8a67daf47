// Zip archives and digests in tests, read with libzip and OpenSSL directly, so that what the
// relocation library writes is checked by code that doesn't share its own.
#pragma once

#include <string>
#include <vector>

namespace lodeqdbtest {

/// Extracts every entry of the zip archive `zipPath` below `folder` (folders made as needed)
/// and gives the entries' names in archive order. Records a test failure on any error.
std::vector<std::string> ExtractZip(const std::string& zipPath, const std::string& folder);

/// The SHA-256 of the file `path` in lower-case hexadecimal; empty when it can't be read.
std::string FileSha256(const std::string& path);

/// Every regular file below `folder`, by its path relative to `folder`, with its bytes.
std::vector<std::pair<std::string, std::string>> FilesBelow(const std::string& folder);

}  // namespace lodeqdbtest
