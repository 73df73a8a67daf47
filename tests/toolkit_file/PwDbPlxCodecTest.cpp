// Exchange text round trips: every version, every item type, exact doubles, any UTF-16 text.
#include "toolkit/file/PwDbPlxCodec.h"

#include <gtest/gtest.h>
#include <locale.h>

#include <bit>
#include <cfloat>
#include <cmath>
#include <cstdio>
#include <limits>
#include <numbers>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "PwDbImageTestSupport.h"
#include "toolkit/file/PwDbPlxText.h"

namespace {

using Plotwright::StatusBadFileFormat;
using Plotwright::StatusInvalidInput;
using Plotwright::StatusNoSuchVersion;
using Plotwright::StatusOk;
using Item = PwDbMemoryFiler::Item;
using pwdbfiletest::ExpectSameImage;
using pwdbfiletest::Record;

PwDbDrawingImage RichImage(int32_t version) {
    PwDbDrawingImage image;
    image.version = version;
    image.handseed = 0x1A2B3C4D5E6F7081ull;
    image.measurement = (version % 2 == 0) ? PwDb::Imperial : PwDb::Metric;
    image.roots = {1, 2, 3, 4, 5, 0x1F, 0x20, 0x10, 0xFFFFFFFFFFFFFFFFull};
    image.appInfo = {{kPwDbOwnerGuidKey, pwdbGuidText(kPwDbSummaryFormatId)},
                     {kPwDbSummaryFormatId, pwdbCreatorPropertySet(u"LodeQDB \"Ä\"")}};
    image.preview = PwDbPreviewImage{
        3,
        3,
        {0xFF000000, 0xFFFFFFFF, 0x00000000, 0x12345678, 0x9ABCDEF0, 0xFF00FF00, 0x0000FFFF, 1, 2}};
    PwDbObjectRecord table;
    table.classChain = {u"PwDbBlockTable", u"PwDbSymbolTable", u"PwDbObject"};
    table.handle = 1;
    table.data = {Item{int32_t{2}}, Item{PwDbMemoryFiler::Handle{0x1F}},
                  Item{PwDbMemoryFiler::Handle{0x20}}};
    PwDbObjectRecord line;
    line.classChain = {u"PwDbLine", u"PwDbEntity", u"PwDbObject"};
    line.handle = 0x21;
    line.data = {Item{wstring(u"Layer \"0\"\n")},
                 Item{int32_t{-2147483647 - 1}},
                 Item{int64_t{-9223372036854775807 - 1}},
                 Item{1.5},
                 Item{-0.0},
                 Item{true},
                 Item{false},
                 Item{std::string("\x00\xFF\x10", 3)},
                 Item{std::string()},
                 Item{PwDbMemoryFiler::Handle{0}},
                 Item{wstring()},
                 Item{std::numeric_limits<double>::infinity()}};
    PwDbObjectRecord empty;
    empty.handle = 0xFFFFFFFFFFFFFFFFull;
    empty.erased = true;
    image.objects = {table, line, empty};
    return image;
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) lines.push_back(line);
    return lines;
}

// The text of the one double item `value` written with `precision`.
std::string WrittenDouble(double value, int precision) {
    PwDbDrawingImage image;
    image.objects.push_back(Record({u"PwDbObject"}, 1, {Item{value}}));
    std::string text;
    EXPECT_EQ(pwdbEncodePlx(image, precision, text), StatusOk);
    for (const std::string& line : Lines(text)) {
        if (line.rfind("D ", 0) == 0) return line.substr(2);
    }
    return "(no D line)";
}

// Encodes `values` with precision 16 and returns what decoding gives back.
std::vector<double> RoundTripDoubles(const std::vector<double>& values, int precision = 16) {
    PwDbDrawingImage image;
    PwDbObjectRecord record = Record({u"PwDbObject"}, 7, {});
    for (double value : values) record.data.emplace_back(value);
    image.objects.push_back(record);
    std::string text;
    PwDbDrawingImage back;
    EXPECT_EQ(pwdbEncodePlx(image, precision, text), StatusOk);
    EXPECT_EQ(pwdbDecodePlx(text, back), StatusOk);
    std::vector<double> result;
    if (back.objects.size() != 1) return result;
    for (const Item& item : back.objects[0].data) result.push_back(std::get<double>(item));
    return result;
}

TEST(PwDbPlxCodec, EveryVersionRoundTrips) {
    for (int32_t version = kPwDbOldestVersion; version <= kPwDbNewestVersion; ++version) {
        SCOPED_TRACE(version);
        const PwDbDrawingImage image = RichImage(version);
        std::string text;
        ASSERT_EQ(pwdbEncodePlx(image, 16, text), StatusOk);
        PwDbDrawingImage back;
        back.version = 99;
        ASSERT_EQ(pwdbDecodePlx(text, back), StatusOk);
        ExpectSameImage(image, back);
    }
}

