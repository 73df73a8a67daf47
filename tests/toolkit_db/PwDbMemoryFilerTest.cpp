// The in-memory filer: typed items, mismatches, ids as handles.
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>

#include <gtest/gtest.h>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

using Plotwright::StatusOk;

TEST(PwDbMemoryFiler, ReadsBackEveryKindOfItem) {
    PwDbDatabase database;
    PwDbMemoryFiler filer(&database);
    filer.writeString(u"Grundriss ä");
    filer.writeInt32(-7);
    filer.writeInt64(int64_t{1} << 40);
    filer.writeDouble(2.5);
    filer.writeBool(true);
    const unsigned char bytes[] = {0, 1, 254, 255};
    filer.writeBytes(bytes, sizeof bytes);
    filer.writeObjectId(database.layerZeroId());
    filer.writeObjectId(PwDbObjectId());
    filer.writePoint3d(PwGePoint3d(1, 2, 3));
    filer.writeString(static_cast<const char16_t*>(nullptr));

    filer.rewind();
    char16_t* text = nullptr;
    ASSERT_EQ(filer.readString(text), StatusOk);
    EXPECT_EQ(wstring(text), u"Grundriss ä");
    pwutDelBuffer(text);
    int32_t i32 = 0;
    int64_t i64 = 0;
    double real = 0;
    bool flag = false;
    unsigned char readBytes[4] = {};
    PwDbObjectId id;
    PwDbObjectId nullId = database.layerZeroId();
    PwGePoint3d point;
    wstring empty = u"x";
    EXPECT_EQ(filer.readInt32(i32), StatusOk);
    EXPECT_EQ(filer.readInt64(i64), StatusOk);
    EXPECT_EQ(filer.readDouble(real), StatusOk);
    EXPECT_EQ(filer.readBool(flag), StatusOk);
    EXPECT_EQ(filer.readBytes(readBytes, 4), StatusOk);
    EXPECT_EQ(filer.readObjectId(id), StatusOk);
    EXPECT_EQ(filer.readObjectId(nullId), StatusOk);
    EXPECT_EQ(filer.readPoint3d(point), StatusOk);
    EXPECT_EQ(filer.readString(empty), StatusOk);
    EXPECT_EQ(i32, -7);
    EXPECT_EQ(i64, int64_t{1} << 40);
    EXPECT_EQ(real, 2.5);
    EXPECT_TRUE(flag);
    EXPECT_EQ(readBytes[2], 254);
    EXPECT_EQ(id, database.layerZeroId());
    EXPECT_TRUE(nullId.isNull());
    EXPECT_EQ(point, PwGePoint3d(1, 2, 3));
    EXPECT_EQ(empty, u"");
    EXPECT_EQ(filer.remaining(), 0u);
    EXPECT_EQ(filer.filerStatus(), StatusOk);
}

TEST(PwDbMemoryFiler, MismatchedTypeFailsAndSticks) {
    PwDbMemoryFiler filer;
    filer.writeInt32(3);
    filer.writeInt32(4);
    filer.rewind();
    double real = 9.0;
    EXPECT_EQ(filer.readDouble(real), Plotwright::StatusFilerError);
    EXPECT_EQ(real, 9.0);
    int32_t value = 0;
    EXPECT_EQ(filer.readInt32(value), Plotwright::StatusFilerError) << "a failure sticks";
    EXPECT_EQ(filer.filerStatus(), Plotwright::StatusFilerError);
    filer.rewind();
    EXPECT_EQ(filer.readInt32(value), StatusOk);
    EXPECT_EQ(value, 3);
}

TEST(PwDbMemoryFiler, ReadingPastTheEndFails) {
    PwDbMemoryFiler filer;
    int32_t value = 5;
    EXPECT_EQ(filer.readInt32(value), Plotwright::StatusFilerError);
    EXPECT_EQ(value, 5);
    char16_t* text = reinterpret_cast<char16_t*>(0x1);
    EXPECT_EQ(filer.readString(text), Plotwright::StatusFilerError);
    EXPECT_EQ(text, nullptr);
}

TEST(PwDbMemoryFiler, BytesOfAnotherSizeFail) {
    PwDbMemoryFiler filer;
    const char bytes[3] = {1, 2, 3};
    filer.writeBytes(bytes, 3);
    filer.rewind();
    char larger[4] = {};
    EXPECT_EQ(filer.readBytes(larger, 4), Plotwright::StatusFilerError);
    EXPECT_EQ(filer.writeBytes(nullptr, 2), Plotwright::StatusInvalidInput);
}

TEST(PwDbMemoryFiler, IdsWithoutADatabaseReadAsNull) {
    PwDbDatabase database;
    PwDbMemoryFiler writer(&database);
    writer.writeObjectId(database.modelSpaceId());
    PwDbMemoryFiler reader;
    for (const auto& item : writer.items()) reader.append(item);
    PwDbObjectId id = database.modelSpaceId();
    EXPECT_EQ(reader.readObjectId(id), StatusOk);
    EXPECT_TRUE(id.isNull());
}

TEST(PwDbMemoryFiler, StringConveniencesAgree) {
    PwDbMemoryFiler filer;
    filer.writeString(wstring(u"twenty-one characters"));
    filer.rewind();
    PwString text;
    ASSERT_EQ(filer.readString(text), StatusOk);
    EXPECT_EQ(text.toWString(), u"twenty-one characters");
}

TEST(PwDbMemoryFiler, TakeRemainingAndCopyTo) {
    PwDbMemoryFiler source;
    source.writeInt32(1);
    source.writeString(u"kept");
    source.writeDouble(3.0);
    source.rewind();
    int32_t first = 0;
    source.readInt32(first);
    PwDbMemoryFiler kept;
    kept.takeRemaining(source);
    EXPECT_EQ(kept.items().size(), 2u);
    EXPECT_EQ(source.remaining(), 0u);
    PwDbMemoryFiler copy;
    ASSERT_EQ(kept.copyTo(copy), StatusOk);
    EXPECT_EQ(copy.items(), kept.items());
}

}  // namespace
