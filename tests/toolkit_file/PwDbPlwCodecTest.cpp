// The native file codec: round trips, the byte layout of its header and application
// information, what encoding refuses, previews, and a large drawing.
#include "toolkit/file/PwDbPlwCodec.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "PwDbImageTestSupport.h"

namespace {

using Item = PwDbMemoryFiler::Item;
using pwdbfiletest::ExpectSameImage;
using pwdbfiletest::Le;
using pwdbfiletest::Record;
using pwdbfiletest::TestCrc;

PwDbDrawingImage SampleImage(int32_t version, bool withPreview) {
    PwDbDrawingImage image;
    image.version = version;
    image.handseed = 0x123456789ABull;
    image.measurement = PwDb::Imperial;
    image.roots = {0x10, 0x11, 0x12, 0x13, 0x14, 0x15, 0x16, 0x17, 0xFFFFFFFFFFFFFFFFull};
    image.appInfo = {{kPwDbOwnerGuidKey, pwdbGuidText(kPwDbSummaryFormatId)},
                     {kPwDbSummaryFormatId, pwdbCreatorPropertySet(u"Tester \u00e9\u2713")},
                     {PwDbGuidBytes{1, 2, 3}, u""}};
    if (withPreview) image.preview = PwDbPreviewImage{3, 2, {1, 2, 3, 0xFF00FF00, 0, 0xFFFFFFFF}};
    const std::vector<wstring> circle = {u"PwDbCircle", u"PwDbCurve", u"PwDbEntity", u"PwDbObject"};
    image.objects.push_back(Record({u"PwDbObject"}, 1, {}));
    image.objects.push_back(Record(
        circle, 0x2A,
        {Item(std::in_place_type<wstring>, u"layer \U0001F600 \u00fc"), Item(int32_t{-7}),
         Item(int64_t{std::numeric_limits<int64_t>::min()}), Item(-0.0),
         Item(std::numeric_limits<double>::infinity()), Item(1.0 / 3.0), Item(true), Item(false),
         Item(std::in_place_type<std::string>, std::string("\0\xFF\x01z", 4)),
         Item(PwDbMemoryFiler::Handle{0xFFFFFFFFFFFFFFFFull}),
         Item(std::in_place_type<wstring>, u""), Item(std::in_place_type<std::string>, "")}));
    image.objects.push_back(Record({u"OtherAppThing", u"PwDbObject"}, 0x2B,
                                   {Item(std::numeric_limits<double>::quiet_NaN())}));
    return image;
}

TEST(PwDbPlwCodec, EveryVersionRoundTrips) {
    for (int32_t version = kPwDbOldestVersion; version <= kPwDbNewestVersion; ++version) {
        SCOPED_TRACE(version);
        for (bool withPreview : {false, true}) {
            const PwDbDrawingImage image = SampleImage(version, withPreview);
            std::string bytes;
            ASSERT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusOk);
            PwDbDrawingImage read;
            read.version = 0;
            ASSERT_EQ(pwdbDecodePlw(bytes, read), Plotwright::StatusOk);
            ExpectSameImage(image, read);
        }
    }
}

TEST(PwDbPlwCodec, MetricAndEmptyDrawingsRoundTrip) {
    PwDbDrawingImage image;
    image.measurement = PwDb::Metric;
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusOk);
    PwDbDrawingImage read = SampleImage(20, true);
    ASSERT_EQ(pwdbDecodePlw(bytes, read), Plotwright::StatusOk);
    ExpectSameImage(image, read);
}

