// Writing the index: files and their records, in transactions the caller opens, and the
// bookkeeping of runs.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "index/FileReading.h"
#include "index/Sqlite.h"

namespace LodeQDBIndex::detail {

/// A file as the index holds it, for the comparison with the folder.
struct IndexedFile {
    int64_t id = 0;
    int64_t size = 0;
    int64_t mtimeNs = 0;
    int64_t inode = 0;
    bool failed = false;
    bool stale = false;
};

class IndexWriter {
  public:
    explicit IndexWriter(Connection& connection);

    /// The files of the index under `folder` (full path, no trailing separator), by path.
    std::map<std::string, IndexedFile> FilesUnder(const std::string& folder);
    /// The ids of the files that have a record whose name has the key `key`.
    std::vector<int64_t> ReferrersOf(const std::string& key);
    /// Marks file `id` to be read again by the next run, whatever it looks like.
    void MarkStale(int64_t id);
    void Remove(int64_t id);
    /// Replaces the row and records of `facts.file.path` with `facts`, as read by run `runId`.
    void Write(const FileFacts& facts, int64_t runId);

    int64_t StartRun(const std::string& folder);
    void FinishRun(int64_t runId, int64_t seen, int64_t read, int64_t unchanged, int64_t removed,
                   int64_t failed, double seconds);

  private:
    Connection& connection_;
    Statement upsert_;
    Statement clearRecords_;
    Statement insertRecord_;
};

}  // namespace LodeQDBIndex::detail
