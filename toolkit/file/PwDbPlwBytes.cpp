// The checksum and the text conversions of the native file codec's byte helpers.
#include "toolkit/file/PwDbPlwBytes.h"

#include <isa-l/crc.h>
#include <zlib.h>

uint32_t pwdbPlwCrc32(std::string_view data) {
    return crc32_gzip_refl(0, reinterpret_cast<const unsigned char*>(data.data()), data.size());
}

uint32_t pwdbPlwCrc32Combine(uint32_t first, uint32_t second, uint64_t secondLength) {
    return static_cast<uint32_t>(
        crc32_combine64(first, second, static_cast<z_off64_t>(secondLength)));
}

void PwDbPlwWriter::units(const wstring& text) {
    if constexpr (std::endian::native == std::endian::little) {
        m_bytes.append(reinterpret_cast<const char*>(text.data()), text.size() * 2);
    } else {
        for (char16_t unit : text) u16(static_cast<uint16_t>(unit));
    }
}

bool PwDbPlwReader::units(uint64_t count, wstring& text) {
    if (count > m_left / 2) return false;
    const size_t size = static_cast<size_t>(count);
    text.resize(size);
    if constexpr (std::endian::native == std::endian::little) {
        std::memcpy(text.data(), m_next, size * 2);
    } else {
        for (size_t i = 0; i < size; ++i) {
            text[i] = static_cast<char16_t>(static_cast<uint8_t>(m_next[2 * i]) |
                                            (static_cast<uint8_t>(m_next[2 * i + 1]) << 8));
        }
    }
    advance(size * 2);
    return true;
}