TEST(PwDbPlxCodec, MissingPreviewStaysMissingAndEmptyPreviewStaysEmpty) {
    PwDbDrawingImage image = RichImage(33);
    image.preview.reset();
    std::string text;
    PwDbDrawingImage back;
    back.preview = PwDbPreviewImage{1, 1, {5}};
    ASSERT_EQ(pwdbEncodePlx(image, 16, text), StatusOk);
    ASSERT_EQ(pwdbDecodePlx(text, back), StatusOk);
    EXPECT_FALSE(back.preview.has_value());

    image.preview = PwDbPreviewImage{0, 7, {}};
    ASSERT_EQ(pwdbEncodePlx(image, 16, text), StatusOk);
    ASSERT_EQ(pwdbDecodePlx(text, back), StatusOk);
    ASSERT_TRUE(back.preview.has_value());
    EXPECT_EQ(*back.preview, *image.preview);
}

TEST(PwDbPlxCodec, FirstLinesIdentifyTheFileAndItsVersion) {
    std::string text;
    ASSERT_EQ(pwdbEncodePlx(RichImage(27), 5, text), StatusOk);
    const std::vector<std::string> lines = Lines(text);
    ASSERT_GE(lines.size(), 20u);
    EXPECT_EQ(lines[0], "PLOTWRIGHT EXCHANGE");
    EXPECT_EQ(lines[1], "VERSION 27");
    EXPECT_EQ(lines[2], "PRECISION 5");
    EXPECT_EQ(lines[3], "HANDSEED 1A2B3C4D5E6F7081");
    EXPECT_EQ(lines[4], "MEASUREMENT METRIC");
    EXPECT_EQ(lines[5], "ROOT BlockTable 1");
    EXPECT_EQ(lines[10], "ROOT ModelSpace 1F");
    EXPECT_EQ(lines[13], "ROOT CurrentLayer FFFFFFFFFFFFFFFF");
    EXPECT_EQ(lines[14], "APPINFO 2");
    EXPECT_EQ(lines[15],
              "INFO {E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E} "
              "\"{F29F85E0-4FF9-1068-AB91-08002B27B3D9}\"");
    EXPECT_EQ(lines[17], "PREVIEW 3 3");
    EXPECT_EQ(lines[18],
              "PIXELS FF000000 FFFFFFFF 00000000 12345678 9ABCDEF0 FF00FF00 "
              "0000FFFF 00000001");
    EXPECT_EQ(lines[19], "PIXELS 00000002");
    EXPECT_EQ(lines[20], "OBJECTS 3");
    EXPECT_EQ(lines[21], "OBJECT 1 3 LIVE \"PwDbBlockTable\" \"PwDbSymbolTable\" \"PwDbObject\"");
    EXPECT_EQ(lines[22], "I 2");
    EXPECT_EQ(lines[23], "H 1F");
    EXPECT_EQ(lines[25], "END OBJECT");
    EXPECT_EQ(lines.back(), "END FILE");
    EXPECT_EQ(text.back(), '\n');
    EXPECT_EQ(text.find('\r'), std::string::npos);
}

TEST(PwDbPlxCodec, ItemLinesUseOneLetterTypes) {
    std::string text;
    ASSERT_EQ(pwdbEncodePlx(RichImage(33), 3, text), StatusOk);
    const std::string expected =
        "OBJECT 21 12 LIVE \"PwDbLine\" \"PwDbEntity\" \"PwDbObject\"\n"
        "S \"Layer \\\"0\\\"\\n\"\n"
        "I -2147483648\n"
        "L -9223372036854775808\n"
        "D 1.500e+00\n"
        "D -0.000e+00\n"
        "B 1\n"
        "B 0\n"
        "X 3 00FF10\n"
        "X 0\n"
        "H 0\n"
        "S \"\"\n"
        "D inf\n"
        "END OBJECT\n"
        "OBJECT FFFFFFFFFFFFFFFF 0 ERASED\n"
        "END OBJECT\n"
        "END FILE\n";
    ASSERT_GE(text.size(), expected.size());
    EXPECT_EQ(text.substr(text.size() - expected.size()), expected);
}

