// Reading files on N worker threads while the calling thread takes the results as they come.
#pragma once

#include <condition_variable>
#include <deque>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#include "index/FileReading.h"

namespace LodeQDBIndex::detail {

/// Reads `files` (which must outlive the pool) on `jobs` threads; Next() hands out the facts
/// in the order they are done. The destructor stops the workers after the file each is
/// reading and joins them.
class WorkerPool {
  public:
    WorkerPool(const std::vector<FoundFile>& files, unsigned jobs);
    ~WorkerPool();
    WorkerPool(const WorkerPool&) = delete;
    WorkerPool& operator=(const WorkerPool&) = delete;

    /// The next file's facts, waiting at most `waitMs` for one; none when nothing came in
    /// that time or every file has been handed out.
    std::optional<FileFacts> Next(int waitMs);
    /// True when every file has been handed out.
    bool Finished() const;

  private:
    void Work();

    const std::vector<FoundFile>& files_;
    mutable std::mutex mutex_;
    std::condition_variable ready_;
    std::deque<FileFacts> done_;
    size_t next_ = 0;
    size_t handedOut_ = 0;
    bool stopping_ = false;
    std::vector<std::thread> threads_;
};

}  // namespace LodeQDBIndex::detail
