// Gearmark model document references through the library: the three forms of the question on
// drawings on disk, redirection information, unpacking the carried file, and the pattern.
#include <lodeqdb/contents/GearmarkRef.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <regex>

#include "DrawingFiles.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocAuthoring.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjUtil.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjects.h>

namespace {

using namespace LodeQDBUtil::GearmarkRef;
using Plotwright::StatusOk;

class GearmarkRefs : public lodeqdbtest::DrawingFilesTest {
  protected:
    GearmarkRefs() : DrawingFilesTest("lodeqdb-gearmark") {}

    wstring WithViews(const wstring& product, const std::string& stem) {
        auto drawing = PwDbAuthoring::createDrawing();
        EXPECT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"Front", product, u"gear.gmd"),
                  StatusOk);
        return Save(*drawing, stem);
    }
};

TEST_P(GearmarkRefs, ByPathReadsTheFileAndAsks) {
    EXPECT_TRUE(PlwHasGearmarkModelDocViews(WithViews(u"Gearmark", "gearmark")));
    EXPECT_FALSE(PlwHasGearmarkModelDocViews(WithViews(u"OtherCad", "other")));
    auto plain = PwDbAuthoring::createDrawing();
    EXPECT_FALSE(PlwHasGearmarkModelDocViews(Save(*plain, "plain")));
}

TEST_P(GearmarkRefs, ByPathIntoTheCallersDatabaseWhichKeepsTheDrawing) {
    const wstring path = WithViews(u"Gearmark", "gearmark");
    PwDbDatabase database(false, true);
    EXPECT_TRUE(PlwHasGearmarkModelDocViews(path, database));
    // The drawing stays in the database: asking it again needs no file.
    EXPECT_TRUE(PlwHasGearmarkModelDocViews(&database));
    EXPECT_FALSE(PlwHasGearmarkModelDocViews(nullptr));
}

TEST_P(GearmarkRefs, RedirectionsAreStoredAndKeptByTheFile) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(SetRedirectionsInfo(*drawing, u"gear.gmd=/srv/parts/gear.gmd"), StatusOk);
    auto read = SaveAndRead(*drawing, "redirected");
    PwString info;
    ASSERT_EQ(PwModelDocObjUtil::getRedirectionsInfo(read.get(), info), StatusOk);
    EXPECT_EQ(info.toWString(), u"gear.gmd=/srv/parts/gear.gmd");

    // The empty text is stored as the empty text.
    ASSERT_EQ(SetRedirectionsInfo(*read, u""), StatusOk);
    auto again = SaveAndRead(*read, "cleared");
    info = u"not yet";
    ASSERT_EQ(PwModelDocObjUtil::getRedirectionsInfo(again.get(), info), StatusOk);
    EXPECT_TRUE(info.isEmpty());
}

TEST_P(GearmarkRefs, UnpackingGivesThePathOfTheWrittenFile) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::embedModelDocFile(*drawing, u"gear.gmd", std::string("GMD\0\x01", 5)),
              StatusOk);
    auto read = SaveAndRead(*drawing, "packed");
    wstring result = u"before";
    ASSERT_EQ(UnpackGearmarkDrawingFile(read.get(), result), StatusOk);
    const std::filesystem::path unpacked(LodeUtil::Utf8FromUtf16(result));
    EXPECT_EQ(unpacked.filename(), "gear.gmd");
    std::ifstream in(unpacked, std::ios::binary);
    const std::string bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(bytes, std::string("GMD\0\x01", 5));
    std::filesystem::remove_all(unpacked.parent_path());
}

TEST_P(GearmarkRefs, AFailedUnpackKeepsTheCallersText) {
    auto drawing = PwDbAuthoring::createDrawing();
    auto read = SaveAndRead(*drawing, "plain");
    wstring result = u"before";
    EXPECT_EQ(UnpackGearmarkDrawingFile(read.get(), result), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(result, u"before");
    EXPECT_EQ(UnpackGearmarkDrawingFile(nullptr, result), Plotwright::StatusNullDatabase);
    EXPECT_EQ(result, u"before");
}

INSTANTIATE_TEST_SUITE_P(BothFormats, GearmarkRefs, testing::Bool(), lodeqdbtest::FormatName);

class GearmarkFiles : public lodeqdbtest::TempFolderTest {
  protected:
    GearmarkFiles() : TempFolderTest("lodeqdb-gearmark") {}
};

TEST_F(GearmarkFiles, AnUnknownExtensionIsAReadErrorInBothReadForms) {
    Write("drawing.bin", "anything");
    EXPECT_THROW(PlwHasGearmarkModelDocViews(Path("drawing.bin")), lode::ReadError);
    PwDbDatabase database(false, true);
    EXPECT_THROW(PlwHasGearmarkModelDocViews(Path("drawing.bin"), database), lode::ReadError);
}

TEST_F(GearmarkFiles, AMissingFileIsNotFound) {
    EXPECT_THROW(PlwHasGearmarkModelDocViews(Path("missing.plw")), lode::NotFound);
    PwDbDatabase database(false, true);
    EXPECT_THROW(PlwHasGearmarkModelDocViews(Path("missing.plx"), database), lode::NotFound);
}

TEST(GearmarkPattern, TheSameLiteralEveryTime) {
    const wstring pattern = GetTandemGearmarkRefIdPattern();
    EXPECT_EQ(pattern, u"TDM_GMK:GMD:(?<GearmarkRefId>[\\w\\W]+)");
    EXPECT_EQ(pattern.size(), 37u);
    EXPECT_EQ(GetTandemGearmarkRefIdPattern(), pattern);
}

TEST(GearmarkPattern, WhatItAccepts) {
    // std::regex has no named groups; the same pattern with a plain group shows what matches.
    std::string narrow = LodeUtil::Utf8FromUtf16(GetTandemGearmarkRefIdPattern());
    narrow.replace(narrow.find("?<GearmarkRefId>"), 16, "");
    const std::regex pattern(narrow);
    std::smatch match;
    const std::string id = "TDM_GMK:GMD:part-42\nline two";
    ASSERT_TRUE(std::regex_match(id, match, pattern));
    EXPECT_EQ(match[1], "part-42\nline two");
    EXPECT_FALSE(std::regex_match(std::string("TDM_GMK:GMD:"), pattern));
    EXPECT_FALSE(std::regex_match(std::string("TDM_GMK:XYZ:1"), pattern));
}

}  // namespace