TEST(PwDbPlxCodec, ExampleOfTheDocumentationReads) {
    const std::string text =
        "PLOTWRIGHT EXCHANGE\n"
        "VERSION 33\n"
        "PRECISION 16\n"
        "HANDSEED 2A\n"
        "MEASUREMENT IMPERIAL\n"
        "ROOT BlockTable 1\n"
        "ROOT LayerTable 2\n"
        "ROOT NamedObjects C\n"
        "ROOT LayoutDictionary D\n"
        "ROOT PlotSettingsDictionary E\n"
        "ROOT ModelSpace 1F\n"
        "ROOT PaperSpace 20\n"
        "ROOT LayerZero 10\n"
        "ROOT CurrentLayer 10\n"
        "APPINFO 1\n"
        "INFO {E006715E-1EB4-4AE0-BC05-4BC5EFDDB41E} \"{6B1D2E63-0D5A-4F0C-9F3B-3C1E0A7D2B41}\"\n"
        "PREVIEW 2 1\n"
        "PIXELS FF000000 FFFFFFFF\n"
        "OBJECTS 1\n"
        "OBJECT 21 7 LIVE \"PwDbLine\" \"PwDbEntity\" \"PwDbObject\"\n"
        "S \"Caf\xC3\xA9 \\\"A\\\"\\tB\\u0000\"\n"
        "I -5\n"
        "L 9000000000\n"
        "D 1.5000000000000000e+00\n"
        "B 1\n"
        "X 3 00FF10\n"
        "H 10\n"
        "END OBJECT\n"
        "END FILE\n";
    PwDbDrawingImage image;
    ASSERT_EQ(pwdbDecodePlx(text, image), StatusOk);
    EXPECT_EQ(image.version, 33);
    EXPECT_EQ(image.handseed, 0x2Au);
    EXPECT_EQ(image.measurement, PwDb::Imperial);
    EXPECT_EQ(image.roots.namedObjects, 0xCu);
    EXPECT_EQ(image.roots.modelSpace, 0x1Fu);
    ASSERT_EQ(image.appInfo.size(), 1u);
    EXPECT_EQ(image.appInfo[0].key, kPwDbOwnerGuidKey);
    EXPECT_EQ(image.appInfo[0].text, u"{6B1D2E63-0D5A-4F0C-9F3B-3C1E0A7D2B41}");
    ASSERT_TRUE(image.preview.has_value());
    EXPECT_EQ(image.preview->pixels, (std::vector<uint32_t>{0xFF000000, 0xFFFFFFFF}));
    ASSERT_EQ(image.objects.size(), 1u);
    const PwDbObjectRecord& line = image.objects[0];
    EXPECT_EQ(line.handle, 0x21u);
    EXPECT_EQ(line.classChain.size(), 3u);
    ASSERT_EQ(line.data.size(), 7u);
    EXPECT_EQ(std::get<wstring>(line.data[0]), wstring(u"Caf\u00e9 \"A\"\tB\0", 11));
    EXPECT_EQ(std::get<int32_t>(line.data[1]), -5);
    EXPECT_EQ(std::get<int64_t>(line.data[2]), 9000000000);
    EXPECT_EQ(std::get<double>(line.data[3]), 1.5);
    EXPECT_EQ(std::get<bool>(line.data[4]), true);
    EXPECT_EQ(std::get<std::string>(line.data[5]), std::string("\x00\xFF\x10", 3));
    EXPECT_EQ(std::get<PwDbMemoryFiler::Handle>(line.data[6]).value, 0x10u);
}

TEST(PwDbPlxCodec, DoublesRoundTripExactlyWithSixteenDigits) {
    std::vector<double> values = {0.0,
                                  -0.0,
                                  1.0,
                                  0.1,
                                  1.0 / 3.0,
                                  std::numbers::pi,
                                  DBL_MAX,
                                  -DBL_MAX,
                                  DBL_MIN,
                                  std::numeric_limits<double>::denorm_min(),
                                  -3 * std::numeric_limits<double>::denorm_min(),
                                  DBL_MIN - std::numeric_limits<double>::denorm_min(),
                                  std::nextafter(1.0, 2.0),
                                  std::nextafter(DBL_MAX, 0.0),
                                  9007199254740993.0,
                                  -2.5e-300};
    std::mt19937_64 random(20240611);
    while (values.size() < 20000) {
        const double value = std::bit_cast<double>(random());
        if (std::isfinite(value)) values.push_back(value);
    }
    const std::vector<double> back = RoundTripDoubles(values);
    ASSERT_EQ(back.size(), values.size());
    for (size_t i = 0; i < values.size(); ++i) {
        ASSERT_EQ(std::bit_cast<uint64_t>(back[i]), std::bit_cast<uint64_t>(values[i]))
            << WrittenDouble(values[i], 16);
    }
}

