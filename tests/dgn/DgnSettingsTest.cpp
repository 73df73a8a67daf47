// The host's DgnSetups.ini: where it is, how it is read, and what it does to coordinates.
#include "modules/dgn/DgnSettings.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "dgn/DgnTestSupport.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

using Plotwright::StatusOk;

class DgnSettingsTest : public lodeqdbtest::TempFolderTest {
  protected:
    DgnSettingsTest() : TempFolderTest("dgn-settings") {}
    void SetUp() override {
        TempFolderTest::SetUp();
        mkdir((folder + "/Support").c_str(), 0755);
    }
    void Settings(const std::string& text) { Write("Support/DgnSetups.ini", text); }
};

TEST_F(DgnSettingsTest, ThePathFollowsTheRootFolder) {
    {
        dgntest::ScopedRootFolder root(u"/srv/host/");
        EXPECT_EQ(dgnSettingsPath(), u"/srv/host\\Support\\DgnSetups.ini");
    }
    {
        dgntest::ScopedRootFolder root(u"C:\\Host");
        EXPECT_EQ(dgnSettingsPath(), u"C:\\Host\\Support\\DgnSetups.ini");
    }
    dgntest::ScopedRootFolder none(u"");
    EXPECT_EQ(dgnSettingsPath(), u"");
}

TEST_F(DgnSettingsTest, SectionsAndKeysWithoutRegardToCase) {
    Settings(
        "; import settings\n"
        "[EXPORTSECTION]\n"
        "IsMasterUnits=7\n"
        "\n"
        "  [ importSection ]  \r\n"
        "# a comment = not a key\n"
        "  ismasterunits =  0 \r\n"
        "Other=a=b\n");
    const wstring path = Path("Support/DgnSetups.ini");
    EXPECT_EQ(dgnReadSetting(path, u"IMPORTSECTION", u"IsMasterUnits"), u"0");
    EXPECT_EQ(dgnReadSetting(path, u"ExportSection", u"IsMasterUnits"), u"7");
    EXPECT_EQ(dgnReadSetting(path, u"IMPORTSECTION", u"Other"), u"a=b");
    EXPECT_EQ(dgnReadSetting(path, u"IMPORTSECTION", u"# a comment"), std::nullopt);
    EXPECT_EQ(dgnReadSetting(path, u"IMPORTSECTION", u"Missing"), std::nullopt);
    EXPECT_EQ(dgnReadSetting(path, u"NOSECTION", u"IsMasterUnits"), std::nullopt);
    EXPECT_EQ(dgnReadSetting(Path("missing.ini"), u"IMPORTSECTION", u"IsMasterUnits"),
              std::nullopt);
    EXPECT_EQ(dgnReadSetting(u"", u"IMPORTSECTION", u"IsMasterUnits"), std::nullopt);
}

TEST_F(DgnSettingsTest, ByteOrderMarks) {
    Write("utf8.ini", "\xEF\xBB\xBF[IMPORTSECTION]\nIsMasterUnits=0\n");
    EXPECT_EQ(dgnReadSetting(Path("utf8.ini"), u"IMPORTSECTION", u"IsMasterUnits"), u"0");
    const std::u16string wide = u"[IMPORTSECTION]\r\nIsMasterUnits=0\r\n";
    std::string bytes = "\xFF\xFE";
    for (char16_t unit : wide) {
        bytes.push_back(static_cast<char>(unit & 0xFF));
        bytes.push_back(static_cast<char>(unit >> 8));
    }
    Write("utf16.ini", bytes);
    EXPECT_EQ(dgnReadSetting(Path("utf16.ini"), u"IMPORTSECTION", u"IsMasterUnits"), u"0");
}

TEST_F(DgnSettingsTest, MasterUnitsOnlyWhenTheFileSaysOne) {
    dgntest::ScopedRootFolder root(Path(""));
    EXPECT_FALSE(dgnImportInMasterUnits()) << "no file";
    Settings("[IMPORTSECTION]\nIsMasterUnits=0\n");
    EXPECT_FALSE(dgnImportInMasterUnits());
    Settings("[IMPORTSECTION]\nIsMasterUnits=1\n");
    EXPECT_TRUE(dgnImportInMasterUnits());
    Settings("[IMPORTSECTION]\nIsMasterUnits=no\n");
    EXPECT_FALSE(dgnImportInMasterUnits()) << "not an integer";
    Settings("[OTHER]\nIsMasterUnits=0\n");
    EXPECT_FALSE(dgnImportInMasterUnits()) << "another section";
    Settings("[IMPORTSECTION]\nIsMasterUnits=2\n");
    EXPECT_FALSE(dgnImportInMasterUnits()) << "another number";
    Settings("[IMPORTSECTION]\nIsMasterUnits=01\n");
    EXPECT_TRUE(dgnImportInMasterUnits());
}

// The library's options leave units to the settings file.
TEST_F(DgnSettingsTest, TheSettingsDecideTheUnitsOfAConversion) {
    DgnWriter::DgnV7Writer dgn(false);
    dgn.addLine(1, {0, 0}, {25000, 0});
    const auto lineEnd = [&]() {
        PwDbDatabase drawing;
        PwDbDgnConvertOptions options;
        DgnTranslation translation;
        EXPECT_EQ(dgnTranslationFromOptions(options, drawing, translation), StatusOk);
        DgnConvertReport report;
        EXPECT_EQ(dgntest::Translate(dgn, translation, drawing, report), StatusOk);
        const auto model = dgntest::Entities(drawing.modelSpaceId());
        if (model.size() != 1) return -1.0;
        PwDbObjectPointer<PwDbLine> line(model[0], PwDb::OpenForRead);
        return line->endPoint().x;
    };
    dgntest::ScopedRootFolder root(Path(""));
    EXPECT_DOUBLE_EQ(lineEnd(), 25000) << "no settings file";
    Settings("[IMPORTSECTION]\nIsMasterUnits=0\n");
    EXPECT_DOUBLE_EQ(lineEnd(), 25000);
    Settings("[IMPORTSECTION]\nIsMasterUnits=1\n");
    EXPECT_DOUBLE_EQ(lineEnd(), 2.5);
}

}  // namespace
