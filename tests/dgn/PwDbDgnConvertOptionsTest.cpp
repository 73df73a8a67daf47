// The options record the service library hands to the module: its size, its field offsets and
// the values it starts with.
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>

#include <gtest/gtest.h>

#include <cstring>

namespace {

TEST(PwDbDgnConvertOptions, LayoutIsFixedAt88Bytes) {
    EXPECT_EQ(sizeof(PwDbDgnConvertOptions), 88u);
    EXPECT_EQ(offsetof(PwDbDgnConvertOptions, cellsAsBlocks), 0u);
    EXPECT_EQ(offsetof(PwDbDgnConvertOptions, unitsMode), 4u);
    EXPECT_EQ(offsetof(PwDbDgnConvertOptions, attachmentsAsUnderlays), 8u);
    EXPECT_EQ(offsetof(PwDbDgnConvertOptions, layerPrefix), 16u);
    EXPECT_EQ(offsetof(PwDbDgnConvertOptions, targetBlockHandle), 48u);
    EXPECT_EQ(offsetof(PwDbDgnConvertOptions, cellBlockPrefix), 56u);
}

// A caller that writes the record by offset, as the library does, is read back field by field.
TEST(PwDbDgnConvertOptions, FieldsSitWhereTheLibraryWritesThem) {
    PwDbDgnConvertOptions options;
    auto* bytes = reinterpret_cast<unsigned char*>(&options);
    const int32_t ints[3] = {0, 1, 0};
    std::memcpy(bytes + 0, &ints[0], 4);
    std::memcpy(bytes + 4, &ints[1], 4);
    std::memcpy(bytes + 8, &ints[2], 4);
    const int64_t handle = 0x1234;
    std::memcpy(bytes + 48, &handle, 8);
    *reinterpret_cast<wstring*>(bytes + 16) = u"first";
    *reinterpret_cast<wstring*>(bytes + 56) = u"second";
    EXPECT_EQ(options.cellsAsBlocks, 0);
    EXPECT_EQ(options.unitsMode, PwDbDgnConvertOptions::kMasterUnits);
    EXPECT_EQ(options.attachmentsAsUnderlays, 0);
    EXPECT_EQ(options.targetBlockHandle, 0x1234);
    EXPECT_EQ(options.layerPrefix, u"first");
    EXPECT_EQ(options.cellBlockPrefix, u"second");
}

TEST(PwDbDgnConvertOptions, StartsWithTheLibrarysValues) {
    const PwDbDgnConvertOptions options;
    EXPECT_EQ(options.cellsAsBlocks, 1);
    EXPECT_EQ(options.unitsMode, 2);
    EXPECT_EQ(options.attachmentsAsUnderlays, 1);
    EXPECT_EQ(options.layerPrefix, u"");
    EXPECT_EQ(options.targetBlockHandle, 0);
    EXPECT_EQ(options.cellBlockPrefix, u"");
}

}  // namespace
