// The stored value forms of DGN V7 turned into native ones.
#include "modules/dgn/DgnV7Bytes.h"

#include <cstring>

bool DgnV7Bytes::readByte(size_t offset, uint8_t& value) const {
    if (!holds(offset, 1)) return false;
    value = m_bytes[offset];
    return true;
}

bool DgnV7Bytes::readShort(size_t offset, uint16_t& value) const {
    if (!holds(offset, 2)) return false;
    value = static_cast<uint16_t>(m_bytes[offset] | (m_bytes[offset + 1] << 8));
    return true;
}

bool DgnV7Bytes::readLong(size_t offset, int32_t& value) const {
    uint16_t high = 0, low = 0;
    if (!readShort(offset, high) || !readShort(offset + 2, low)) return false;
    value = static_cast<int32_t>((uint32_t{high} << 16) | low);
    return true;
}

bool DgnV7Bytes::readDouble(size_t offset, double& value) const {
    if (!holds(offset, 8)) return false;
    uint64_t vax = 0;
    for (size_t word = 0; word < 4; ++word) {
        uint16_t part = 0;
        readShort(offset + 2 * word, part);
        vax = (vax << 16) | part;
    }
    const uint64_t sign = vax >> 63;
    const uint64_t exponent = (vax >> 55) & 0xFF;
    if (exponent == 0) {
        if (sign != 0) return false;
        value = 0.0;
        return true;
    }
    // VAX D is 0.1f times 2^(e-128); IEEE is 1.f times 2^(e-1023): the same fraction bits with
    // the exponent moved by 894 and the three lowest fraction bits dropped.
    const uint64_t fraction = (vax & ((uint64_t{1} << 55) - 1)) >> 3;
    const uint64_t ieee = (sign << 63) | ((exponent + 894) << 52) | fraction;
    std::memcpy(&value, &ieee, sizeof value);
    return true;
}
