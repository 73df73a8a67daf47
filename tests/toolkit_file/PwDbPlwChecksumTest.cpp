// The native file's checksum is zlib's CRC-32, whichever library computes it: files written
// before keep their checks, and checks combine as zlib combines them.
#include <gtest/gtest.h>
#include <zlib.h>

#include <random>
#include <string>

#include "toolkit/file/PwDbPlwBytes.h"

namespace {

uint32_t ZlibCrc32(std::string_view data) {
    return static_cast<uint32_t>(
        crc32(0L, reinterpret_cast<const Bytef*>(data.data()), static_cast<uInt>(data.size())));
}

TEST(PwDbPlwChecksum, IsZlibsCrc32AtEveryLengthAndAlignment) {
    std::mt19937 random(31);
    std::string bytes(70000, '\0');
    for (char& byte : bytes) byte = static_cast<char>(random());
    EXPECT_EQ(pwdbPlwCrc32(""), 0u);
    EXPECT_EQ(pwdbPlwCrc32("123456789"), 0xCBF43926u) << "the check value of CRC-32";
    for (size_t length : {1u,  2u,   3u,   7u,   15u,  16u,   17u,   31u,   63u,    64u,
                          65u, 127u, 128u, 255u, 256u, 1000u, 4096u, 4100u, 65536u, 69999u}) {
        for (size_t offset : {0u, 1u, 3u, 8u}) {
            const std::string_view piece = std::string_view(bytes).substr(offset, length);
            EXPECT_EQ(pwdbPlwCrc32(piece), ZlibCrc32(piece)) << length << " at " << offset;
        }
    }
}

TEST(PwDbPlwChecksum, ChecksOfTwoRunsCombineIntoTheCheckOfBoth) {
    const std::string first(5000, 'a');
    const std::string second = "and then something else, of another length";
    EXPECT_EQ(pwdbPlwCrc32Combine(pwdbPlwCrc32(first), pwdbPlwCrc32(second), second.size()),
              pwdbPlwCrc32(first + second));
}

}  // namespace
