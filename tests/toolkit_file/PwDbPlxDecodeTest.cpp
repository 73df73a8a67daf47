// Exchange text that is not one whole sound file: refused with StatusBadFileFormat, never a
// crash, a hang or an allocation sized by a count the text cannot back.
#include "toolkit/file/PwDbPlxCodec.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "PwDbImageTestSupport.h"
#include "toolkit/file/PwDbPlxText.h"

namespace {

using Plotwright::StatusBadFileFormat;
using Plotwright::StatusOk;
using Item = PwDbMemoryFiler::Item;
using pwdbfiletest::Record;

PwDbDrawingImage SmallImage() {
    PwDbDrawingImage image;
    image.version = 29;
    image.handseed = 0x30;
    image.roots = {1, 2, 3, 4, 5, 6, 7, 8, 8};
    image.appInfo = {{kPwDbOwnerGuidKey, u"owner \u00e9"}};
    image.preview = PwDbPreviewImage{2, 1, {0xFF000000, 0xFFFFFFFF}};
    image.objects.push_back(
        Record({u"PwDbLine", u"PwDbEntity", u"PwDbObject"}, 0x21,
               {Item{wstring(u"a \"b\"")}, Item{int32_t{-5}}, Item{int64_t{7}}, Item{2.5},
                Item{true}, Item{std::string("\x01\x02", 2)}, Item{PwDbMemoryFiler::Handle{8}}}));
    image.objects.push_back(Record({u"PwDbObject"}, 0x22, {}));
    return image;
}

std::string SmallText() {
    std::string text;
    EXPECT_EQ(pwdbEncodePlx(SmallImage(), 4, text), StatusOk);
    return text;
}

// Decodes `text` into an image holding a mark, which a refusal must leave in place.
Plotwright::ErrorStatus Decode(std::string_view text) {
    PwDbDrawingImage image;
    image.handseed = 0xC0FFEE;
    const Plotwright::ErrorStatus status = pwdbDecodePlx(text, image);
    if (status != StatusOk) {
        EXPECT_EQ(image.handseed, 0xC0FFEEu) << "changed on failure";
    }
    return status;
}

std::string Replace(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

TEST(PwDbPlxDecode, SmallFileReads) {
    PwDbDrawingImage image;
    ASSERT_EQ(pwdbDecodePlx(SmallText(), image), StatusOk);
    EXPECT_EQ(image.version, 29);
    EXPECT_EQ(image.objects.size(), 2u);
}

TEST(PwDbPlxDecode, RefusesEmptyAndIdentificationOnly) {
    EXPECT_EQ(Decode(""), StatusBadFileFormat);
    EXPECT_EQ(Decode("\n"), StatusBadFileFormat);
    EXPECT_EQ(Decode("PLOTWRIGHT EXCHANGE"), StatusBadFileFormat);
    EXPECT_EQ(Decode("PLOTWRIGHT EXCHANGE\n"), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(SmallText(), "PLOTWRIGHT EXCHANGE", "PLOTWRIGHT EXCHANGE ")),
              StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(SmallText(), "PLOTWRIGHT", "plotwright")), StatusBadFileFormat);
    EXPECT_EQ(Decode("\xEF\xBB\xBF" + SmallText()), StatusBadFileFormat);
}

TEST(PwDbPlxDecode, RefusesVersionsItDoesNotKnow) {
    for (const char* version : {"15", "34", "x", "-1", "", "29 29", "4294967325", "1e1"}) {
        EXPECT_EQ(Decode(Replace(SmallText(), "VERSION 29", std::string("VERSION ") + version)),
                  StatusBadFileFormat)
            << version;
    }
    EXPECT_EQ(Decode(Replace(SmallText(), "VERSION 29", "VERSION 16")), StatusOk);
    EXPECT_EQ(Decode(Replace(SmallText(), "VERSION 29", "VERSION 33")), StatusOk);
}

TEST(PwDbPlxDecode, RefusesEveryTruncationAtALineEnd) {
    const std::string text = SmallText();
    size_t boundaries = 0;
    for (size_t end = text.find('\n'); end + 1 < text.size(); end = text.find('\n', end + 1)) {
        ++boundaries;
        EXPECT_EQ(Decode(text.substr(0, end + 1)), StatusBadFileFormat) << text.substr(0, end + 1);
        EXPECT_EQ(Decode(text.substr(0, end)), StatusBadFileFormat) << text.substr(0, end);
    }
    EXPECT_GT(boundaries, 25u);
    EXPECT_EQ(Decode(text), StatusOk);
}

TEST(PwDbPlxDecode, RefusesEveryFileWithOneLineLeftOut) {
    const std::string text = SmallText();
    for (size_t start = 0; start < text.size();) {
        const size_t end = text.find('\n', start) + 1;
        EXPECT_EQ(Decode(text.substr(0, start) + text.substr(end)), StatusBadFileFormat)
            << text.substr(start, end - start);
        start = end;
    }
}

