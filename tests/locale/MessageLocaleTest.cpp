// Message texts in the product locale, each test in a fresh process (see CMakeLists.txt).
#include <gtest/gtest.h>

#include <cstdlib>
#include <thread>
#include <vector>

#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/MessageTexts.h>
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>

namespace {

const wstring kPath = u"/srv/drawings/Grundriss ä.plw";

void ChooseProductLocale(const char16_t* tag) {
    auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
    ASSERT_NE(linker, nullptr);
    linker->setProductLocale(PwLocale::fromTag(tag));
}

bool Contains(const wstring& text, const wstring& part) {
    return text.find(part) != wstring::npos;
}

TEST(MessageLocale, ReadErrorIsEnglishUnderEnUs) {
    ChooseProductLocale(u"en-US");
    const lode::ReadError error(kPath);
    EXPECT_TRUE(Contains(error.message(), kPath));
    EXPECT_TRUE(Contains(error.message(), u"could not be read"));
}

TEST(MessageLocale, ReadErrorIsGermanUnderDeDe) {
    ChooseProductLocale(u"de-DE");
    const lode::ReadError error(kPath);
    EXPECT_TRUE(Contains(error.message(), kPath));
    EXPECT_TRUE(Contains(error.message(), u"konnte nicht gelesen werden"));
}

TEST(MessageLocale, EveryFileErrorTextHoldsThePathInGerman) {
    ChooseProductLocale(u"de-DE");
    for (int status : {76, 314, 1001, 7}) {
        try {
            LodeQDBUtil::ThrowLodeExceptionOnFile(static_cast<Plotwright::ErrorStatus>(status),
                                                  kPath);
            ADD_FAILURE() << "no exception for status " << status;
        } catch (const lode::FileError& error) {
            EXPECT_TRUE(Contains(error.message(), kPath)) << status;
            EXPECT_TRUE(Contains(error.message(), u"Die Datei")) << status;
        }
    }
}

TEST(MessageLocale, RegionalVariantFallsBackToTheLanguage) {
    ChooseProductLocale(u"de-AT");
    EXPECT_TRUE(Contains(lode::NotFound(kPath).message(), u"wurde nicht gefunden"));
}

TEST(MessageLocale, LocaleWithoutTextsFallsBackToEnglish) {
    ChooseProductLocale(u"ja-JP");
    EXPECT_TRUE(Contains(lode::NotFound(kPath).message(), u"was not found"));
}

TEST(MessageLocale, TextsKeepTheLanguageOfTheirFirstLoad) {
    ChooseProductLocale(u"de-DE");
    EXPECT_EQ(LodeQDBUtil::LoadMessageText(LodeQDBUtil::RevisionTableTitleText), u"ÄNDERUNGEN");
    ChooseProductLocale(u"en-US");
    EXPECT_EQ(LodeQDBUtil::LoadMessageText(LodeQDBUtil::RevisionTableTitleText), u"ÄNDERUNGEN");
}

TEST(MessageLocale, SuccessTouchesNoResourceModule) {
    ASSERT_EQ(LodeQDBUtil::ResourceModule::Instance().Held(), nullptr);
    LodeQDBUtil::ThrowLodeExceptionOnFile(Plotwright::StatusOk, kPath);
    EXPECT_EQ(LodeQDBUtil::ResourceModule::Instance().Held(), nullptr);
    (void)lode::NotFound(kPath);
    EXPECT_NE(LodeQDBUtil::ResourceModule::Instance().Held(), nullptr);
}

TEST(MessageLocale, FollowsProcessEnvironment) {
    const char* expected = std::getenv("EXPECTED_MESSAGE_LOCALE");
    const std::string locale = expected ? expected : "en-US";
    const wstring text = lode::ReadError(kPath).message();
    EXPECT_TRUE(Contains(text, kPath));
    if (locale == "de-DE") {
        EXPECT_TRUE(Contains(text, u"konnte nicht gelesen werden"));
    } else {
        EXPECT_TRUE(Contains(text, u"could not be read"));
    }
}

}  // namespace

namespace {

TEST(MessageLocale, ThreadsLoadingTheFirstTextAtOnceAgree) {
    ChooseProductLocale(u"de-DE");
    constexpr int kThreads = 8;
    std::vector<wstring> titles(kThreads);
    std::vector<std::thread> threads;
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back([&titles, i] {
            titles[static_cast<size_t>(i)] =
                LodeQDBUtil::LoadMessageText(LodeQDBUtil::RevisionTableTitleText);
        });
    }
    for (std::thread& thread : threads) thread.join();
    for (const wstring& title : titles) EXPECT_EQ(title, u"ÄNDERUNGEN");
    EXPECT_NE(LodeQDBUtil::ResourceModule::Instance().Held(), nullptr);
}

}  // namespace
