// A run of the index: compare the folder with the index, read what changed on worker threads,
// write the results in transactions.
#include <lodeqdb/index/IndexUpdate.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <set>
#include <system_error>
#include <thread>

#include <lodeqdb/index/IndexError.h>
#include "index/FolderScan.h"
#include "index/IndexWriter.h"
#include "index/PathKey.h"
#include "index/Schema.h"
#include "index/WorkerPool.h"

namespace LodeQDBIndex {
namespace {

using Clock = std::chrono::steady_clock;
using namespace detail;

// Results are committed in groups of this many files, or after this long, whichever first.
constexpr size_t kFilesPerCommit = 256;
constexpr auto kCommitInterval = std::chrono::milliseconds(500);
constexpr auto kProgressInterval = std::chrono::milliseconds(100);

std::string Normal(const std::string& path) {
    std::error_code error;
    std::filesystem::path full = std::filesystem::absolute(path, error);
    if (error) throw IndexError("can't make a full path of " + path + ": " + error.message());
    std::string text = full.lexically_normal().native();
    while (text.size() > 1 && text.back() == '/') text.pop_back();
    return text;
}

bool Changed(const FoundFile& found, const IndexedFile& indexed) {
    return found.size != indexed.size || found.mtimeNs != indexed.mtimeNs ||
           found.inode != indexed.inode;
}

double Since(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

// What a run must do, worked out before anything is read.
struct Plan {
    std::vector<FoundFile> toRead;
    std::vector<int64_t> removed;
    std::vector<int64_t> markStale;
    size_t unchanged = 0;
};

// Compares the folder with the index. The drawings that refer to a file that appears,
// changes or goes are read again too, since their records' states may change with it; they
// are marked stale in the index first, so that a run killed before reading them leaves them
// to the next.
Plan MakePlan(IndexWriter& writer, const std::string& folder,
              const std::vector<FoundFile>& found) {
    Plan plan;
    std::map<std::string, IndexedFile> indexed = writer.FilesUnder(folder);
    std::set<std::string> touchedKeys;
    std::set<std::string> reading;
    std::map<int64_t, const FoundFile*> byId;
    for (const FoundFile& file : found) {
        const auto known = indexed.find(file.path);
        if (known == indexed.end()) {
            touchedKeys.insert(PathKey(file.path));
            plan.toRead.push_back(file);
            reading.insert(file.path);
            continue;
        }
        byId.emplace(known->second.id, &file);
        if (Changed(file, known->second)) {
            touchedKeys.insert(PathKey(file.path));
            plan.markStale.push_back(known->second.id);
        }
        if (Changed(file, known->second) || known->second.failed || known->second.stale) {
            plan.toRead.push_back(file);
            reading.insert(file.path);
        }
        indexed.erase(known);
    }
    for (const auto& [path, gone] : indexed) {
        touchedKeys.insert(PathKey(path));
        plan.removed.push_back(gone.id);
    }
    for (const std::string& key : touchedKeys) {
        for (int64_t referrer : writer.ReferrersOf(key)) {
            const auto file = byId.find(referrer);
            if (file == byId.end() || !reading.insert(file->second->path).second) continue;
            plan.markStale.push_back(referrer);
            plan.toRead.push_back(*file->second);
        }
    }
    plan.unchanged = found.size() - plan.toRead.size();
    return plan;
}

}  // namespace

std::string DefaultIndexPath(const std::string& folder) {
    return Normal(folder) + "/.lodeqdb/index.sqlite";
}

UpdateSummary UpdateIndex(const UpdateOptions& options) {
    const Clock::time_point start = Clock::now();
    const std::string folder = Normal(options.folder);
    UpdateSummary summary;
    summary.database = options.database.empty() ? DefaultIndexPath(folder)
                                                : Normal(options.database);
    std::error_code notThere;
    if (!std::filesystem::is_directory(folder, notThere))
        throw IndexError("not a folder that can be read: " + folder);
    // The folder's own index home is never indexed, whichever index this run writes.
    const std::set<std::string> skipFolders = {folder + "/.lodeqdb"};
    if (options.database.empty()) {
        std::error_code error;
        std::filesystem::create_directories(folder + "/.lodeqdb", error);
        if (error)
            throw IndexError("can't make " + folder + "/.lodeqdb: " + error.message());
    }
    const std::set<std::string> skipFiles = {summary.database, summary.database + "-wal",
                                             summary.database + "-shm",
                                             summary.database + "-journal"};

    Connection connection(summary.database, true);
    PrepareSchema(connection, true);
    IndexWriter writer(connection);
    int64_t runId = 0;
    {
        Transaction transaction(connection);
        runId = writer.StartRun(folder);
        transaction.Commit();
    }

    const std::vector<FoundFile> found =
        ScanFolder(folder, options.followLinks, skipFolders, skipFiles);
    Plan plan;
    {
        Transaction transaction(connection);
        plan = MakePlan(writer, folder, found);
        for (int64_t id : plan.removed) writer.Remove(id);
        for (int64_t id : plan.markStale) writer.MarkStale(id);
        transaction.Commit();
    }
    summary.seen = found.size();
    summary.removed = plan.removed.size();
    summary.unchanged = plan.unchanged;

    const unsigned jobs = options.jobs != 0 ? options.jobs
                                            : std::max(1u, std::thread::hardware_concurrency());
    Progress progress;
    progress.total = plan.toRead.size();
    {
        WorkerPool pool(plan.toRead, jobs);
        Clock::time_point lastCommit = Clock::now();
        Clock::time_point lastProgress = Clock::now();
        std::vector<FileFacts> batch;
        const auto commit = [&] {
            if (batch.empty()) return;
            Transaction transaction(connection);
            for (const FileFacts& facts : batch) writer.Write(facts, runId);
            transaction.Commit();
            batch.clear();
            lastCommit = Clock::now();
        };
        while (!pool.Finished()) {
            if (std::optional<FileFacts> facts = pool.Next(50)) {
                if (facts->errorClass) ++summary.failed;
                ++summary.read;
                batch.push_back(std::move(*facts));
            }
            if (batch.size() >= kFilesPerCommit || Clock::now() - lastCommit >= kCommitInterval)
                commit();
            if (options.progress && Clock::now() - lastProgress >= kProgressInterval) {
                progress.done = summary.read;
                progress.seconds = Since(start);
                options.progress(progress);
                lastProgress = Clock::now();
            }
        }
        commit();
    }
    summary.seconds = Since(start);
    if (options.progress) {
        progress.done = summary.read;
        progress.seconds = summary.seconds;
        options.progress(progress);
    }
    Transaction transaction(connection);
    writer.FinishRun(runId, static_cast<int64_t>(summary.seen), static_cast<int64_t>(summary.read),
                     static_cast<int64_t>(summary.unchanged), static_cast<int64_t>(summary.removed),
                     static_cast<int64_t>(summary.failed), summary.seconds);
    transaction.Commit();
    return summary;
}

}  // namespace LodeQDBIndex