TEST(PwDbPlxDecode, RefusesBadNumbers) {
    const std::string text = SmallText();
    const std::pair<const char*, const char*> edits[] = {
        {"I -5", "I 2147483648"},
        {"I -5", "I 5.0"},
        {"I -5", "I +5"},
        {"I -5", "I 0x5"},
        {"I -5", "I "},
        {"I -5", "I"},
        {"L 7", "L 9223372036854775808"},
        {"D 2.5000e+00", "D 2,5"},
        {"D 2.5000e+00", "D .5"},
        {"D 2.5000e+00", "D infinity"},
        {"D 2.5000e+00", "D 1e"},
        {"D 2.5000e+00", "D nan(7FF0000000000000)"},
        {"D 2.5000e+00", "D NaN"},
        {"B 1", "B 2"},
        {"B 1", "B true"},
        {"H 8", "H 10000000000000000"},
        {"H 8", "H -8"},
        {"HANDSEED 30", "HANDSEED 3G"},
        {"X 2 0102", "X 2 01020"},
        {"X 2 0102", "X 2 010"},
        {"X 2 0102", "X 2 01G2"},
        {"X 2 0102", "X 0 "},
        {"X 2 0102", "X 2"},
        {"PRECISION 4", "PRECISION 18"},
        {"PRECISION 4", "PRECISION -1"},
        {"PIXELS FF000000", "PIXELS FF00000"},
        {"PIXELS FF000000", "PIXELS FF0000000"},
        {"PREVIEW 2 1", "PREVIEW 2 -1"},
        {"ROOT LayerTable 2", "ROOT LayerTable"},
        {"OBJECT 22 0", "OBJECT 22 -1"},
    };
    for (const auto& [from, to] : edits) {
        EXPECT_EQ(Decode(Replace(text, from, to)), StatusBadFileFormat) << to;
    }
    EXPECT_EQ(Decode(Replace(text, "D 2.5000e+00", "D 2.5")), StatusOk);
    EXPECT_EQ(Decode(Replace(text, "D 2.5000e+00", "D -inf")), StatusOk);
}

TEST(PwDbPlxDecode, RefusesUnknownKeywordsAndBrokenLines) {
    const std::string text = SmallText();
    const std::pair<const char*, const char*> edits[] = {
        {"HANDSEED", "HANDSEEDS"},
        {"MEASUREMENT METRIC", "MEASUREMENT METRE"},
        {"ROOT BlockTable", "ROOT Blocks"},
        {"ROOT LayerTable 2", "ROOT BlockTable 2"},
        {"APPINFO 1", "APP 1"},
        {"INFO {", "INFO  {"},
        {"B 1", "Q 1"},
        {"B 1", "BB 1"},
        {"END OBJECT", "END OBJEKT"},
        {"END FILE", "END"},
        {"S \"a", "S a"},
        {"\\\"b", "\\qb"},
        {"\\\"b", "\\u00G1b"},
        {"\"PwDbLine\" ", "\"PwDbLine\"  "},
        {"\"PwDbLine\" ", "\"PwDbLine\"x "},
        {"\"PwDbLine\"", "\"PwDb\tLine\""},
        {"OBJECTS 2", "OBJECTS 2 "},
        {"PREVIEW 2 1", "PREVIEW NONE"},
        {"{E006715E-1EB4", "{X006715E-1EB4"},
    };
    for (const auto& [from, to] : edits) {
        EXPECT_EQ(Decode(Replace(text, from, to)), StatusBadFileFormat) << to;
    }
    EXPECT_EQ(Decode(text + "\n"), StatusBadFileFormat) << "nothing follows the end line";
    EXPECT_EQ(Decode(text + "END FILE\n"), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "\n", "\r\r\n")), StatusBadFileFormat);
}

TEST(PwDbPlxDecode, RefusesInvalidUtf8) {
    const std::string text = SmallText();
    for (const char* bad : {"\xC3\x28", "\xC0\xAF", "\xE0\x80\xAF", "\xED\xA0\x80", "\xFF",
                            "\xF4\x90\x80\x80", "\xE2\x82", "\x80"}) {
        EXPECT_EQ(Decode(Replace(text, "owner", std::string("owner") + bad)), StatusBadFileFormat)
            << bad;
    }
    EXPECT_EQ(Decode(Replace(text, "owner", "owner \xE2\x82\xAC")), StatusOk);
    EXPECT_FALSE(pwdbPlxIsValidUtf8("\xF0\x9F\x98"));
    EXPECT_TRUE(pwdbPlxIsValidUtf8("\xF0\x9F\x98\x80\xF4\x8F\xBF\xBF"));
}

