// Printing the folder index's answers: for people (headings, one item a line) or as JSON.
#pragma once

#include <vector>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/index/IndexUpdate.h>

namespace lodeqdb::cli {

/// One line of progress on stderr, rewritten in place: files done of total, rate, time left.
void PrintProgress(const LodeQDBIndex::Progress& progress);
/// The summary of a run: seen, read, unchanged, removed, failed, seconds.
void PrintSummary(const LodeQDBIndex::UpdateSummary& summary, bool json);
void PrintUsages(const std::vector<LodeQDBIndex::Usage>& uses, bool json);
void PrintBroken(const std::vector<LodeQDBIndex::IndexedRecord>& references,
                 const std::vector<LodeQDBIndex::FailedFile>& failed, bool json);
void PrintStats(const LodeQDBIndex::IndexStats& stats, bool json);

}  // namespace lodeqdb::cli
