// A GUID as drawings store it: a 32-bit, two 16-bit fields and eight bytes, 16 bytes in all.
#pragma once

#include <cstdint>
#include <cstring>

namespace LodeQDBUtil {

struct Guid {
    uint32_t data1 = 0;
    uint16_t data2 = 0;
    uint16_t data3 = 0;
    uint8_t data4[8] = {};
};
static_assert(sizeof(Guid) == 16, "a GUID is 16 bytes");

/// Equal in all 16 bytes.
inline bool operator==(const Guid& a, const Guid& b) {
    return std::memcmp(&a, &b, sizeof(Guid)) == 0;
}

/// Orders GUIDs by their 16 bytes as they stand in memory (the first field little-endian),
/// not by their text form.
struct GuidByteOrder {
    bool operator()(const Guid& a, const Guid& b) const {
        return std::memcmp(&a, &b, sizeof(Guid)) < 0;
    }
};

}  // namespace LodeQDBUtil
