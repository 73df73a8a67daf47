// The toolkit's locale value.
#include <lodeqdb/toolkit/pal/PwLocale.h>

#include <gtest/gtest.h>

namespace {

TEST(PwLocale, ConvertsToItsNumericId) {
    const PwLocale german = PwLocale::fromTag(u"de-DE");
    const int id = german;
    EXPECT_EQ(id, 1031);
    EXPECT_EQ(german.tag(), u"de-DE");
    EXPECT_TRUE(german.isValid());
}

TEST(PwLocale, UnknownTagIsInvalid) {
    const PwLocale unknown = PwLocale::fromTag(u"xx-not-a-tag");
    EXPECT_FALSE(unknown.isValid());
    EXPECT_EQ(unknown.tag(), u"");
    EXPECT_FALSE(PwLocale(0).isValid());
}

TEST(PwLocale, DefaultIsAValidLocale) {
    EXPECT_TRUE(PwLocale().isValid());
}

}  // namespace
