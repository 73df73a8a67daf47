// Keeping a persistent index of a folder of drawings current: every file under the folder,
// with what the library tells of drawings, exchange files and design files.
//
//   LodeQDBIndex::UpdateOptions options;
//   options.folder = "/srv/projects";                  // the index: /srv/projects/.lodeqdb/index.sqlite
//   LodeQDBIndex::UpdateSummary summary = LodeQDBIndex::UpdateIndex(options);
//
// A run walks the folder (symbolic links to folders only with followLinks; the folder's own
// .lodeqdb, where default indexes live, is passed over), reads the files
// that are new or whose size, modification time or inode changed since the last run, those
// that failed last time, and the drawings that refer to a file that appeared, changed or went
// (their references' states may have changed with it); it drops the files that are gone. Each
// file is read on one of `jobs` worker threads; its results are written by the calling thread
// in transactions of several files. A run killed at any moment leaves an index that opens and
// answers as of its last commit; the next run completes it. The schema is in docs/index.md.
//
// A file that can't be read is recorded with its error and the run goes on: the one failure
// of UpdateIndex itself is IndexError, when the index can't be written.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <string>

namespace LodeQDBIndex {

/// Where a run stands, for a caller that shows progress: files read so far of those to read.
struct Progress {
    size_t done = 0;
    size_t total = 0;
    double seconds = 0;
};

struct UpdateOptions {
    /// The folder to index (made absolute and lexically normal; names in the index are full
    /// paths under it).
    std::string folder;
    /// The index file; empty for <folder>/.lodeqdb/index.sqlite (the folder .lodeqdb is made).
    std::string database;
    /// Worker threads that read files; 0 for the number of cores.
    unsigned jobs = 0;
    /// Enter symbolic links to folders (a folder reached twice is walked once).
    bool followLinks = false;
    /// Told of progress from the calling thread, about ten times a second at most, and once at
    /// the end. May be empty.
    std::function<void(const Progress&)> progress;
};

/// What a run did.
struct UpdateSummary {
    std::string database;
    /// Files found under the folder.
    size_t seen = 0;
    /// Files read (or, for kinds that aren't read, recorded) in this run.
    size_t read = 0;
    /// Files found as the last run left them, not read again.
    size_t unchanged = 0;
    /// Files of the index that are gone from the folder, dropped.
    size_t removed = 0;
    /// Files read in this run that failed (recorded with their errors).
    size_t failed = 0;
    double seconds = 0;
};

/// The default index file of `folder`: <folder>/.lodeqdb/index.sqlite.
std::string DefaultIndexPath(const std::string& folder);

/// Brings the index of `options.folder` up to date. Throws IndexError when the folder can't
/// be walked or the index can't be opened or written.
UpdateSummary UpdateIndex(const UpdateOptions& options);

}  // namespace LodeQDBIndex
