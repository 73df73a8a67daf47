// Property sets and GUID texts, read by exact substrings.
#include <lodeqdb/identification/PropertySet.h>

#include <gtest/gtest.h>

namespace {

using LodeQDBUtil::Guid;
using LodeQDBUtil::PropertyKey;
using LodeQDBUtil::PropertyValue;

const Guid kSummary = {
    0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};
const wstring kHead = u"<prop_set fmt_id=\"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}\">";

PropertyKey Number(uint32_t number) {
    PropertyKey key;
    key.SetNumber(number);
    return key;
}

PropertyKey Name(const wstring& name) {
    PropertyKey key;
    key.SetText(name);
    return key;
}

bool Parse(const wstring& text, PropertyValue& value) {
    return LodeQDBUtil::ParsePropertyValue(text, value);
}

TEST(GuidText, ElevenNumbersMakeAGuid) {
    Guid guid;
    ASSERT_TRUE(LodeQDBUtil::ParseGuidText(u"{E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E}", guid));
    EXPECT_TRUE(guid == LodeQDBUtil::kOwnerGuidKey);
    Guid lower;
    ASSERT_TRUE(LodeQDBUtil::ParseGuidText(u"{e006715e-1eb4-4ae0-bc05-4bc5efddb41e}", lower));
    EXPECT_TRUE(lower == guid);
}

TEST(GuidText, AMissingClosingBraceIsNotNoticed) {
    Guid guid;
    EXPECT_TRUE(LodeQDBUtil::ParseGuidText(u"{E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E", guid));
    EXPECT_TRUE(guid == LodeQDBUtil::kOwnerGuidKey);
}

TEST(GuidText, ATextWithFewerNumbersLeavesTheGuid) {
    Guid guid = kSummary;
    EXPECT_FALSE(LodeQDBUtil::ParseGuidText(u"{E006715E-1EB4-4AE0-BC05-4BC5EFDDB4}", guid));
    EXPECT_FALSE(LodeQDBUtil::ParseGuidText(u"E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E", guid));
    EXPECT_FALSE(LodeQDBUtil::ParseGuidText(u"", guid));
    EXPECT_FALSE(
        LodeQDBUtil::ParseGuidText(u"{E006715E-1EB4-4AE0-BC05-4BC5EFDD\u00e9\u00e9}", guid));
    EXPECT_TRUE(guid == kSummary);
}

TEST(PropertySet, TheNumericKey258GivesItsText) {
    PropertyValue value;
    const wstring set = kHead + u"<prop id=\"258\"><string>abc</string></prop></prop_set>";
    ASSERT_TRUE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Number(258), value));
    EXPECT_EQ(value.GetTag(), PropertyValue::ValueText);
    EXPECT_EQ(value.Text(), u"abc");
}

TEST(PropertySet, ANamedKeyIsFound) {
    PropertyValue value;
    const wstring set = kHead + u"<prop id_str=\"Creator\"><int>0x10</int></prop>";
    ASSERT_TRUE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Name(u"Creator"), value));
    EXPECT_EQ(value.GetTag(), PropertyValue::ValueInt);
    EXPECT_EQ(value.Int(), 16);
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Name(u"creator"), value));
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Name(u""), value));
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, PropertyKey(), value));
}

TEST(PropertySet, WhiteSpaceBeforeTheValueIsRefused) {
    PropertyValue value;
    const wstring set = kHead + u"<prop id=\"258\"> <string>abc</string></prop>";
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Number(258), value));
    EXPECT_EQ(value.GetTag(), PropertyValue::ValueEmpty);
}

TEST(PropertySet, AnotherFormatIdIsRefusedEvenWithTheProperty) {
    PropertyValue value;
    const wstring set =
        u"<prop_set fmt_id=\"{F29F85E0-4FF9-1068-AB91-08002B27B3D8}\">"
        u"<prop id=\"258\"><string>abc</string></prop>";
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Number(258), value));
    EXPECT_FALSE(
        LodeQDBUtil::ReadPropertySetProperty(kSummary, u"<prop id=\"258\">", Number(258), value));
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, u"short", Number(258), value));
}

TEST(PropertySet, TheSecondPropertyIsFoundThoughItsEndIsTheFirstOnes) {
    PropertyValue value;
    const wstring set = kHead + u"<prop id=\"2\"><string>title</string></prop>" +
                        u"<prop id=\"258\"><string>maker</string></prop></prop_set>";
    ASSERT_TRUE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Number(258), value));
    EXPECT_EQ(value.Text(), u"maker");
}

TEST(PropertySet, ANumberAboveTheSignedRangeIsRefused) {
    PropertyValue value;
    const wstring set = kHead + u"<prop id=\"-2147483648\"><string>x</string></prop>";
    EXPECT_FALSE(LodeQDBUtil::ReadPropertySetProperty(kSummary, set, Number(0x80000000), value));
    EXPECT_TRUE(LodeQDBUtil::ReadPropertySetProperty(
        kSummary, kHead + u"<prop id=\"2147483647\"><uint>7</uint></prop>", Number(0x7FFFFFFF),
        value));
}

TEST(PropertyValues, StringsKeepTheirTextAsItStands) {
    PropertyValue value;
    ASSERT_TRUE(Parse(u"<string></string>", value));
    EXPECT_EQ(value.Text(), u"");
    ASSERT_TRUE(Parse(u"<string>a &amp; b</string>", value));
    EXPECT_EQ(value.Text(), u"a &amp; b");
}

