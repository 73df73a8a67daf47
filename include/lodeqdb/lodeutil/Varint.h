// Unsigned numbers stored in as few bytes as they need: seven bits a byte, low bits first,
// the high bit of each byte set when another byte follows (0 to 127 in one byte, 64 bits in
// at most 10). The drawing files keep counts and handles so.
//
//   size_t at = 0;
//   uint64_t handle = 0;
//   while (at < bytes.size() && LodeUtil::ReadVarint(bytes, at, handle)) use(handle);
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace LodeUtil {

/// Reads the number at `at` in `bytes` into `value` and moves `at` past it; false (nothing
/// moved) for one that runs past the end, takes more than 10 bytes or passes 64 bits.
inline bool ReadVarint(std::string_view bytes, size_t& at, uint64_t& value) {
    uint64_t result = 0;
    for (size_t i = 0; at + i < bytes.size() && i < 10; ++i) {
        const auto byte = static_cast<uint8_t>(bytes[at + i]);
        if (i == 9 && byte > 1) return false;
        result |= static_cast<uint64_t>(byte & 0x7F) << (7 * i);
        if ((byte & 0x80) == 0) {
            value = result;
            at += i + 1;
            return true;
        }
    }
    return false;
}

}  // namespace LodeUtil
