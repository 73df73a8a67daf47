// The stored value forms: shorts, high-word-first longs and VAX D doubles, read within bounds.
#include "modules/dgn/DgnV7Bytes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace {

TEST(DgnV7Bytes, ShortsAreLittleEndian) {
    const std::vector<uint8_t> bytes = {0x34, 0x12, 0xCD};
    const DgnV7Bytes view(bytes);
    uint16_t value = 0;
    ASSERT_TRUE(view.readShort(0, value));
    EXPECT_EQ(value, 0x1234);
    ASSERT_TRUE(view.readShort(1, value));
    EXPECT_EQ(value, 0xCD12);
    EXPECT_FALSE(view.readShort(2, value));
    EXPECT_EQ(value, 0xCD12) << "a refused read leaves the output alone";
}

TEST(DgnV7Bytes, LongsCarryTheirHighWordFirst) {
    const std::vector<uint8_t> bytes = {0x34, 0x12, 0xCD, 0xAB, 0xFF, 0xFF, 0xFE, 0xFF};
    const DgnV7Bytes view(bytes);
    int32_t value = 0;
    ASSERT_TRUE(view.readLong(0, value));
    EXPECT_EQ(static_cast<uint32_t>(value), 0x1234ABCDu);
    ASSERT_TRUE(view.readLong(4, value));
    EXPECT_EQ(value, -2);
    EXPECT_FALSE(view.readLong(5, value));
    EXPECT_FALSE(view.readLong(SIZE_MAX - 1, value)) << "offsets near the top don't wrap";
}

// 1.0 in VAX D is the word 0x4080 followed by zero words.
TEST(DgnV7Bytes, VaxDoublesConvert) {
    const std::vector<uint8_t> one = {0x80, 0x40, 0, 0, 0, 0, 0, 0};
    double value = 0;
    ASSERT_TRUE(DgnV7Bytes(one).readDouble(0, value));
    EXPECT_EQ(value, 1.0);
    // -2.5: sign set, exponent 130, fraction .01 after the hidden bit: 0xC120.
    const std::vector<uint8_t> minusTwoAndAHalf = {0x20, 0xC1, 0, 0, 0, 0, 0, 0};
    ASSERT_TRUE(DgnV7Bytes(minusTwoAndAHalf).readDouble(0, value));
    EXPECT_EQ(value, -2.5);
    // The low words hold the fine bits: 1 + 2^-20 sets bit 35 of the 55-bit fraction.
    const std::vector<uint8_t> fine = {0x80, 0x40, 0x08, 0x00, 0, 0, 0, 0};
    ASSERT_TRUE(DgnV7Bytes(fine).readDouble(0, value));
    EXPECT_EQ(value, 1.0 + std::ldexp(1.0, -20));
}

TEST(DgnV7Bytes, ZeroAndTheReservedForm) {
    const std::vector<uint8_t> zero(8, 0);
    double value = 7;
    ASSERT_TRUE(DgnV7Bytes(zero).readDouble(0, value));
    EXPECT_EQ(value, 0.0);
    // A zero exponent with the sign set is the reserved operand, not a number.
    const std::vector<uint8_t> reserved = {0x00, 0x80, 0, 0, 0, 0, 0, 0};
    value = 7;
    EXPECT_FALSE(DgnV7Bytes(reserved).readDouble(0, value));
    EXPECT_EQ(value, 7);
    // Any other exponent gives a finite number, however large.
    const std::vector<uint8_t> largest = {0xFF, 0x7F, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF};
    ASSERT_TRUE(DgnV7Bytes(largest).readDouble(0, value));
    EXPECT_TRUE(std::isfinite(value));
    EXPECT_GT(value, 1e38);
}

TEST(DgnV7Bytes, DoublesOutsideTheBytesAreRefused) {
    const std::vector<uint8_t> seven(7, 0);
    double value = 3;
    EXPECT_FALSE(DgnV7Bytes(seven).readDouble(0, value));
    EXPECT_FALSE(DgnV7Bytes({}).readDouble(0, value));
    EXPECT_EQ(value, 3);
}

}  // namespace
