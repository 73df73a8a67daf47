// The exception classes: codes, fields, copies, what().
#include <lodeqdb/platform/LodeExceptions.h>

#include <gtest/gtest.h>

#include <type_traits>

namespace {

const wstring kPath = u"/drawings/a.plw";

TEST(LodeExceptions, CodesOfTheTree) {
    EXPECT_EQ(lode::LodeException(42).code(), 42);
    EXPECT_EQ(lode::PlotwrightException(Plotwright::StatusNullDatabase).code(), 301);
    EXPECT_EQ(lode::FileError(7, 101, kPath).code(), 7);
    EXPECT_EQ(lode::ReadError(kPath).code(), 101);
    EXPECT_EQ(lode::NotFound(kPath).code(), 102);
    EXPECT_EQ(lode::InvalidFormat(kPath).code(), 103);
    EXPECT_EQ(lode::SecurityError(kPath).code(), 104);
    EXPECT_EQ(lode::NoAppInfo().code(), 201);
    EXPECT_EQ(lode::NoOwnerInfo().code(), 202);
    EXPECT_EQ(lode::NoPlwCreatorName().code(), 203);
}

TEST(LodeExceptions, InkstoneErrorHasCodeZeroButIsAFailure) {
    const lode::InkstoneError error;
    EXPECT_EQ(error.code(), 0);
    const lode::LodeException& asRoot = error;
    EXPECT_EQ(asRoot.code(), 0);
    EXPECT_THROW(throw lode::InkstoneError(), lode::LodeException);
}

TEST(LodeExceptions, OnlyFileErrorsCarryAMessage) {
    EXPECT_TRUE(lode::LodeException(1).message().empty());
    EXPECT_TRUE(lode::PlotwrightException(Plotwright::StatusBadFileFormat).message().empty());
    EXPECT_TRUE(lode::NoAppInfo().message().empty());
    EXPECT_TRUE(lode::InkstoneError().message().empty());
    EXPECT_NE(lode::ReadError(kPath).message().find(kPath), wstring::npos);
}

TEST(LodeExceptions, FileErrorUsesItsTextNumber) {
    const lode::FileError error(999, 102, kPath);
    EXPECT_EQ(error.code(), 999);
    EXPECT_EQ(error.message(), lode::NotFound(kPath).message());
}

TEST(LodeExceptions, UnknownTextNumberStillThrowsWithEmptyText) {
    const lode::FileError error(5, 4242, kPath);
    EXPECT_EQ(error.code(), 5);
    EXPECT_EQ(error.message(), u"");
}

TEST(LodeExceptions, WhatIsUnknownExceptionForEveryClass) {
    const std::string expected = "Unknown exception";
    EXPECT_EQ(lode::LodeException(1).what(), expected);
    EXPECT_EQ(lode::PlotwrightException(Plotwright::StatusOk).what(), expected);
    EXPECT_EQ(lode::FileError(1, 101, kPath).what(), expected);
    EXPECT_EQ(lode::ReadError(kPath).what(), expected);
    EXPECT_EQ(lode::NotFound(kPath).what(), expected);
    EXPECT_EQ(lode::InvalidFormat(kPath).what(), expected);
    EXPECT_EQ(lode::SecurityError(kPath).what(), expected);
    EXPECT_EQ(lode::NoAppInfo().what(), expected);
    EXPECT_EQ(lode::NoOwnerInfo().what(), expected);
    EXPECT_EQ(lode::NoPlwCreatorName().what(), expected);
    EXPECT_EQ(lode::InkstoneError().what(), expected);
    EXPECT_EQ(TypeNotFoundException().what(), expected);
    const std::exception& asStd = lode::NotFound(kPath);
    EXPECT_EQ(asStd.what(), expected);
}

TEST(LodeExceptions, CopyOfPlotwrightExceptionKeepsEverything) {
    const lode::PlotwrightException original(static_cast<Plotwright::ErrorStatus>(-77));
    const lode::PlotwrightException copy(original);  // NOLINT(performance-unnecessary-copy)
    EXPECT_EQ(copy.code(), 301);
    EXPECT_EQ(copy.status(), static_cast<Plotwright::ErrorStatus>(-77));
    EXPECT_TRUE(copy.message().empty());
}

TEST(LodeExceptions, CopyOfFileErrorKeepsMessage) {
    const lode::SecurityError original(kPath);
    const lode::SecurityError copy = original;
    EXPECT_EQ(copy.code(), 104);
    EXPECT_EQ(copy.message(), original.message());
}

TEST(LodeExceptions, TreeShape) {
    static_assert(std::is_base_of_v<std::exception, lode::LodeException>);
    static_assert(std::is_base_of_v<lode::LodeException, lode::PlotwrightException>);
    static_assert(std::is_base_of_v<lode::FileError, lode::ReadError>);
    static_assert(std::is_base_of_v<lode::FileError, lode::NotFound>);
    static_assert(std::is_base_of_v<lode::FileError, lode::InvalidFormat>);
    static_assert(std::is_base_of_v<lode::FileError, lode::SecurityError>);
    static_assert(!std::is_base_of_v<lode::FileError, lode::NoAppInfo>);
    static_assert(!std::is_base_of_v<lode::LodeException, TypeNotFoundException>);
    static_assert(std::is_base_of_v<std::exception, TypeNotFoundException>);
    static_assert(std::is_copy_constructible_v<lode::NotFound>);
    SUCCEED();
}

}  // namespace
