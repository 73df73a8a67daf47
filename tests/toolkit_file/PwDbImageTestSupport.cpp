#include "PwDbImageTestSupport.h"

#include <gtest/gtest.h>

#include <bit>
#include <utility>
#include <variant>

namespace pwdbfiletest {

namespace {

using Item = PwDbMemoryFiler::Item;

bool SameItem(const Item& a, const Item& b) {
    if (a.index() != b.index()) return false;
    if (const double* x = std::get_if<double>(&a)) {
        return std::bit_cast<uint64_t>(*x) == std::bit_cast<uint64_t>(std::get<double>(b));
    }
    return a == b;
}

}  // namespace

PwDbObjectRecord Record(std::vector<wstring> chain, PwDbHandle handle, std::vector<Item> data) {
    PwDbObjectRecord record;
    record.classChain = std::move(chain);
    record.handle = handle;
    record.data = std::move(data);
    return record;
}

void ExpectSameImage(const PwDbDrawingImage& expected, const PwDbDrawingImage& actual) {
    EXPECT_EQ(expected.version, actual.version);
    EXPECT_EQ(expected.handseed, actual.handseed);
    EXPECT_EQ(expected.measurement, actual.measurement);
    EXPECT_EQ(expected.roots, actual.roots);
    EXPECT_EQ(expected.appInfo, actual.appInfo);
    EXPECT_EQ(expected.preview, actual.preview);
    ASSERT_EQ(expected.objects.size(), actual.objects.size());
    for (size_t i = 0; i < expected.objects.size(); ++i) {
        const PwDbObjectRecord& want = expected.objects[i];
        const PwDbObjectRecord& got = actual.objects[i];
        EXPECT_EQ(want.classChain, got.classChain) << "record " << i;
        EXPECT_EQ(want.handle, got.handle) << "record " << i;
        EXPECT_EQ(want.erased, got.erased) << "record " << i;
        ASSERT_EQ(want.data.size(), got.data.size()) << "record " << i;
        for (size_t k = 0; k < want.data.size(); ++k) {
            EXPECT_TRUE(SameItem(want.data[k], got.data[k])) << "record " << i << " item " << k;
        }
    }
}

uint64_t Le(const std::string& bytes, size_t offset, size_t size) {
    uint64_t value = 0;
    for (size_t i = 0; i < size; ++i) {
        value |= static_cast<uint64_t>(static_cast<uint8_t>(bytes.at(offset + i))) << (8 * i);
    }
    return value;
}

uint32_t TestCrc(std::string_view data) {
    uint32_t crc = 0xFFFFFFFFu;
    for (char byte : data) {
        crc ^= static_cast<uint8_t>(byte);
        for (int bit = 0; bit < 8; ++bit) crc = (crc >> 1) ^ (0xEDB88320u & (0u - (crc & 1u)));
    }
    return ~crc;
}

void PutLe(std::string& bytes, size_t offset, uint64_t value, size_t size) {
    for (size_t i = 0; i < size; ++i) bytes.at(offset + i) = static_cast<char>(value >> (8 * i));
}

std::vector<SectionSpan> Sections(const std::string& bytes) {
    std::vector<SectionSpan> spans;
    size_t next = static_cast<size_t>(Le(bytes, 68, 8));
    while (next <= bytes.size() && bytes.size() - next >= 16) {
        const uint64_t length = Le(bytes, next + 4, 8);
        if (length > bytes.size() - next - 16) break;
        const size_t size = static_cast<size_t>(length);
        spans.push_back({bytes.substr(next, 4), next, next + 12, size, next + 12 + size});
        next += 16 + size;
    }
    return spans;
}

void Reseal(std::string& bytes) {
    const uint64_t sectionsOffset = Le(bytes, 68, 8);
    if (sectionsOffset >= 128 && sectionsOffset <= bytes.size()) {
        PutLe(bytes, 76, bytes.size() - sectionsOffset, 8);
        const std::string appInfo = bytes.substr(128, sectionsOffset - 128);
        PutLe(bytes, 64, TestCrc(appInfo), 4);
        for (const SectionSpan& span : Sections(bytes)) {
            PutLe(bytes, span.crc, TestCrc(bytes.substr(span.payload, span.length)), 4);
        }
    }
    PutLe(bytes, 124, TestCrc(bytes.substr(0, 124)), 4);
}

}  // namespace pwdbfiletest