TEST(PwDbPlxCodec, DoublesHaveExactlyTheDigitsAskedFor) {
    EXPECT_EQ(WrittenDouble(1234.5678, 0), "1e+03");
    EXPECT_EQ(WrittenDouble(1234.5678, 3), "1.235e+03");
    EXPECT_EQ(WrittenDouble(1234.5678, 16), "1.2345678000000000e+03");
    EXPECT_EQ(WrittenDouble(-0.0, 0), "-0e+00");
    EXPECT_EQ(WrittenDouble(DBL_MAX, 16), "1.7976931348623157e+308");
    EXPECT_EQ(WrittenDouble(std::numeric_limits<double>::denorm_min(), 3), "4.941e-324");
    EXPECT_EQ(WrittenDouble(0.1, 17), "1.00000000000000006e-01");
}

TEST(PwDbPlxCodec, DoublesMatchPrintfInTheCLocaleForEveryPrecision) {
    // printf follows the thread's locale; the exchange text never does.
    const locale_t cLocale = newlocale(LC_NUMERIC_MASK, "C", nullptr);
    ASSERT_NE(cLocale, nullptr);
    const locale_t previous = uselocale(cLocale);
    std::mt19937_64 random(77);
    for (int n = 0; n < 3000; ++n) {
        const double value = std::bit_cast<double>(random());
        if (!std::isfinite(value)) continue;
        for (int precision = 0; precision <= kPwDbPlxMaxPrecision; ++precision) {
            char expected[64];
            std::snprintf(expected, sizeof expected, "%.*e", precision, value);
            std::string written;
            pwdbPlxAppendDouble(written, value, precision);
            ASSERT_EQ(written, expected) << precision;
        }
    }
    uselocale(previous);
    freelocale(cLocale);
}

TEST(PwDbPlxCodec, FewDigitsStillReadAsTheNearestFiniteValue) {
    const std::vector<double> values = {1234.5678, DBL_MAX, -DBL_MAX, 0.1,
                                        std::numeric_limits<double>::denorm_min()};
    const std::vector<double> zero = RoundTripDoubles(values, 0);
    ASSERT_EQ(zero.size(), values.size());
    EXPECT_EQ(zero[0], 1000.0);
    EXPECT_EQ(zero[1], DBL_MAX) << "2e+308 lies beyond the range; it stays finite";
    EXPECT_EQ(zero[2], -DBL_MAX);
    EXPECT_EQ(zero[3], 0.1);
    EXPECT_EQ(zero[4], std::numeric_limits<double>::denorm_min());
    const std::vector<double> three = RoundTripDoubles(values, 3);
    ASSERT_EQ(three.size(), values.size());
    EXPECT_EQ(three[0], 1235.0);
}

TEST(PwDbPlxCodec, NanAndInfinitiesAreWordsAndKeepTheirBits) {
    const double quiet = std::numeric_limits<double>::quiet_NaN();
    const double payload = std::bit_cast<double>(uint64_t{0xFFF0000000000001});
    const double inf = std::numeric_limits<double>::infinity();
    EXPECT_EQ(WrittenDouble(quiet, 16), "nan");
    EXPECT_EQ(WrittenDouble(inf, 0), "inf");
    EXPECT_EQ(WrittenDouble(-inf, 3), "-inf");
    EXPECT_EQ(WrittenDouble(payload, 3), "nan(FFF0000000000001)");
    const std::vector<double> back = RoundTripDoubles({quiet, payload, inf, -inf}, 2);
    ASSERT_EQ(back.size(), 4u);
    EXPECT_EQ(std::bit_cast<uint64_t>(back[0]), std::bit_cast<uint64_t>(quiet));
    EXPECT_EQ(std::bit_cast<uint64_t>(back[1]), 0xFFF0000000000001u);
    EXPECT_EQ(back[2], inf);
    EXPECT_EQ(back[3], -inf);
}

