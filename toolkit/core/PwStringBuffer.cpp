// Wide buffers on the toolkit heap, created and freed for callers that own raw text.
#include <lodeqdb/toolkit/core/PwStringBuffer.h>

#include <cstring>
#include <string>

#include <lodeqdb/toolkit/pal/PwHeap.h>

Plotwright::ErrorStatus pwutNewString(const char16_t* text, char16_t*& out) {
    out = nullptr;
    if (text == nullptr) return Plotwright::StatusInvalidInput;
    // The text already lies in memory, so (length + 1) units cannot overflow a size_t.
    const size_t units = std::char_traits<char16_t>::length(text) + 1;
    void* block = pwHeapAlloc(nullptr, units * sizeof(char16_t));
    if (block == nullptr) return Plotwright::StatusOutOfMemory;
    std::memcpy(block, text, units * sizeof(char16_t));
    out = static_cast<char16_t*>(block);
    return Plotwright::StatusOk;
}

void pwutDelBuffer(char16_t*& buffer) {
    if (buffer == nullptr) return;
    pwHeapFree(nullptr, buffer);
    buffer = nullptr;
}
