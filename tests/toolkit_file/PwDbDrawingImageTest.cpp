// Version signatures, GUID texts and the creator's property set.
#include "toolkit/file/PwDbDrawingImage.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(PwDbDrawingImage, SignatureFollowsTheVersion) {
    const std::pair<int, const char*> expected[] = {
        {33, "PW1032"}, {32, "PW1032"}, {31, "PW1027"}, {30, "PW1027"}, {29, "PW1024"},
        {28, "PW1024"}, {27, "PW1021"}, {26, "PW1021"}, {25, "PW1018"}, {24, "PW1018"},
        {23, "PW1015"}, {22, "PW1015"}, {21, "PW1014"}, {20, "PW1012"}, {16, "PW1012"}};
    for (const auto& [version, signature] : expected) {
        ASSERT_NE(pwdbSignatureForVersion(version), nullptr) << version;
        EXPECT_EQ(std::string(pwdbSignatureForVersion(version)), signature) << version;
    }
    EXPECT_EQ(pwdbSignatureForVersion(15), nullptr);
    EXPECT_EQ(pwdbSignatureForVersion(34), nullptr);
    EXPECT_EQ(pwdbSignatureForVersion(-1), nullptr);
}

TEST(PwDbDrawingImage, GuidTextRoundTrips) {
    EXPECT_EQ(pwdbGuidText(kPwDbOwnerGuidKey), u"{E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}");
    EXPECT_EQ(pwdbGuidText(kPwDbSummaryFormatId), u"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}");
    EXPECT_EQ(kPwDbOwnerGuidKey[0], 0x5E) << "the first field is little-endian";
    EXPECT_EQ(kPwDbOwnerGuidKey[8], 0xBC) << "the last eight bytes stand in order";
    PwDbGuidBytes parsed{};
    ASSERT_TRUE(pwdbParseGuidText(u"{e006715e-1eb4-4ae0-bc05-4bc5efddb41e}", parsed));
    EXPECT_EQ(parsed, kPwDbOwnerGuidKey);
    EXPECT_FALSE(pwdbParseGuidText(u"{E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E", parsed));
    EXPECT_FALSE(pwdbParseGuidText(u"", parsed));
    EXPECT_FALSE(pwdbParseGuidText(u"{G006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}", parsed));
}

TEST(PwDbDrawingImage, CreatorPropertySetHasTheExactMarkUp) {
    EXPECT_EQ(pwdbCreatorPropertySet(u"LodeQDB"),
              u"<prop_set fmt_id=\"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}\">"
              u"<prop id=\"258\"><string>LodeQDB</string></prop></prop_set>");
}

}  // namespace
