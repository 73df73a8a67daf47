// Reading one file for the index: its kind by name, and for drawings, exchange files and
// design files what the library tells of them. Safe to call on several threads at once for
// different files.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "index/FolderScan.h"

namespace LodeQDBIndex::detail {

/// One direct dependency record of a file, as the library's children queries give it.
struct DependencyRecord {
    /// The record's full name, native bytes.
    std::string name;
    /// The name as names are compared (PathKey).
    std::string key;
    int type = 0;
    int status = 0;
    int64_t refId = 0;
    /// Whether a file of that name was there when the record was read.
    bool present = false;
};

/// A file's row in the index.
struct FileFacts {
    FoundFile file;
    std::string key;
    std::string kind;
    std::optional<int64_t> creatorKind;
    std::optional<int64_t> formatGeneration;
    std::optional<std::string> creatorName;
    /// Set when the file couldn't be read: the exception's class, code and message.
    std::optional<std::string> errorClass;
    std::optional<int64_t> errorCode;
    std::optional<std::string> errorMessage;
    std::vector<DependencyRecord> records;
};

/// The kind of a file by its name: "drawing" (.plw), "exchange" (.plx), "dgn", "image" (.png,
/// .jpg, .jpeg, .gif, .bmp, .tif, .tiff), "pdf", "plf" or "other"; case-insensitively.
std::string KindOfName(const std::string& path);

/// Whether files of `kind` are read (drawings, exchange files, design files) or only recorded.
bool IsReadKind(const std::string& kind);

/// Everything the index records of `file`. Never throws for the file's sake: a failure is
/// recorded in the error fields.
FileFacts ReadFileFacts(const FoundFile& file);

}  // namespace LodeQDBIndex::detail
