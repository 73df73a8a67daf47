// Finding the files a drawing refers to: beside the holder, under its root, through the hook.
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>

#include <gtest/gtest.h>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "support/TempFolderTest.h"

namespace {

using Plotwright::StatusOk;
using FindFileHint = PwDbHostApplicationServices::FindFileHint;

constexpr FindFileHint kXref = PwDbHostApplicationServices::kXrefDrawing;

class DependentFiles : public lodeqdbtest::TempFolderTest {
  protected:
    DependentFiles() : TempFolderTest("pwdb-dependents") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_EQ(system(("mkdir -p '" + folder + "/sub' '" + folder + "/lib'").c_str()), 0);
        Write("host.plw", "host");
        Write("sub/child.plw", "child");
        Write("sibling.plw", "sibling");
        host.setFilename(Path("host.plw"));
    }

    PwDbDatabase host;
    wstring found;
};

// A host that finds files in one folder of its own, and remembers what it was asked.
class HookedServices : public PwDbHostApplicationServices {
  public:
    Plotwright::ErrorStatus findFile(wstring& result, const char16_t* name, PwDbDatabase*,
                                     FindFileHint hint) override {
        askedFor = name;
        askedHint = hint;
        if (answer.empty()) return Plotwright::StatusFileNotFound;
        result = answer;
        return StatusOk;
    }
    wstring answer;
    wstring askedFor;
    FindFileHint askedHint = kDefault;
};

class InstalledServices {
  public:
    explicit InstalledServices(PwDbHostApplicationServices* services)
        : previous_(pwdbSetHostApplicationServices(services)) {}
    ~InstalledServices() { pwdbSetHostApplicationServices(previous_); }

  private:
    PwDbHostApplicationServices* previous_;
};

TEST_F(DependentFiles, RelativePathsWithEitherSeparatorAreFoundBesideTheHolder) {
    EXPECT_EQ(pwdbFindDependentFile(found, u"sub/child.plw", &host, kXref), StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
    EXPECT_EQ(pwdbFindDependentFile(found, u"sub\\child.plw", &host, kXref), StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
    EXPECT_EQ(pwdbFindDependentFile(found, u"lib\\..\\sub\\.\\child.plw", &host, kXref), StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
}

TEST_F(DependentFiles, ARootedPathStandsAsItIs) {
    EXPECT_EQ(pwdbFindDependentFile(found, Path("sub/child.plw"), nullptr, kXref), StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
}

TEST_F(DependentFiles, APathRootedAtOneBackslashGoesUnderTheHoldersRoot) {
    wstring rootRelative = Path("sub/child.plw");
    for (char16_t& unit : rootRelative)
        if (unit == u'/') unit = u'\\';
    EXPECT_EQ(pwdbFindDependentFile(found, rootRelative, &host, kXref), StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
}

TEST_F(DependentFiles, TheBareNameIsTriedBesideTheHolder) {
    EXPECT_EQ(pwdbFindDependentFile(found, u"C:\\elsewhere\\sibling.plw", &host, kXref), StatusOk);
    EXPECT_EQ(found, Path("sibling.plw"));
    EXPECT_EQ(pwdbFindDependentFile(found, u"gone/sibling.plw", &host, kXref), StatusOk);
    EXPECT_EQ(found, Path("sibling.plw"));
}

TEST_F(DependentFiles, WithoutAHolderPathARelativeNameIsNotFound) {
    PwDbDatabase unnamed;
    EXPECT_EQ(pwdbFindDependentFile(found, u"sub/child.plw", &unnamed, kXref),
              Plotwright::StatusFileNotFound);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(pwdbFindDependentFile(found, u"sub/child.plw", nullptr, kXref),
              Plotwright::StatusFileNotFound);
}

TEST_F(DependentFiles, AMissingFileAndAFolderAreNotFound) {
    EXPECT_EQ(pwdbFindDependentFile(found, u"missing.plw", &host, kXref),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(pwdbFindDependentFile(found, u"sub", &host, kXref), Plotwright::StatusFileNotFound);
    EXPECT_EQ(pwdbFindDependentFile(found, u"", &host, kXref), Plotwright::StatusInvalidInput);
}

TEST_F(DependentFiles, TheHookIsAskedLastWithTheStoredNameAndTheHint) {
    HookedServices services;
    InstalledServices installed(&services);
    services.answer = Path("sibling.plw");
    EXPECT_EQ(pwdbFindDependentFile(found, u"sub/child.plw", &host,
                                    PwDbHostApplicationServices::kRasterImage),
              StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
    EXPECT_TRUE(services.askedFor.empty());
    EXPECT_EQ(pwdbFindDependentFile(found, u"nowhere/else.plw", &host,
                                    PwDbHostApplicationServices::kUnderlay),
              StatusOk);
    EXPECT_EQ(found, Path("sibling.plw"));
    EXPECT_EQ(services.askedFor, u"nowhere/else.plw");
    EXPECT_EQ(services.askedHint, PwDbHostApplicationServices::kUnderlay);
}

TEST_F(DependentFiles, AURLGoesOnlyToTheHook) {
    Write("child.plw", "a file named like the URL's last part");
    EXPECT_EQ(pwdbFindDependentFile(found, u"https://example.com/child.plw", &host, kXref),
              Plotwright::StatusFileNotFound);
    HookedServices services;
    InstalledServices installed(&services);
    services.answer = Path("sub/child.plw");
    EXPECT_EQ(pwdbFindDependentFile(found, u"https://example.com/child.plw", &host, kXref),
              StatusOk);
    EXPECT_EQ(found, Path("sub/child.plw"));
}

TEST_F(DependentFiles, AHookAnswerThatIsNoFileIsRefused) {
    HookedServices services;
    InstalledServices installed(&services);
    services.answer = Path("not-there.plw");
    EXPECT_EQ(pwdbFindDependentFile(found, u"x.plw", &host, kXref), Plotwright::StatusFileNotFound);
    EXPECT_TRUE(found.empty());
}

}  // namespace