TEST(PwDbPlwCodec, HeaderHoldsItsFieldsAtTheirOffsets) {
    for (int32_t version = kPwDbOldestVersion; version <= kPwDbNewestVersion; ++version) {
        SCOPED_TRACE(version);
        std::string bytes;
        ASSERT_EQ(pwdbEncodePlw(SampleImage(version, true), bytes), Plotwright::StatusOk);
        ASSERT_GT(bytes.size(), 128u);
        EXPECT_EQ(bytes.substr(0, 6), pwdbSignatureForVersion(version));
        EXPECT_EQ(Le(bytes, 13, 4), 0u);
        EXPECT_EQ(Le(bytes, 44, 4), 0u);
        EXPECT_EQ(bytes.substr(6, 42), std::string(42, '\0'));
        EXPECT_EQ(Le(bytes, 48, 4), 128u);
        EXPECT_EQ(bytes.substr(52, 4), "LQDB");
        EXPECT_EQ(Le(bytes, 56, 4), 1u);
        EXPECT_EQ(Le(bytes, 60, 4), static_cast<uint64_t>(version));
        const uint64_t sectionsOffset = Le(bytes, 68, 8);
        ASSERT_GT(sectionsOffset, 128u);
        ASSERT_LT(sectionsOffset, bytes.size());
        EXPECT_EQ(Le(bytes, 64, 4), TestCrc(bytes.substr(128, sectionsOffset - 128)));
        EXPECT_EQ(Le(bytes, 76, 8), bytes.size() - sectionsOffset);
        EXPECT_EQ(bytes.substr(84, 40), std::string(40, '\0'));
        EXPECT_EQ(Le(bytes, 124, 4), TestCrc(bytes.substr(0, 124)));
        EXPECT_EQ(bytes.substr(sectionsOffset, 4), "SETT");
        EXPECT_EQ(bytes.substr(bytes.size() - 16, 4), "ENDS");
    }
}

void AppendLe(std::string& bytes, uint64_t value, size_t size) {
    for (size_t i = 0; i < size; ++i) bytes.push_back(static_cast<char>(value >> (8 * i)));
}

void AppendCounted(std::string& bytes, const std::u16string& text) {
    AppendLe(bytes, text.size() + 1, 2);
    for (char16_t unit : text) AppendLe(bytes, unit, 2);
    AppendLe(bytes, 0, 2);
}

TEST(PwDbPlwCodec, ApplicationInformationIsLaidOutByteForByte) {
    PwDbDrawingImage image;
    image.appInfo = {{kPwDbOwnerGuidKey, u"ab"}, {kPwDbSummaryFormatId, u"\u00e9"}};
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusOk);

    std::string expected =
        "\x53\xDE\x38\x1D\xEC\x43\x21\xCA\x96\x19\xE1\xE2\x17\x1A\x2A\x67"
        "\x3B\xD9\x7F\xF7\x3C\xBB\xCE\x08\xA0\x53\xD8\xED\xD2\x8D\xC5\xC7";
    expected += std::string("\x01\x00\x00\x00", 4);
    AppendCounted(expected, u"LodeQDB application information");
    expected += std::string("\x02\x00\x00\x00", 4);
    expected += std::string("\x5E\x71\x06\xE0\xB4\x1E\xE0\x4A\xBC\x05\x4B\xC5\xEF\xDD\xB4\x1E", 16);
    expected += std::string(
        "\x03\x00"
        "a\x00"
        "b\x00"
        "\x00\x00",
        8);
    expected += std::string("\xE0\x85\x9F\xF2\xF9\x4F\x68\x10\xAB\x91\x08\x00\x2B\x27\xB3\xD9", 16);
    expected += std::string(
        "\x02\x00"
        "\xE9\x00"
        "\x00\x00",
        6);

    ASSERT_GE(bytes.size(), 128 + expected.size());
    EXPECT_EQ(bytes.substr(128, expected.size()), expected);
    EXPECT_EQ(Le(bytes, 68, 8), 128 + expected.size()) << "the drawing follows right after";
}

TEST(PwDbPlwCodec, EncodingRefusesVersionsWithoutASignature) {
    for (int32_t version : {15, 34, 0, -1}) {
        PwDbDrawingImage image = SampleImage(33, false);
        image.version = version;
        std::string bytes = "untouched";
        EXPECT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusNoSuchVersion) << version;
        EXPECT_EQ(bytes, "untouched");
    }
}

TEST(PwDbPlwCodec, EncodingRefusesWhatTheFileCannotHold) {
    std::vector<PwDbDrawingImage> refused(6, SampleImage(33, false));
    refused[0].appInfo.push_back({kPwDbOwnerGuidKey, wstring(65535, u'x')});
    refused[1].objects.push_back(Record({}, 9, {}));
    refused[2].objects.push_back(Record({u"PwDbThing", u""}, 9, {}));
    refused[3].preview = PwDbPreviewImage{2, 2, {1, 2, 3}};
    refused[4].preview = PwDbPreviewImage{4097, 1, std::vector<uint32_t>(4097)};
    refused[5].measurement = static_cast<PwDb::MeasurementValue>(2);
    for (size_t i = 0; i < refused.size(); ++i) {
        std::string bytes = "untouched";
        EXPECT_EQ(pwdbEncodePlw(refused[i], bytes), Plotwright::StatusInvalidInput) << i;
        EXPECT_EQ(bytes, "untouched") << i;
    }
}