TEST(PwDbPlxCodec, AnyUtf16TextRoundTrips) {
    const std::vector<wstring> texts = {
        u"plain",
        u"quote \" backslash \\ slash /",
        u"line\nfeed\r\ncarriage\ttab\b\f\v",
        wstring(u"nul\0inside\0", 11),
        wstring(1, u'\0'),
        wstring(1, char16_t{0xD800}),
        wstring(1, char16_t{0xDFFF}),
        wstring(u"lone trail \xDC00 then lead \xD83D") + u"!",
        wstring{char16_t{0xDE00}, char16_t{0xD83D}},  // a pair in the wrong order
        u"non-BMP \U0001F600 and \U0010FFFF",
        u"Zeichnung \u00e4\u00f6\u00fc \u00df \u6f22\u5b57 \u0416",
        u"controls \u0001\u001f\u007f\u0080\u009f\u2028\u2029 \uFEFF\uFFFD\uFFFF",
        u"\\u0041 is no escape once written",
        wstring(70000, u'\u00e9') + u"\U0001F600" + wstring(70000, u'x'),
    };
    PwDbDrawingImage image;
    PwDbObjectRecord record = Record({}, 5, {});
    for (const wstring& text : texts) {
        record.classChain.push_back(text);
        record.data.emplace_back(text);
        image.appInfo.push_back({kPwDbOwnerGuidKey, text});
    }
    image.objects.push_back(record);
    std::string encoded;
    ASSERT_EQ(pwdbEncodePlx(image, 16, encoded), StatusOk);
    PwDbDrawingImage back;
    ASSERT_EQ(pwdbDecodePlx(encoded, back), StatusOk);
    ExpectSameImage(image, back);
    EXPECT_TRUE(pwdbPlxIsValidUtf8(encoded));
}

TEST(PwDbPlxCodec, StringsAreEscapedReadably) {
    std::string out;
    pwdbPlxAppendQuoted(out, wstring(u"a\"b\\c\nd\te\rf\0g\u00e9\U0001F600", 16) +
                                 wstring(1, char16_t{0xD800}) + u"\u007f");
    EXPECT_EQ(out, "\"a\\\"b\\\\c\\nd\\te\\rf\\u0000g\xC3\xA9\xF0\x9F\x98\x80\\uD800\\u007F\"");
}

TEST(PwDbPlxCodec, CrLfLineEndsAreAccepted) {
    const PwDbDrawingImage image = RichImage(24);
    std::string text;
    ASSERT_EQ(pwdbEncodePlx(image, 16, text), StatusOk);
    std::string crlf;
    for (char c : text) crlf += (c == '\n') ? std::string("\r\n") : std::string(1, c);
    PwDbDrawingImage back;
    ASSERT_EQ(pwdbDecodePlx(crlf, back), StatusOk);
    ExpectSameImage(image, back);
    crlf.resize(crlf.size() - 2);  // the end line without its line end
    PwDbDrawingImage again;
    ASSERT_EQ(pwdbDecodePlx(crlf, again), StatusOk);
    ExpectSameImage(image, again);
}

TEST(PwDbPlxCodec, TwentyThousandRecordsRoundTrip) {
    PwDbDrawingImage image = RichImage(30);
    image.objects.clear();
    for (uint64_t i = 0; i < 20000; ++i) {
        PwDbObjectRecord record =
            Record({u"PwDbCircle", u"PwDbCurve", u"PwDbEntity", u"PwDbObject"}, 0x100 + i, {});
        record.data = {Item{PwDbMemoryFiler::Handle{0x10}}, Item{static_cast<double>(i) / 7.0},
                       Item{static_cast<int32_t>(i)},
                       Item{wstring(u"r") + char16_t(0x400 + i % 500)}};
        image.objects.push_back(std::move(record));
    }
    image.handseed = 0x100 + 20000;
    std::string text;
    ASSERT_EQ(pwdbEncodePlx(image, 16, text), StatusOk);
    PwDbDrawingImage back;
    ASSERT_EQ(pwdbDecodePlx(text, back), StatusOk);
    ExpectSameImage(image, back);
}

TEST(PwDbPlxCodec, EncodeRefusesWhatCannotBeWritten) {
    PwDbDrawingImage image = RichImage(33);
    std::string text = "untouched";
    image.version = 15;
    EXPECT_EQ(pwdbEncodePlx(image, 16, text), StatusNoSuchVersion);
    image.version = 34;
    EXPECT_EQ(pwdbEncodePlx(image, 16, text), StatusNoSuchVersion);
    image.version = 33;
    EXPECT_EQ(pwdbEncodePlx(image, -1, text), StatusInvalidInput);
    EXPECT_EQ(pwdbEncodePlx(image, 18, text), StatusInvalidInput);
    image.preview->pixels.pop_back();
    EXPECT_EQ(pwdbEncodePlx(image, 16, text), StatusInvalidInput);
    image.preview.reset();
    image.measurement = static_cast<PwDb::MeasurementValue>(7);
    EXPECT_EQ(pwdbEncodePlx(image, 16, text), StatusInvalidInput);
    EXPECT_EQ(text, "untouched");
    image.measurement = PwDb::Metric;
    EXPECT_EQ(pwdbEncodePlx(image, 0, text), StatusOk);
    EXPECT_EQ(pwdbEncodePlx(image, 17, text), StatusOk);
}

}  // namespace
