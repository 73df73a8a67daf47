// Unsigned numbers stored in as few bytes as they need: seven bits a byte, low bits first,
// the high bit of each byte set when another byte follows (0 to 127 in one byte, 64 bits in
// at most 10). The drawing files keep counts and handles so.
//
//   size_t at = 0;
//   uint64_t handle = 0;
//   while (at < bytes.size() && LodeUtil::ReadVarint(bytes, at, handle)) use(handle);
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
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

namespace VarintDetail {

// From `at`, the start of a number, over whole words of eight bytes for as long as every number
// in them is sound (at most nine bytes, none of them 0) and doesn't take the count past
// `count`: adds the numbers that end there to `seen` and moves `at` past the last of them.
inline void MeasureWords(std::string_view bytes, size_t count, size_t& at, size_t& seen) {
    constexpr uint64_t kHigh = 0x8080808080808080ULL;
    constexpr uint64_t kLow = 0x0101010101010101ULL;
    size_t position = at;
    size_t run = 0;  // bytes of the number under way, since the last that ended
    while (bytes.size() - position >= 8) {
        uint64_t word = 0;
        std::memcpy(&word, bytes.data() + position, 8);
        // The first byte lowest, whatever the machine.
        if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
        // A number's last byte is 0 exactly when the number is 0 or written too long.
        if (((word - kLow) & ~word & kHigh) != 0) return;
        const uint64_t ends = ~word & kHigh;
        if (ends == 0) {
            run += 8;
            if (run > 8) return;
            position += 8;
            continue;
        }
        // The number of bytes that end a number: one bit a byte, summed into the top byte by a
        // multiplication (no population count instruction needed).
        const auto ending = static_cast<size_t>(((ends >> 7) * kLow) >> 56);
        if (ending > count - seen) return;
        if (run + static_cast<size_t>(std::countr_zero(ends)) / 8 > 8) return;
        seen += ending;
        const auto last = static_cast<size_t>(63 - std::countl_zero(ends)) / 8;
        at = position + last + 1;
        run = 7 - last;
        position += 8;
    }
}

}  // namespace VarintDetail

/// Measures the first `count` numbers of `bytes` as ReadVarint would read them one by one: the
/// bytes they take into `length`, and how many of them aren't 0 into `nonZero`; false when
/// ReadVarint would fail on one of them. Eight bytes are judged at a time where none of them is
/// 0, which is all of a list of handles in practice.
inline bool MeasureVarints(std::string_view bytes, size_t count, size_t& length, size_t& nonZero) {
    size_t at = 0;
    size_t seen = 0;
    size_t zeros = 0;
    while (true) {
        VarintDetail::MeasureWords(bytes, count, at, seen);
        if (seen == count) break;
        uint64_t value = 0;
        if (!ReadVarint(bytes, at, value)) return false;
        ++seen;
        if (value == 0) ++zeros;
    }
    length = at;
    nonZero = count - zeros;
    return true;
}

}  // namespace LodeUtil
