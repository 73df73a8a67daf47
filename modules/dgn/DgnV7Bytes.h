// DgnV7Bytes: bounds-checked reads of the value forms a DGN V7 file stores: little-endian
// shorts, longs whose high word comes first, and VAX D doubles. Every read answers false,
// leaving its output alone, when the value does not lie wholly inside the bytes.
//
//   DgnV7Bytes element(raw.bytes);
//   int32_t x = 0;
//   if (!element.readLong(36, x)) return false;
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

class DgnV7Bytes {
  public:
    explicit DgnV7Bytes(std::span<const uint8_t> bytes) : m_bytes(bytes) {}

    size_t size() const { return m_bytes.size(); }
    std::span<const uint8_t> span() const { return m_bytes; }
    /// True when `count` bytes from `offset` lie inside.
    bool holds(size_t offset, size_t count) const {
        return offset <= m_bytes.size() && count <= m_bytes.size() - offset;
    }

    bool readByte(size_t offset, uint8_t& value) const;
    bool readShort(size_t offset, uint16_t& value) const;
    /// A signed long, high word first.
    bool readLong(size_t offset, int32_t& value) const;
    /// A VAX D double. False also for the form VAX reserves (sign set, exponent 0); the finite
    /// range of VAX D lies inside that of an IEEE double, so every other value converts.
    bool readDouble(size_t offset, double& value) const;

  private:
    std::span<const uint8_t> m_bytes;
};
