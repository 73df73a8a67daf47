// The header reader's file with its read-ahead buffer, and the two ways it is read: a count
// of bytes, and a bounded search for a marker.
#pragma once

#include <cstdint>

#include "identification/HeaderFile.h"

namespace LodeQDBUtil {

struct BufferedFile {
    static constexpr uint32_t kBufferSize = 4096;

    /// The open file; the null file after a failed read or seek.
    HeaderFile file = HeaderFile::nullFile();
    unsigned char buffer[kBufferSize] = {};
    /// How many bytes of the buffer are valid.
    uint32_t filled = 0;
    /// The next byte to hand out.
    uint32_t position = 0;
};

/// Delivers exactly `count` bytes into `destination`, from the buffer and then from the
/// file, refilling the buffer 4096 bytes at a time. False when the file ends or fails first
/// (what was delivered is then incomplete). A count of 0 is always delivered.
bool ReadBytes(BufferedFile& file, void* destination, uint32_t count);

/// Searches the file, from where it stands, for the `length` bytes of `marker`: a span of
/// that length moves on one byte at a time. The number of bytes consumed when the marker is
/// found (the file then stands right behind it); -1 when it isn't found before 4096 bytes
/// were consumed, when the file ends first, or for a marker of 1024 bytes or more.
int ScanForMarker(BufferedFile& file, const unsigned char* marker, uint32_t length);

}  // namespace LodeQDBUtil
