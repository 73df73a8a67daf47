// The toolkit's heap: every block owned by a toolkit object comes from here.
//
// Defines pwHeapAlloc, pwHeapFree and pwHeapLiveBlockCount.
//
//   void* block = pwHeapAlloc(nullptr, 64);
//   if (block == nullptr) return Plotwright::StatusOutOfMemory;
//   ...
//   pwHeapFree(nullptr, block);
//
// Only the process heap exists; the heap argument is kept so that call sites name the heap
// they mean, and it must be null. Tests make allocations fail on purpose through
// "toolkit/pal/PwHeapFaults.h".
#pragma once

#include <cstddef>

/// A new block of at least `bytes` bytes from the heap `heap`, aligned for any fundamental
/// type; the caller owns it and gives it back with pwHeapFree.
/// Returns null when the block cannot be had; never throws. A zero-byte request returns a
/// valid block, distinct from every other live block. `heap` must be null (the process heap);
/// any other value gets null back. A request larger than any object can be (above
/// PTRDIFF_MAX bytes) returns null without asking the system.
void* pwHeapAlloc(void* heap, size_t bytes);

/// Gives back `block`, which came from pwHeapAlloc(heap, ...) and was not freed since.
/// `block` must not be null: callers test first. Debug builds assert on a null block or a
/// non-null heap; release builds ignore such a call.
void pwHeapFree(void* heap, void* block);

/// Blocks handed out by pwHeapAlloc and not yet given back, counted over the whole process
/// and over all threads. Tests compare it before and after an operation to find leaks.
size_t pwHeapLiveBlockCount();
