// Modules and the resource modules of message texts, on the modules this build made.
#include <lodeqdb/lodeutil/Resources.h>

#include <gtest/gtest.h>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace {

// The build's lib/ folder: the libraries with one folder of texts per locale.
const wstring kLibDir = LodeUtil::Utf16FromUtf8(LODEQDB_TEST_LIB_DIR);

class LoadedModule {
  public:
    explicit LoadedModule(const wstring& path) : m_handle(LodeUtil::Module::Load(path)) {}
    ~LoadedModule() {
        if (m_handle) LodeUtil::Module::Free(m_handle);
    }
    LodeUtil::ModuleHandle get() const { return m_handle; }

  private:
    LodeUtil::ModuleHandle m_handle;
};

TEST(Module, LoadsFindsSymbolsAndKnowsItsFile) {
    const wstring path = kLibDir + u"/en-US/LodeQDBRes.qrs";
    LoadedModule module(path);
    ASSERT_NE(module.get(), nullptr) << LodeUtil::Utf8FromUtf16(LodeUtil::Module::LastError());
    EXPECT_NE(LodeUtil::Module::Symbol(module.get(), LodeUtil::kMessageTextSymbol), nullptr);
    EXPECT_EQ(LodeUtil::Module::Symbol(module.get(), "noSuchSymbol"), nullptr);
    EXPECT_EQ(LodeUtil::Module::FileName(module.get()), path);
}

TEST(Module, BackslashesCountAsSeparators) {
    LoadedModule module(kLibDir + u"\\en-US\\LodeQDBRes.qrs");
    EXPECT_NE(module.get(), nullptr);
}

TEST(Module, FailuresGiveNullNotCrashes) {
    EXPECT_EQ(LodeUtil::Module::Load(u"/no/such/module.qrs"), nullptr);
    EXPECT_FALSE(LodeUtil::Module::LastError().empty());
    EXPECT_EQ(LodeUtil::Module::Load(u""), nullptr);
    EXPECT_EQ(LodeUtil::Module::Load(u"C:\\Windows\\x.dll"), nullptr);
    EXPECT_FALSE(LodeUtil::Module::Free(nullptr));
    EXPECT_EQ(LodeUtil::Module::Symbol(nullptr, "x"), nullptr);
    EXPECT_EQ(LodeUtil::Module::FileName(nullptr), u"");
    EXPECT_EQ(LodeUtil::Module::Containing(nullptr), nullptr);
}

TEST(Module, ContainingFindsTheUtilityLibrary) {
    LodeUtil::ModuleHandle utility =
        LodeUtil::Module::Containing(reinterpret_cast<const void*>(&LodeUtil::LoadStrW));
    ASSERT_NE(utility, nullptr);
    const wstring file = LodeUtil::Module::FileName(utility);
    EXPECT_NE(file.find(u"liblode_util.so"), wstring::npos);
}

TEST(Resources, LoadStrWReadsTheTable) {
    LoadedModule english(kLibDir + u"/en-US/LodeQDBRes.qrs");
    LoadedModule german(kLibDir + u"/de-DE/LodeQDBRes.qrs");
    EXPECT_EQ(LodeUtil::LoadStrW(english.get(), 102), u"The file \"%1\" was not found.");
    EXPECT_EQ(LodeUtil::LoadStrW(german.get(), 105), u"ÄNDERUNGEN");
    EXPECT_EQ(LodeUtil::LoadStrW(german.get(), 9999), u"");
    EXPECT_EQ(LodeUtil::LoadStrW(nullptr, 101), u"");
}

TEST(Resources, EveryLocaleHoldsEveryText) {
    for (const char16_t* locale : {u"en-US", u"de-DE"}) {
        LoadedModule module(kLibDir + u"/" + locale + u"/LodeQDBRes.qrs");
        ASSERT_NE(module.get(), nullptr);
        for (unsigned number : {101u, 102u, 103u, 104u, 105u}) {
            const wstring text = LodeUtil::LoadStrW(module.get(), number);
            EXPECT_FALSE(text.empty()) << number;
            if (number <= 104) {
                EXPECT_NE(text.find(u"%1"), wstring::npos) << number;
            }
        }
    }
}

TEST(Resources, ModuleWithoutTableGivesNoText) {
    LodeUtil::ModuleHandle utility =
        LodeUtil::Module::Containing(reinterpret_cast<const void*>(&LodeUtil::LoadStrW));
    EXPECT_EQ(LodeUtil::LoadStrW(utility, 101), u"");
}

TEST(Resources, ResourceNameFollowsTheModule) {
    LodeUtil::ModuleHandle utility =
        LodeUtil::Module::Containing(reinterpret_cast<const void*>(&LodeUtil::LoadStrW));
    EXPECT_EQ(LodeUtil::GetResDLLName(utility, true), u"lode_utilRes.qrs");
    // The loader may know the library by a path with ".." in it (the test program's run
    // path), so compare the resolved forms.
    EXPECT_TRUE(LodeUtil::AbsoluteFilePath(LodeUtil::GetResDLLName(utility, false)) ==
                kLibDir + u"/lode_utilRes.qrs");
    EXPECT_EQ(LodeUtil::GetResDLLName(nullptr, false), u"");
}

TEST(Resources, LocaleFolderGoesBeforeTheFileName) {
    const wstring name = kLibDir + u"/LodeQDBRes.qrs";
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(name, 1031),
              kLibDir + u"/de-DE/LodeQDBRes.qrs");
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(name, 1033),
              kLibDir + u"/en-US/LodeQDBRes.qrs");
}

TEST(Resources, MissingLocaleFallsBackToLanguageThenEnglish) {
    const wstring name = kLibDir + u"/LodeQDBRes.qrs";
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(name, 3079),  // de-AT
              kLibDir + u"/de-DE/LodeQDBRes.qrs");
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(name, 1041),  // ja-JP
              kLibDir + u"/en-US/LodeQDBRes.qrs");
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(name, 0), kLibDir + u"/en-US/LodeQDBRes.qrs");
}

TEST(Resources, NothingFoundGivesTheAskedLocalesPath) {
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(u"/nowhere/X.qrs", 1031),
              u"/nowhere/de-DE/X.qrs");
    EXPECT_EQ(LodeUtil::AddLocaleFolderToResDLLPath(u"C:\\app\\X.qrs", 1031),
              u"C:\\app\\de-DE\\X.qrs");
}

}  // namespace
