// Questions to an index that UpdateIndex made: who uses a file (directly or at any depth),
// which references are broken, which files failed, counts, and the graph below a drawing.
//
//   LodeQDBIndex::FolderIndex index(LodeQDBIndex::DefaultIndexPath("/srv/projects"));
//   for (const LodeQDBIndex::Usage& use : index.WhereUsed("/srv/projects/blocks/title.plw", false))
//       show(use.drawing, use.chain);
//
// Names of files are full paths, native bytes, compared as the parent walk compares them (code
// unit by code unit after case folding) once they are lexically normal: a backslash counts as
// '/', "." and ".." steps are taken (the library keeps them in names of images and underlays,
// "/p/sheets/../images/photo.png"), so every spelling of a file's path finds it. Every query answers as of the index's last commit; a
// run may be writing meanwhile. Not for several threads at once: each thread opens its own.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include <lodeqdb/index/DependencyGraph.h>
#include <lodeqdb/index/IndexError.h>

namespace LodeQDBIndex {

/// A drawing that uses the file asked about, and how: `chain` runs from the drawing down to
/// the file, both included, each step a direct reference (2 entries for a direct use).
struct Usage {
    std::string drawing;
    std::vector<std::string> chain;
};

/// One dependency record of a file, as the index keeps it.
struct IndexedRecord {
    /// The file that holds the record.
    std::string referrer;
    std::string name;
    int type = 0;
    int status = 0;
    int64_t refId = 0;
    /// Whether a file of that name was there when the referrer was read.
    bool present = false;
};

/// A file that couldn't be read, with the library's error.
struct FailedFile {
    std::string path;
    std::string kind;
    std::string errorClass;
    int64_t errorCode = 0;
    std::string errorMessage;
};

struct IndexStats {
    int64_t files = 0;
    int64_t records = 0;
    int64_t brokenReferences = 0;
    int64_t failedFiles = 0;
    /// Files by kind ("drawing", "exchange", "dgn", "image", "pdf", "plf", "other").
    std::map<std::string, int64_t> byKind;
    /// Drawings and exchange files read, by lode::PlotwrightFileFormat.
    std::map<int64_t, int64_t> byFormatGeneration;
    /// Drawings and exchange files read, by lode::PlwFileType.
    std::map<int64_t, int64_t> byCreatorKind;
};

class FolderIndex {
  public:
    /// Opens the index file `path` for questions. Throws IndexError when it is missing or
    /// isn't an index.
    explicit FolderIndex(const std::string& path);
    ~FolderIndex();
    FolderIndex(const FolderIndex&) = delete;
    FolderIndex& operator=(const FolderIndex&) = delete;

    /// The drawings (and design files) that refer to `file`: with `direct`, those with a
    /// record of that name; otherwise at any depth, climbing through resolved references and
    /// design files' attachments, each drawing once with its shortest chain, nearest first.
    std::vector<Usage> WhereUsed(const std::string& file, bool direct) const;
    /// The records of `file` in the order the library gave them; empty when it has none or
    /// isn't in the index.
    std::vector<IndexedRecord> RecordsOf(const std::string& file) const;
    /// Every record of every file, by referrer, each file's in the order the library gave
    /// them.
    std::vector<IndexedRecord> AllRecords() const;
    /// Whether `file` is in the index.
    bool Contains(const std::string& file) const;
    /// Every record whose file isn't there or whose reference didn't resolve (missing, or
    /// present but unresolved), by referrer.
    std::vector<IndexedRecord> BrokenReferences() const;
    /// Every file that couldn't be read, by path.
    std::vector<FailedFile> FailedFiles() const;
    IndexStats Stats() const;
    /// The graph below `root` as the index knows it: each file's records, entered where they
    /// name a file of the index that has records.
    DependencyGraph GraphBelow(const std::string& root) const;

  private:
    struct Impl;
    std::unique_ptr<Impl> impl_;
};

/// The index a question about `path` (a file or folder) goes to by default: the first
/// .lodeqdb/index.sqlite in the folder of `path` or above it; empty when there is none.
std::string FindIndexFor(const std::string& path);

/// `path` as the index names files: a full, lexically normal path.
std::string IndexName(const std::string& path);

}  // namespace LodeQDBIndex
