// PwDbPlwBytes: the little-endian writer and the bounded reader under the native file codec.
//
//   std::string bytes;
//   PwDbPlwWriter out(bytes);
//   out.u32(128);
//   PwDbPlwReader in(bytes);
//   uint32_t value = 0;
//   if (!in.u32(value)) return Plotwright::StatusBadFileFormat;   // too few bytes left
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/Varint.h>
#include <lodeqdb/lodeutil/WideString.h>

/// The CRC-32 of `data`, as zlib's crc32 computes it.
uint32_t pwdbPlwCrc32(std::string_view data);
/// The CRC-32 of two runs of bytes one after the other, from the CRC-32 of each and the
/// length of the second: a file's checksum of pages already checked, without reading them.
uint32_t pwdbPlwCrc32Combine(uint32_t first, uint32_t second, uint64_t secondLength);

/// Whether `stored` is the CRC-32 of `data`. A fuzzing build (PWDB_FUZZING_ACCEPTS_ANY_CHECKSUM)
/// takes every checksum as sound, so that mutated inputs reach the decoders behind the checks
/// instead of stopping at them; no other build defines it.
inline bool pwdbPlwChecksumHolds(uint32_t stored, std::string_view data) {
#ifdef PWDB_FUZZING_ACCEPTS_ANY_CHECKSUM
    (void)stored;
    (void)data;
    return true;
#else
    return stored == pwdbPlwCrc32(data);
#endif
}

/// Appends little-endian numbers and UTF-16LE text to a byte string.
class PwDbPlwWriter {
  public:
    explicit PwDbPlwWriter(std::string& bytes) : m_bytes(bytes) {}

    void u8(uint8_t value) { m_bytes.push_back(static_cast<char>(value)); }
    void u16(uint16_t value) { put(value, 2); }
    void u32(uint32_t value) { put(value, 4); }
    void u64(uint64_t value) { put(value, 8); }
    void raw(std::string_view data) { m_bytes.append(data); }
    /// An unsigned number in seven-bit groups, low first, the high bit of each byte saying
    /// that another follows: 1 byte below 128, at most 10.
    void varint(uint64_t value) {
        while (value >= 0x80) {
            m_bytes.push_back(static_cast<char>(static_cast<uint8_t>(value) | 0x80));
            value >>= 7;
        }
        m_bytes.push_back(static_cast<char>(value));
    }
    /// The units of `text`, no count and no terminator.
    void units(const wstring& text);
    /// Overwrites four bytes already written, at `offset`.
    void patchU32(size_t offset, uint32_t value) { patch(offset, value, 4); }
    /// Overwrites eight bytes already written, at `offset`.
    void patchU64(size_t offset, uint64_t value) { patch(offset, value, 8); }
    size_t size() const { return m_bytes.size(); }
    const std::string& bytes() const { return m_bytes; }

  private:
    void put(uint64_t value, int size) {
        char little[8];
        for (int i = 0; i < size; ++i) little[i] = static_cast<char>(value >> (8 * i));
        m_bytes.append(little, static_cast<size_t>(size));
    }
    void patch(size_t offset, uint64_t value, int size) {
        for (int i = 0; i < size; ++i) {
            m_bytes[offset + static_cast<size_t>(i)] = static_cast<char>(value >> (8 * i));
        }
    }

    std::string& m_bytes;
};

/// Reads little-endian numbers and UTF-16LE text from a byte range. Every read first checks
/// that the bytes are there and answers false, consuming nothing, when they aren't; nothing
/// is allocated before that check.
class PwDbPlwReader {
  public:
    explicit PwDbPlwReader(std::string_view bytes) : m_next(bytes.data()), m_left(bytes.size()) {}

    size_t left() const { return m_left; }

    bool u8(uint8_t& value) {
        if (m_left < 1) return false;
        value = static_cast<uint8_t>(*m_next);
        advance(1);
        return true;
    }
    bool u16(uint16_t& value) { return get(value, 2); }
    bool u32(uint32_t& value) { return get(value, 4); }
    bool u64(uint64_t& value) { return get(value, 8); }
    /// A number the writer's varint wrote; false for one that runs past the bytes, takes more
    /// than 10 bytes or doesn't fit in 64 bits.
    bool varint(uint64_t& value) {
        size_t at = 0;
        if (!LodeUtil::ReadVarint(std::string_view(m_next, m_left), at, value)) return false;
        advance(at);
        return true;
    }
    /// The position of the next byte in the range read.
    const char* position() const { return m_next; }

    /// The next `size` bytes as they are.
    bool view(uint64_t size, std::string_view& bytes) {
        if (size > m_left) return false;
        bytes = std::string_view(m_next, static_cast<size_t>(size));
        advance(static_cast<size_t>(size));
        return true;
    }
    bool skip(uint64_t size) {
        std::string_view ignored;
        return view(size, ignored);
    }
    /// The next `count` UTF-16LE units into `text`.
    bool units(uint64_t count, wstring& text);

  private:
    template <class T>
    bool get(T& value, size_t size) {
        if (m_left < size) return false;
        uint64_t result = 0;
        for (size_t i = 0; i < size; ++i) {
            result |= static_cast<uint64_t>(static_cast<uint8_t>(m_next[i])) << (8 * i);
        }
        value = static_cast<T>(result);
        advance(size);
        return true;
    }
    void advance(size_t size) {
        m_next += size;
        m_left -= size;
    }

    const char* m_next;
    size_t m_left;
};