TEST(PropertyValues, BooleansAreTrueOnlyForExactlyTrue) {
    PropertyValue value;
    ASSERT_TRUE(Parse(u"<boolval>true</boolval>", value));
    EXPECT_TRUE(value.Bool());
    ASSERT_TRUE(Parse(u"<boolval>True</boolval>", value));
    EXPECT_FALSE(value.Bool());
    ASSERT_TRUE(Parse(u"<boolval>truex</boolval>", value));
    EXPECT_FALSE(value.Bool());
}

TEST(PropertyValues, NumbersThatDontScanAreZero) {
    PropertyValue value;
    ASSERT_TRUE(Parse(u"<double>2.5</double>", value));
    EXPECT_EQ(value.Double(), 2.5);
    ASSERT_TRUE(Parse(u"<double>abc</double>", value));
    EXPECT_EQ(value.GetTag(), PropertyValue::ValueDouble);
    EXPECT_EQ(value.Double(), 0.0);
    ASSERT_TRUE(Parse(u"<int>010</int>", value));
    EXPECT_EQ(value.Int(), 8);
    ASSERT_TRUE(Parse(u"<int>-5</int>", value));
    EXPECT_EQ(value.Int(), -5);
    ASSERT_TRUE(Parse(u"<uint>4000000000</uint>", value));
    EXPECT_EQ(value.UInt(), 4000000000u);
    ASSERT_TRUE(Parse(u"<uint>x</uint>", value));
    EXPECT_EQ(value.UInt(), 0u);
}

TEST(PropertyValues, UnknownAndMalformedElementsAreRefused) {
    PropertyValue value;
    value.SetInt(3);
    EXPECT_FALSE(Parse(u"<strval>x</strval>", value));
    EXPECT_FALSE(Parse(u" <string>x</string>", value));
    EXPECT_FALSE(Parse(u"<string>x", value));
    EXPECT_FALSE(Parse(u"<string", value));
    EXPECT_FALSE(Parse(u"", value));
    EXPECT_FALSE(Parse(u"<String>x</String>", value));
    EXPECT_EQ(value.Int(), 3);
}

TEST(PropertyValues, DatesAreCheckedFieldByField) {
    PropertyValue value;
    EXPECT_TRUE(Parse(u"<datetime>2024-05-17T10:20:30</datetime>", value));
    EXPECT_EQ(value.GetTag(), PropertyValue::ValueTime);
    EXPECT_TRUE(Parse(u"<datetime>2024-05-00T10:20:30</datetime>", value));
    value.SetInt(1);
    EXPECT_FALSE(Parse(u"<datetime>2024-13-17T10:20:30</datetime>", value));
    EXPECT_FALSE(Parse(u"<datetime>1899-05-17T10:20:30</datetime>", value));
    EXPECT_FALSE(Parse(u"<datetime>2024-05-32T10:20:30</datetime>", value));
    EXPECT_FALSE(Parse(u"<datetime>2024-05-17T24:20:30</datetime>", value));
    EXPECT_FALSE(Parse(u"<datetime>2024-05-17T10:60:30</datetime>", value));
    EXPECT_FALSE(Parse(u"<datetime>2024-05-17T10:20:-1</datetime>", value));
    EXPECT_FALSE(Parse(u"<datetime>2024-05-17</datetime>", value));
    EXPECT_EQ(value.GetTag(), PropertyValue::ValueInt);
}

TEST(PropertyValues, TheDateGoesToTheClockUnreduced) {
    // Year and month as written: 2024 and 5 stand for the year 3924 and June to mktime.
    PropertyValue value;
    ASSERT_TRUE(Parse(u"<datetime>2024-05-17T10:20:30</datetime>", value));
    std::tm expected{};
    expected.tm_year = 2024;
    expected.tm_mon = 5;
    expected.tm_mday = 17;
    expected.tm_hour = 10;
    expected.tm_min = 20;
    expected.tm_sec = 30;
    expected.tm_isdst = -1;
    EXPECT_EQ(value.Time(), static_cast<int64_t>(std::mktime(&expected)));
    EXPECT_GT(value.Time(), int64_t{60} * 60 * 24 * 365 * 1900);
}

TEST(PropertyKeysAndValues, AccessorsOfTheWrongKindEndTheProcess) {
    EXPECT_DEATH(Number(1).Text(), "");
    EXPECT_DEATH(Name(u"x").Number(), "");
    PropertyValue value;
    value.SetInt(1);
    EXPECT_DEATH(value.Text(), "");
}

TEST(AppInfoProperties, TheCreatorAndTheOwnerAreReadFromTheMap) {
    LodeQDBUtil::AppInfoMap entries;
    entries[kSummary] = kHead + u"<prop id=\"258\"><string>Maker</string></prop>";
    entries[LodeQDBUtil::kOwnerGuidKey] = u"{6B1F3C2A-9D4E-4F7B-8A1C-2E5D7F9B0C31}";
    PropertyValue value;
    ASSERT_TRUE(LodeQDBUtil::GetAppInfoProperty(entries, kSummary, Number(258), value));
    EXPECT_EQ(value.Text(), u"Maker");
    EXPECT_FALSE(
        LodeQDBUtil::GetAppInfoProperty(entries, LodeQDBUtil::kOwnerGuidKey, Number(258), value));
    Guid owner;
    ASSERT_TRUE(LodeQDBUtil::GetOwnerGuid(entries, owner));
    EXPECT_EQ(owner.data1, 0x6B1F3C2Au);
    entries[LodeQDBUtil::kOwnerGuidKey] = u"";
    EXPECT_FALSE(LodeQDBUtil::GetOwnerGuid(entries, owner));
    entries.clear();
    EXPECT_FALSE(LodeQDBUtil::GetOwnerGuid(entries, owner));
    EXPECT_FALSE(LodeQDBUtil::GetAppInfoProperty(entries, kSummary, Number(258), value));
}

}  // namespace
