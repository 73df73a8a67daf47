// Finding a dependent's file: the stored path, made absolute against the host, then the bare
// name beside the host.
#include <lodeqdb/references/DependentFile.h>

#include <gtest/gtest.h>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

using Plotwright::StatusOk;

class DependentFile : public lodeqdbtest::TempFolderTest {
  protected:
    DependentFile() : TempFolderTest("lodeqdb-dependent") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/sub'").c_str()), 0);
        Write("host.plw", "host");
        Write("sibling.png", "image");
        Write("sub/child.png", "image");
        host.setFilename(Path("host.plw"));
    }

    PwDbDatabase host;
    wstring full;
};

TEST_F(DependentFile, ARelativePathWithoutAHostIsNotFoundAndStaysRelative) {
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"sub\\child.png", nullptr),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(full, u"sub\\child.png");
    PwDbDatabase unnamed;
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"sub/child.png", &unnamed),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(full, u"sub/child.png");
}

TEST_F(DependentFile, ARelativePathIsFoundAgainstTheHostsFolder) {
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"sub/child.png", &host), StatusOk);
    EXPECT_EQ(full, Path("sub/child.png"));
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"sub\\child.png", &host), StatusOk);
    EXPECT_EQ(full, Path("") + u"sub\\child.png");
}

TEST_F(DependentFile, ARootedPathThatExistsStandsUnchanged) {
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, Path("sub/child.png"), &host), StatusOk);
    EXPECT_EQ(full, Path("sub/child.png"));
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, Path("sub/child.png"), nullptr), StatusOk);
}

TEST_F(DependentFile, AMissingRootedPathFallsBackOnTheSiblingOfTheHost) {
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"C:\\images\\sibling.png", &host),
              StatusOk);
    EXPECT_EQ(full, Path("sibling.png"));
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"/nowhere/sibling.png", &host), StatusOk);
    EXPECT_EQ(full, Path("sibling.png"));
}

TEST_F(DependentFile, AMissingFileLeavesTheLastPathTried) {
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"C:\\images\\gone.png", &host),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(full, Path("gone.png"));
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"/nowhere/gone.png", nullptr),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(full, u"/nowhere/gone.png");
}

TEST_F(DependentFile, OutputAndInputMayBeOneString) {
    wstring path = u"sub/child.png";
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(path, path, &host), StatusOk);
    EXPECT_EQ(path, Path("sub/child.png"));
}

TEST_F(DependentFile, AURLIsTestedAsAnyPath) {
    EXPECT_EQ(LodeQDBUtil::FindDependentFullName(full, u"https://example.com/sibling.png", &host),
              StatusOk);
    EXPECT_EQ(full, Path("sibling.png"));
}

}  // namespace
