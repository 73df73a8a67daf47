// Helpers the file tests share: building object records, comparing drawing images, and
// reading the numbers and checksums the native format stores.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>
#include "toolkit/file/PwDbDrawingImage.h"

namespace pwdbfiletest {

/// An object record of the class `chain` (most derived first) with `handle` and `data`.
PwDbObjectRecord Record(std::vector<wstring> chain, PwDbHandle handle,
                        std::vector<PwDbMemoryFiler::Item> data);

/// Expects `actual` to hold everything `expected` holds: version, handseed, measurement,
/// roots, application information, preview and every record. Doubles compare by their bits,
/// so that -0.0 differs from 0.0 and a NaN equals itself.
void ExpectSameImage(const PwDbDrawingImage& expected, const PwDbDrawingImage& actual);

/// The unsigned little-endian number of `size` bytes at `offset` of `bytes`.
uint64_t Le(const std::string& bytes, size_t offset, size_t size);

/// An independent bitwise CRC-32 (reflected, polynomial 0xEDB88320), to check stored sums.
uint32_t TestCrc(std::string_view data);

/// Writes `value` as `size` little-endian bytes at `offset` of `bytes`.
void PutLe(std::string& bytes, size_t offset, uint64_t value, size_t size);

/// Where a section of a native file lies: its tag, its head, its payload and its checksum.
struct SectionSpan {
    std::string tag;
    size_t start = 0;
    size_t payload = 0;
    size_t length = 0;
    size_t crc = 0;
};

/// The sections of a native file (either layout) as their lengths lay them out, as far as
/// they are whole.
std::vector<SectionSpan> Sections(const std::string& bytes);

/// Makes every checksum and the header's length of the rest agree with the bytes again, so
/// that what a test changed is refused for itself and not for a broken sum.
void Reseal(std::string& bytes);

}  // namespace pwdbfiletest
