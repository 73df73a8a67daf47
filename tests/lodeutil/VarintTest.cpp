// Varints: single numbers at their limits, and lists measured eight bytes at a time exactly as
// they read one by one, whatever the bytes.
#include <lodeqdb/lodeutil/Varint.h>

#include <gtest/gtest.h>

#include <random>
#include <string>

namespace {

using LodeUtil::MeasureVarints;
using LodeUtil::ReadVarint;

std::string Varint(uint64_t value) {
    std::string out;
    while (value >= 0x80) {
        out.push_back(static_cast<char>(static_cast<uint8_t>(value) | 0x80));
        value >>= 7;
    }
    out.push_back(static_cast<char>(value));
    return out;
}

// The measure of the first `count` numbers taken one by one; false where a read fails.
bool OneByOne(std::string_view bytes, size_t count, size_t& length, size_t& nonZero) {
    size_t at = 0;
    nonZero = 0;
    for (size_t i = 0; i < count; ++i) {
        uint64_t value = 0;
        if (!ReadVarint(bytes, at, value)) return false;
        if (value != 0) ++nonZero;
    }
    length = at;
    return true;
}

void ExpectSameMeasure(const std::string& bytes, size_t count) {
    size_t expectedLength = 0, expectedNonZero = 0, length = 0, nonZero = 0;
    const bool expected = OneByOne(bytes, count, expectedLength, expectedNonZero);
    ASSERT_EQ(MeasureVarints(bytes, count, length, nonZero), expected) << count;
    if (expected) {
        EXPECT_EQ(length, expectedLength) << count;
        EXPECT_EQ(nonZero, expectedNonZero) << count;
    }
}

TEST(Varint, LimitsOfOneNumber) {
    for (uint64_t value : {uint64_t{0}, uint64_t{127}, uint64_t{128}, uint64_t{16383},
                           uint64_t{16384}, UINT64_MAX}) {
        const std::string bytes = Varint(value);
        size_t at = 0;
        uint64_t read = 1;
        ASSERT_TRUE(ReadVarint(bytes, at, read)) << value;
        EXPECT_EQ(read, value);
        EXPECT_EQ(at, bytes.size());
    }
    EXPECT_EQ(Varint(UINT64_MAX).size(), 10u);
    size_t at = 0;
    uint64_t value = 0;
    EXPECT_FALSE(ReadVarint(std::string(10, '\xFF') + '\x01', at, value)) << "eleven bytes";
    EXPECT_FALSE(ReadVarint(std::string(9, '\xFF') + '\x02', at, value)) << "past 64 bits";
    EXPECT_FALSE(ReadVarint("\x80", at, value)) << "cut off";
    EXPECT_EQ(at, 0u);
}

TEST(Varint, AListOfHandlesIsMeasuredAsReadOneByOne) {
    std::string bytes;
    for (uint64_t handle = 0x1F; handle < 0x1F + 20000; ++handle) bytes += Varint(handle);
    size_t length = 0, nonZero = 0;
    ASSERT_TRUE(MeasureVarints(bytes, 20000, length, nonZero));
    EXPECT_EQ(length, bytes.size());
    EXPECT_EQ(nonZero, 20000u);
    for (size_t count : {size_t{0}, size_t{1}, size_t{7}, size_t{8}, size_t{9}, size_t{19999}}) {
        ExpectSameMeasure(bytes, count);
    }
    ExpectSameMeasure(bytes, 20001);
}

TEST(Varint, ZerosLongNumbersAndDamageAreMeasuredAsReadOneByOne) {
    std::mt19937_64 random(77);
    for (int n = 0; n < 3000; ++n) {
        std::string bytes;
        const int numbers = static_cast<int>(random() % 40);
        for (int k = 0; k < numbers; ++k) {
            switch (random() % 6) {
                case 0:
                    bytes += Varint(0);
                    break;
                case 1:
                    bytes += Varint(random());  // up to ten bytes
                    break;
                case 2:
                    bytes += std::string("\x80\x80\x00", 3);  // 0 written too long
                    break;
                case 3:
                    bytes.push_back(static_cast<char>(random()));  // any byte
                    break;
                default:
                    bytes += Varint(random() % 100000);
            }
        }
        for (size_t count = 0; count <= static_cast<size_t>(numbers) + 2; ++count) {
            ExpectSameMeasure(bytes, count);
        }
    }
}

}  // namespace
