// Locale ids and tags.
#include <lodeqdb/lodeutil/LocaleId.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace {

TEST(LocaleId, KnownTagsAndIds) {
    EXPECT_EQ(LodeUtil::LocaleIdFromTag(u"en-US"), 1033);
    EXPECT_EQ(LodeUtil::LocaleIdFromTag(u"de-DE"), 1031);
    EXPECT_EQ(LodeUtil::LocaleIdFromTag(u"de_DE.UTF-8"), 1031);
    EXPECT_EQ(LodeUtil::LocaleIdFromTag(u"de_DE@euro"), 1031);
    EXPECT_EQ(LodeUtil::LocaleTagFromId(1033), u"en-US");
    EXPECT_EQ(LodeUtil::LocaleTagFromId(1031), u"de-DE");
    EXPECT_EQ(LodeUtil::LocaleTagFromId(3079), u"de-AT");
}

TEST(LocaleId, UnknownGivesZeroOrEmpty) {
    EXPECT_EQ(LodeUtil::LocaleIdFromTag(u""), 0);
    EXPECT_EQ(LodeUtil::LocaleIdFromTag(u"not a locale at all"), 0);
    EXPECT_EQ(LodeUtil::LocaleTagFromId(0), u"");
    EXPECT_EQ(LodeUtil::LocaleTagFromId(-5), u"");
    EXPECT_EQ(LodeUtil::LocaleTagFromId(0x7FFFFFFF), u"");
}

TEST(LocaleId, LikelyTagOfTheLanguage) {
    EXPECT_EQ(LodeUtil::LikelyTagForLanguageOf(u"de-AT"), u"de-DE");
    EXPECT_EQ(LodeUtil::LikelyTagForLanguageOf(u"en-GB"), u"en-US");
    EXPECT_EQ(LodeUtil::LikelyTagForLanguageOf(u""), u"");
}

class ProcessLocale : public testing::Test {
  protected:
    void SetUp() override {
        for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
            const char* value = std::getenv(name);
            saved_.emplace_back(name, value ? std::optional<std::string>(value) : std::nullopt);
            unsetenv(name);
        }
    }
    void TearDown() override {
        for (const auto& [name, value] : saved_) {
            if (value)
                setenv(name, value->c_str(), 1);
            else
                unsetenv(name);
        }
    }
    std::vector<std::pair<const char*, std::optional<std::string>>> saved_;
};

TEST_F(ProcessLocale, ComesFromTheEnvironmentInOrder) {
    setenv("LANG", "de_DE.UTF-8", 1);
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 1031);
    setenv("LC_MESSAGES", "fr_FR.UTF-8", 1);
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 1036);
    setenv("LC_ALL", "en_GB.UTF-8", 1);
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 2057);
}

TEST_F(ProcessLocale, NeutralOrMissingIsEnglish) {
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 1033);
    setenv("LANG", "C.UTF-8", 1);
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 1033);
    setenv("LANG", "POSIX", 1);
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 1033);
    setenv("LANG", "gibberish", 1);
    EXPECT_EQ(LodeUtil::ProcessLocaleId(), 1033);
}

}  // namespace
