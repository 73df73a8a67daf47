// Section-and-key files written as the host system's profile writer writes them.
#include <lodeqdb/lodeutil/ProfileFile.h>

#include <gtest/gtest.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>

namespace {

using LodeUtil::Profile::WriteString;

class ProfileFileTest : public testing::Test {
  protected:
    void SetUp() override {
        char pattern[] = "/tmp/profile-XXXXXX";
        ASSERT_NE(::mkdtemp(pattern), nullptr);
        folder = pattern;
    }
    void TearDown() override { std::filesystem::remove_all(folder); }

    wstring Path(const std::string& name) const {
        return LodeUtil::Utf16FromUtf8(folder + "/" + name);
    }
    void Write(const std::string& name, const std::string& content) const {
        std::ofstream(folder + "/" + name, std::ios::binary) << content;
    }
    std::string Read(const std::string& name) const {
        std::ifstream in(folder + "/" + name, std::ios::binary);
        return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }

    std::string folder;
};

TEST_F(ProfileFileTest, ANewFileGetsTheSectionAndTheKey) {
    ASSERT_TRUE(WriteString(u"IMPORTSECTION", u"IsMasterUnits", u"1", Path("a.ini")));
    EXPECT_EQ(Read("a.ini"), "[IMPORTSECTION]\nIsMasterUnits=1\n");
}

TEST_F(ProfileFileTest, AKeyOfTheSectionIsReplacedWithoutRegardToCase) {
    Write("a.ini",
          "; kept\r\n[ImportSection]\r\nismasterunits = 0\r\nOther=x\r\n[Next]\r\nK=v\r\n");
    ASSERT_TRUE(WriteString(u"IMPORTSECTION", u"IsMasterUnits", u"1", Path("a.ini")));
    EXPECT_EQ(Read("a.ini"),
              "; kept\r\n[ImportSection]\r\nIsMasterUnits=1\nOther=x\r\n[Next]\r\nK=v\r\n");
}

TEST_F(ProfileFileTest, ANewKeyGoesAfterTheSectionsLastLine) {
    Write("a.ini", "[A]\nx=1\n\n[B]\ny=2");
    ASSERT_TRUE(WriteString(u"a", u"z", u"3", Path("a.ini")));
    EXPECT_EQ(Read("a.ini"), "[A]\nx=1\nz=3\n\n[B]\ny=2");
    ASSERT_TRUE(WriteString(u"B", u"w", u"4", Path("a.ini")));
    EXPECT_EQ(Read("a.ini"), "[A]\nx=1\nz=3\n\n[B]\ny=2\nw=4\n");
}

TEST_F(ProfileFileTest, AMissingSectionIsAppended) {
    Write("a.ini", "[A]\nx=1");
    ASSERT_TRUE(WriteString(u"B", u"k", u"ü", Path("a.ini")));
    EXPECT_EQ(Read("a.ini"), "[A]\nx=1\n[B]\nk=\xC3\xBC\n");
}

TEST_F(ProfileFileTest, BackslashesSeparateFolders) {
    ASSERT_EQ(::mkdir((folder + "/Support").c_str(), 0777), 0);
    ASSERT_TRUE(
        WriteString(u"S", u"k", u"v", LodeUtil::Utf16FromUtf8(folder) + u"\\Support\\x.ini"));
    EXPECT_EQ(Read("Support/x.ini"), "[S]\nk=v\n");
}

TEST_F(ProfileFileTest, RefusalsLeaveTheFileAsItWas) {
    Write("a.ini", "[A]\nx=1\n");
    EXPECT_FALSE(WriteString(u"", u"k", u"v", Path("a.ini")));
    EXPECT_FALSE(WriteString(u"A", u"", u"v", Path("a.ini")));
    EXPECT_FALSE(WriteString(u"A", u"k=j", u"v", Path("a.ini")));
    EXPECT_FALSE(WriteString(u"A]", u"k", u"v", Path("a.ini")));
    EXPECT_FALSE(WriteString(u"A", u"k", u"two\nlines", Path("a.ini")));
    EXPECT_EQ(Read("a.ini"), "[A]\nx=1\n");
    EXPECT_FALSE(WriteString(u"A", u"k", u"v", Path("no-folder/a.ini")));
    EXPECT_FALSE(WriteString(u"A", u"k", u"v", u"C:\\host\\a.ini")) << "no drives here";
}

}  // namespace
