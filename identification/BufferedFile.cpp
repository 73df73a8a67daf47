// The header reader's buffered reads: counted bytes and the scan for a marker.
#include "identification/BufferedFile.h"

#include <algorithm>
#include <cstring>

namespace LodeQDBUtil {

namespace {

constexpr uint32_t kLongestMarker = 1024;
constexpr int kScanBound = 4096;

}  // namespace

bool ReadBytes(BufferedFile& file, void* destination, uint32_t count) {
    if (count == 0) return true;
    auto* out = static_cast<unsigned char*>(destination);
    if (file.filled - file.position >= count) {
        std::memcpy(out, file.buffer + file.position, count);
        file.position += count;
        return true;
    }
    if (file.file.openStatus() != Plotwright::StatusOk) return false;
    for (;;) {
        const uint32_t available = std::min(file.filled - file.position, count);
        std::memcpy(out, file.buffer + file.position, available);
        file.position += available;
        out += available;
        count -= available;
        if (count == 0) return true;
        uint32_t got = 0;
        if (file.file.readFromFile(file.buffer, BufferedFile::kBufferSize, got)) {
            file.filled = got;
        } else {
            file.filled = 0;
            file.file = HeaderFile::nullFile();
        }
        file.position = 0;
        if (file.filled == 0) return false;
    }
}

int ScanForMarker(BufferedFile& file, const unsigned char* marker, uint32_t length) {
    if (length >= kLongestMarker) return -1;
    unsigned char ring[kLongestMarker];
    if (!ReadBytes(file, ring, length)) return -1;
    int consumed = static_cast<int>(length);
    uint32_t oldest = 0;
    for (;;) {
        uint32_t i = 0;
        while (i < length && ring[(oldest + i) % length] == marker[i]) ++i;
        if (i == length) return consumed;
        if (!ReadBytes(file, &ring[oldest], 1)) return -1;
        oldest = (oldest + 1) % length;
        if (++consumed >= kScanBound) return -1;
    }
}

}  // namespace LodeQDBUtil
