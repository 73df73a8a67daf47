// The worker threads that read files for the index.
#include "index/WorkerPool.h"

#include <chrono>

namespace LodeQDBIndex::detail {

WorkerPool::WorkerPool(const std::vector<FoundFile>& files, unsigned jobs) : files_(files) {
    if (jobs == 0) jobs = 1;
    for (unsigned i = 0; i < jobs && i < files.size(); ++i) threads_.emplace_back([this] { Work(); });
}

WorkerPool::~WorkerPool() {
    {
        std::lock_guard<std::mutex> lock(mutex_);
        stopping_ = true;
    }
    for (std::thread& thread : threads_) thread.join();
}

void WorkerPool::Work() {
    for (;;) {
        size_t index = 0;
        {
            std::lock_guard<std::mutex> lock(mutex_);
            if (stopping_ || next_ == files_.size()) return;
            index = next_++;
        }
        FileFacts facts = ReadFileFacts(files_[index]);
        {
            std::lock_guard<std::mutex> lock(mutex_);
            done_.push_back(std::move(facts));
        }
        ready_.notify_one();
    }
}

std::optional<FileFacts> WorkerPool::Next(int waitMs) {
    std::unique_lock<std::mutex> lock(mutex_);
    ready_.wait_for(lock, std::chrono::milliseconds(waitMs), [this] { return !done_.empty(); });
    if (done_.empty()) return std::nullopt;
    FileFacts facts = std::move(done_.front());
    done_.pop_front();
    ++handedOut_;
    return facts;
}

bool WorkerPool::Finished() const {
    std::lock_guard<std::mutex> lock(mutex_);
    return handedOut_ == files_.size();
}

}  // namespace LodeQDBIndex::detail
