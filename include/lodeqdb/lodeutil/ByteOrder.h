// Unsigned numbers stored as bytes in a fixed order, as file headers store them.
//
//   const uint32_t offset = LodeUtil::LittleEndian32(header + 0x14);
#pragma once

#include <cstddef>
#include <cstdint>

namespace LodeUtil {

/// The number of `count` bytes (at most 4) at `bytes`, least significant first.
constexpr uint32_t LittleEndian(const unsigned char* bytes, size_t count) {
    uint32_t value = 0;
    for (size_t i = count; i > 0; --i) value = value << 8 | bytes[i - 1];
    return value;
}

/// The number of `count` bytes (at most 4) at `bytes`, most significant first.
constexpr uint32_t BigEndian(const unsigned char* bytes, size_t count) {
    uint32_t value = 0;
    for (size_t i = 0; i < count; ++i) value = value << 8 | bytes[i];
    return value;
}

constexpr uint16_t LittleEndian16(const unsigned char* bytes) {
    return static_cast<uint16_t>(LittleEndian(bytes, 2));
}

constexpr uint32_t LittleEndian32(const unsigned char* bytes) {
    return LittleEndian(bytes, 4);
}

}  // namespace LodeUtil