TEST(PwDbPlwCodec, LongestApplicationInformationTextRoundTrips) {
    PwDbDrawingImage image;
    image.appInfo.push_back({kPwDbOwnerGuidKey, wstring(65534, u'\u4e2d')});
    image.preview = PwDbPreviewImage{4096, 1, std::vector<uint32_t>(4096, 0x80402010)};
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusOk);
    EXPECT_EQ(Le(bytes, 128 + 32 + 4 + 2 + 64 + 4 + 16, 2), 65535u);
    PwDbDrawingImage read;
    ASSERT_EQ(pwdbDecodePlw(bytes, read), Plotwright::StatusOk);
    ExpectSameImage(image, read);
}

TEST(PwDbPlwCodec, PreviewIsFoundWithoutReadingTheObjects) {
    const PwDbDrawingImage image = SampleImage(27, true);
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusOk);
    std::optional<PwDbPreviewImage> preview;
    ASSERT_EQ(pwdbDecodePlwPreview(bytes, preview), Plotwright::StatusOk);
    EXPECT_EQ(preview, image.preview);

    // Spoiling an object's byte breaks the whole file but not the preview.
    const uint64_t settings = Le(bytes, 68, 8);
    const uint64_t objects = settings + 12 + Le(bytes, settings + 4, 8) + 4;
    ASSERT_EQ(bytes.substr(objects, 4), "OBJS");
    std::string spoiled = bytes;
    spoiled[objects + 12 + 9] ^= 0x40;
    PwDbDrawingImage read;
    EXPECT_EQ(pwdbDecodePlw(spoiled, read), Plotwright::StatusBadFileFormat);
    preview.reset();
    ASSERT_EQ(pwdbDecodePlwPreview(spoiled, preview), Plotwright::StatusOk);
    EXPECT_EQ(preview, image.preview);

    // A spoiled pixel is caught by the preview's own checksum.
    spoiled = bytes;
    spoiled[bytes.size() - 16 - 4 - 1] ^= 0x01;
    EXPECT_EQ(pwdbDecodePlwPreview(spoiled, preview), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(preview, image.preview) << "left as it was";
}

TEST(PwDbPlwCodec, FileWithoutPreviewGivesNone) {
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(SampleImage(16, false), bytes), Plotwright::StatusOk);
    std::optional<PwDbPreviewImage> preview = PwDbPreviewImage{1, 1, {5}};
    ASSERT_EQ(pwdbDecodePlwPreview(bytes, preview), Plotwright::StatusOk);
    EXPECT_FALSE(preview.has_value());
    PwDbDrawingImage read = SampleImage(33, true);
    ASSERT_EQ(pwdbDecodePlw(bytes, read), Plotwright::StatusOk);
    EXPECT_FALSE(read.preview.has_value());
}

TEST(PwDbPlwCodec, HundredThousandRecordsRoundTrip) {
    PwDbDrawingImage image;
    image.objects.reserve(100000);
    const std::vector<wstring> line = {u"PwDbLine", u"PwDbCurve", u"PwDbEntity", u"PwDbObject"};
    for (uint64_t i = 0; i < 100000; ++i) {
        image.objects.push_back(
            Record(line, 100 + i,
                   {Item(PwDbMemoryFiler::Handle{0x20}), Item(int32_t(i % 256)), Item(i * 0.5),
                    Item(-1.0 * static_cast<double>(i)), Item(std::in_place_type<wstring>, u"0")}));
    }
    std::string bytes;
    ASSERT_EQ(pwdbEncodePlw(image, bytes), Plotwright::StatusOk);
    PwDbDrawingImage read;
    ASSERT_EQ(pwdbDecodePlw(bytes, read), Plotwright::StatusOk);
    ExpectSameImage(image, read);
}

}  // namespace
