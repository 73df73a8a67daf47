// The process heap behind pwHeapAlloc, with a live-block count and one-shot fault injection.
#include <lodeqdb/toolkit/pal/PwHeap.h>

#include <atomic>
#include <cassert>
#include <cstdint>
#include <cstdlib>

#include "toolkit/pal/PwHeapFaults.h"

namespace {

std::atomic<size_t> gLiveBlocks{0};

// Allocations left to succeed before the armed failure; negative while none is armed.
std::atomic<long> gFailCountdown{-1};

// Consumes one step of the countdown; true when this very allocation is the one to fail.
// A compare-exchange loop, not fetch_sub, so that racing threads never push the countdown
// below -1 and re-arm it by accident.
bool ConsumeArmedFailure() {
    long left = gFailCountdown.load(std::memory_order_relaxed);
    while (left >= 0) {
        if (gFailCountdown.compare_exchange_weak(left, left - 1, std::memory_order_relaxed)) {
            return left == 0;
        }
    }
    return false;
}

}  // namespace

void* pwHeapAlloc(void* heap, size_t bytes) {
    if (heap != nullptr) return nullptr;
    if (ConsumeArmedFailure()) return nullptr;
    // Sanitizer runtimes abort instead of returning null on absurd sizes; no object can be
    // larger than PTRDIFF_MAX bytes, so such a request fails here, the same way everywhere.
    if (bytes > static_cast<size_t>(PTRDIFF_MAX)) return nullptr;
    // malloc(0) may return null or a shared pointer; one byte makes every block unique.
    void* block = std::malloc(bytes == 0 ? 1 : bytes);
    if (block != nullptr) gLiveBlocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}

void pwHeapFree(void* heap, void* block) {
    assert(heap == nullptr && "pwHeapFree: only the process heap (null) exists");
    assert(block != nullptr && "pwHeapFree: callers test for a null block before freeing");
    if (heap != nullptr || block == nullptr) return;
    gLiveBlocks.fetch_sub(1, std::memory_order_relaxed);
    std::free(block);
}

size_t pwHeapLiveBlockCount() {
    return gLiveBlocks.load(std::memory_order_relaxed);
}

void pwHeapFailAfter(long allocations) {
    gFailCountdown.store(allocations < 0 ? -1 : allocations, std::memory_order_relaxed);
}

void pwHeapFailReset() {
    gFailCountdown.store(-1, std::memory_order_relaxed);
}

bool pwHeapFailPending() {
    return gFailCountdown.load(std::memory_order_relaxed) >= 0;
}