TEST(PwDbPlxDecode, RefusesCountsThatDoNotMatch) {
    const std::string text = SmallText();
    EXPECT_EQ(Decode(Replace(text, "OBJECT 21 7", "OBJECT 21 6")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "OBJECT 21 7", "OBJECT 21 8")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "7 LIVE", "7 GONE")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "7 LIVE ", "7 ")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "OBJECT 22 0", "OBJECT 22 1")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "OBJECTS 2", "OBJECTS 1")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "OBJECTS 2", "OBJECTS 3")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "APPINFO 1", "APPINFO 0")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "APPINFO 1", "APPINFO 2")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "PREVIEW 2 1", "PREVIEW 1 1")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "PREVIEW 2 1", "PREVIEW 3 1")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "X 2 0102", "X 1 0102")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "X 2 0102", "X 3 0102")), StatusBadFileFormat);
    EXPECT_EQ(Decode(Replace(text, "PREVIEW 2 1", "PREVIEW 1 2")), StatusOk);
}

// Counts the text cannot back are refused before anything is made for them (the fuzzers run
// with a memory limit that would catch an allocation sized by such a count).
TEST(PwDbPlxDecode, HugeCountsAreRefused) {
    const std::string text = SmallText();
    const std::pair<const char*, const char*> edits[] = {
        {"OBJECTS 2", "OBJECTS 18446744073709551615"},
        {"OBJECTS 2", "OBJECTS 100000000"},
        {"OBJECT 21 7", "OBJECT 21 18446744073709551615"},
        {"OBJECT 21 7", "OBJECT 21 50000000"},
        {"APPINFO 1", "APPINFO 4000000000"},
        {"PREVIEW 2 1", "PREVIEW 4294967295 4294967295"},
        {"PREVIEW 2 1", "PREVIEW 10000 10000"},
        {"X 2 0102", "X 4000000000 0102"},
        {"X 2 0102", "X 18446744073709551615 0102"},
    };
    for (const auto& [from, to] : edits) {
        EXPECT_EQ(Decode(Replace(text, from, to)), StatusBadFileFormat) << to;
    }
    EXPECT_EQ(Decode(text), StatusOk);
}

// Only the two statuses, and a result that encodes again, whatever the text.
void ExpectCalmDecode(const std::string& text) {
    PwDbDrawingImage image;
    const Plotwright::ErrorStatus status = pwdbDecodePlx(text, image);
    ASSERT_TRUE(status == StatusOk || status == StatusBadFileFormat) << status << "\n" << text;
    if (status == StatusOk) {
        std::string again;
        EXPECT_EQ(pwdbEncodePlx(image, 17, again), StatusOk) << text;
    }
}

TEST(PwDbPlxDecode, RandomTextNeverCrashes) {
    std::mt19937 random(1234);
    const std::vector<std::string> pieces = {"PLOTWRIGHT EXCHANGE\n",
                                             "VERSION 3",
                                             "\n",
                                             " ",
                                             "\"",
                                             "\\",
                                             "\\u",
                                             "OBJECT ",
                                             "END ",
                                             "FILE",
                                             "OBJECTS ",
                                             "9",
                                             "0",
                                             "-",
                                             "e+",
                                             "nan",
                                             "X ",
                                             "S ",
                                             "D ",
                                             "H ",
                                             "\r\n",
                                             "\xC3\xA9",
                                             "\xFF",
                                             "PIXELS ",
                                             "PREVIEW ",
                                             "ROOT ",
                                             "APPINFO ",
                                             "INFO "};
    for (int n = 0; n < 3000; ++n) {
        std::string text;
        const int count = std::uniform_int_distribution<int>(0, 60)(random);
        for (int k = 0; k < count; ++k) {
            if (random() % 4 == 0)
                text += static_cast<char>(random() & 0xFF);
            else
                text += pieces[random() % pieces.size()];
        }
        ExpectCalmDecode(text);
    }
}

TEST(PwDbPlxDecode, MutatedFilesNeverCrash) {
    const std::string original = SmallText();
    std::mt19937 random(98765);
    const std::string alphabet = "0123456789ABCDEFabcdef -+.e\"\\u\n\r\t\x80\xC3\xFFXSDHBILnaif";
    int accepted = 0;
    for (int n = 0; n < 4000; ++n) {
        std::string text = original;
        const int edits = 1 + static_cast<int>(random() % 4);
        for (int k = 0; k < edits && !text.empty(); ++k) {
            const size_t at = random() % text.size();
            switch (random() % 5) {
                case 0:
                    text[at] = alphabet[random() % alphabet.size()];
                    break;
                case 1:
                    text.erase(at, 1 + random() % 8);
                    break;
                case 2:
                    text.insert(at, 1, alphabet[random() % alphabet.size()]);
                    break;
                case 3:
                    text[at] = static_cast<char>(text[at] ^ (1 << (random() % 8)));
                    break;
                default:
                    text.insert(at, text.substr(random() % text.size(), random() % 40));
            }
        }
        PwDbDrawingImage image;
        accepted += pwdbDecodePlx(text, image) == StatusOk ? 1 : 0;
        ExpectCalmDecode(text);
    }
    EXPECT_LT(accepted, 4000) << "mutations are noticed";
}

}  // namespace
