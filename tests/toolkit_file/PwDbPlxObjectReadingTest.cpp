// An exchange file read object by object (each object from its own lines) gives the very
// drawing its text decodes to, and refuses exactly the texts that decoding refuses: spellings the
// fast reading leaves to the reading by tokens, proxies, and random damage.
#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "PwDbSampleDrawing.h"
#include "support/TempFolderTest.h"
#include "toolkit/file/PwDbPlxCodec.h"

namespace {

using Plotwright::StatusBadFileFormat;
using Plotwright::StatusOk;

// The objects and roots of a drawing as exchange text at full precision: what two reads of one
// text must agree on (the application information differs by how the drawing came about).
std::string Contents(const PwDbDatabase& drawing) {
    PwDbDrawingImage image;
    EXPECT_EQ(drawing.captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    image.appInfo.clear();
    image.preview.reset();
    std::string text;
    EXPECT_EQ(pwdbEncodePlx(image, 17, text), StatusOk);
    return text;
}

std::string ReplaceAll(std::string text, const std::string& from, const std::string& to) {
    for (size_t at = text.find(from); at != std::string::npos;
         at = text.find(from, at + to.size())) {
        text.replace(at, from.size(), to);
    }
    return text;
}

std::string ReplaceFirst(std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    if (at != std::string::npos) text.replace(at, from.size(), to);
    return text;
}

class PlxObjectReading : public lodeqdbtest::TempFolderTest {
  protected:
    PlxObjectReading() : TempFolderTest("lodeqdb-plx-objects") {}

    void SetUp() override {
        TempFolderTest::SetUp();
        auto sample = pwdbfiletest::MakeSampleDrawing();
        ASSERT_EQ(sample->plxOut(Path("sample.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
        sampleText = Read("sample.plx");
        ASSERT_FALSE(sampleText.empty());
    }

    // Reads `text` from a file, and decodes it into an image loaded into a database; the two
    // must accept and refuse together and, when they accept, hold the same drawing. The file
    // read's status, which is only ever StatusOk or StatusBadFileFormat.
    Plotwright::ErrorStatus ReadBothWays(const std::string& text, const std::string& what) {
        Write("read.plx", text);
        PwDbDatabase fromFile;
        const Plotwright::ErrorStatus status = fromFile.plxIn(Path("read.plx").c_str());
        EXPECT_TRUE(status == StatusOk || status == StatusBadFileFormat) << status << " " << what;
        PwDbDrawingImage image;
        PwDbDatabase fromImage;
        const bool decoded =
            pwdbDecodePlx(text, image) == StatusOk && fromImage.loadImage(image) == StatusOk;
        EXPECT_EQ(status == StatusOk, decoded) << what;
        if (status == StatusOk && decoded) {
            EXPECT_EQ(Contents(fromFile), Contents(fromImage)) << what;
        }
        return status;
    }

    std::string sampleText;
};

TEST_F(PlxObjectReading, TheSampleReadsAsItsImage) {
    EXPECT_EQ(ReadBothWays(sampleText, "sample"), StatusOk);
    PwDbDatabase read;
    ASSERT_EQ(read.plxIn(Path("sample.plx").c_str()), StatusOk);
    EXPECT_EQ(Contents(read), Contents(*pwdbfiletest::MakeSampleDrawing()));
}

// Spellings that the reading of lines as written leaves to the reading by tokens: each must
// read, and read as its text decodes.
TEST_F(PlxObjectReading, OtherSpellingsReadAsTheirImage) {
    ASSERT_NE(sampleText.find("\nD 0.0000000000000000e+00\n"), std::string::npos);
    ASSERT_NE(sampleText.find("\nH 5\n"), std::string::npos);
    ASSERT_NE(sampleText.find("\nI 0\n"), std::string::npos);
    const std::vector<std::pair<std::string, std::string>> spellings = {
        {"\nD 0.0000000000000000e+00\n", "\nD 0.5\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD -0\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD 1e400\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD -1e-400\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD 2.5E+01\n"},
        {"\nH 5\n", "\nH 0005\n"},
        {"\nI 0\n", "\nI -0\n"},
        {"\nI 0\n", "\nI 000\n"},
    };
    for (const auto& [from, to] : spellings) {
        EXPECT_EQ(ReadBothWays(ReplaceFirst(sampleText, from, to), to), StatusOk) << to;
        EXPECT_EQ(ReadBothWays(ReplaceAll(sampleText, from, to), to), StatusOk) << to;
    }
    // Line ends of two bytes throughout, and lower-case handles throughout.
    EXPECT_EQ(ReadBothWays(ReplaceAll(sampleText, "\n", "\r\n"), "CRLF"), StatusOk);
    std::string lower = sampleText;
    for (size_t at = lower.find("\nH "); at != std::string::npos; at = lower.find("\nH ", at + 1)) {
        for (size_t k = at + 3; k < lower.size() && lower[k] != '\n'; ++k) {
            lower[k] = static_cast<char>(std::tolower(static_cast<unsigned char>(lower[k])));
        }
    }
    EXPECT_EQ(ReadBothWays(lower, "lower-case handles"), StatusOk);
}

// NaNs and infinities are no objects' usual values; a double field holds them all the same.
TEST_F(PlxObjectReading, NonFiniteDoublesReadAsTheirImage) {
    for (const char* value : {"nan", "-inf", "inf", "nan(7FF0000000000001)"}) {
        const std::string text = ReplaceFirst(sampleText, "\nD 0.0000000000000000e+00\n",
                                              std::string("\nD ") + value + "\n");
        const Plotwright::ErrorStatus status = ReadBothWays(text, value);
        EXPECT_TRUE(status == StatusOk || status == StatusBadFileFormat) << value;
    }
}

TEST_F(PlxObjectReading, LinesOutOfShapeAreRefused) {
    const std::vector<std::pair<std::string, std::string>> damage = {
        {"\nD 0.0000000000000000e+00\n", "\nD 0.0000000000000000e+00 \n"},
        {"\nD 0.0000000000000000e+00\n", "\nD  0.0000000000000000e+00\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD 0.0000000000000000e+00x\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD +1\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD .5\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD 0x10\n"},
        {"\nD 0.0000000000000000e+00\n", "\nI 0\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD\n"},
        {"\nD 0.0000000000000000e+00\n", "\nD 1\r\r\n"},
        {"\nH 5\n", "\nH -5\n"},
        {"\nH 5\n", "\nH 5G\n"},
        {"\nH 5\n", "\nH 10000000000000000\n"},
        {"\nH 5\n", "\nH 5 5\n"},
        {"\nI 0\n", "\nI 2147483648\n"},
        {"\nI 0\n", "\nI 1.0\n"},
        {"\nI 0\n", "\nI +1\n"},
        {"\nI 0\n", "\nL 0\n"},
        {" LIVE \"PwDbLine\"", " live \"PwDbLine\""},
        {" LIVE \"PwDbLine\"", " LIVE  \"PwDbLine\""},
        {" LIVE \"PwDbLine\"", " LIVEX \"PwDbLine\""},
        {" LIVE \"PwDbLine\"", " LIVE \"PwDbLine\" "},
        {" LIVE \"PwDbLine\"", " LIVE \"PwDbLine"},
        {"\nOBJECT ", "\nOBJECT  "},
        {"\nOBJECT ", "\nOBJECT 0x"},
        {"\nOBJECT ", "\nOBJECT -"},
        {"\nEND OBJECT\n", "\nEND OBJECT \n"},
    };
    for (const auto& [from, to] : damage) {
        EXPECT_EQ(ReadBothWays(ReplaceFirst(sampleText, from, to), to), StatusBadFileFormat) << to;
    }
}

// An item count that is one too few or one too many, on an object of a class the process has.
TEST_F(PlxObjectReading, CountsThatDisagreeWithTheClassAreRefused) {
    const size_t at = sampleText.find(" LIVE \"PwDbLine\"");
    ASSERT_NE(at, std::string::npos);
    const size_t countEnd = at;
    const size_t countStart = sampleText.rfind(' ', countEnd - 1) + 1;
    const int count = std::stoi(sampleText.substr(countStart, countEnd - countStart));
    for (int wrong : {count - 1, count + 1, 0}) {
        std::string text = sampleText;
        text.replace(countStart, countEnd - countStart, std::to_string(wrong));
        EXPECT_EQ(ReadBothWays(text, std::to_string(wrong)), StatusBadFileFormat) << wrong;
    }
}

// Objects of a class this process doesn't have become proxies that keep every item.
TEST_F(PlxObjectReading, UnknownClassesReadAsProxies) {
    const std::string text =
        ReplaceAll(sampleText, " LIVE \"PwDbLine\"", " LIVE \"SomebodysLine\" \"PwDbLine\"");
    ASSERT_EQ(ReadBothWays(text, "proxies"), StatusOk);
    PwDbDatabase read;
    ASSERT_EQ(read.plxIn(Path("read.plx").c_str()), StatusOk);
    ASSERT_EQ(read.plxOut(Path("again.plx").c_str(), 16, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_EQ(Read("again.plx").find("\"SomebodysLine\" \"PwDbLine\"") != std::string::npos, true);
    // A chain without the root class is refused, whatever the rest of it.
    EXPECT_EQ(ReadBothWays(
                  ReplaceFirst(text, "\"SomebodysLine\" \"PwDbLine\" \"PwDbEntity\" \"PwDbObject\"",
                               "\"SomebodysLine\" \"PwDbLine\" \"PwDbEntity\""),
                  "no PwDbObject"),
              StatusBadFileFormat);
}

// Random damage to single lines: the two reads agree on every text.
TEST_F(PlxObjectReading, DamagedLinesAreJudgedAlike) {
    std::vector<size_t> lineStarts = {0};
    for (size_t at = sampleText.find('\n'); at + 1 < sampleText.size();
         at = sampleText.find('\n', at + 1)) {
        lineStarts.push_back(at + 1);
    }
    std::mt19937 random(4242);
    const std::string alphabet = "0123456789ABCDEFabcdef -+.eE\"\\\r\nXSDHBILnaif";
    int refused = 0;
    constexpr int kTexts = 600;
    for (int n = 0; n < kTexts; ++n) {
        std::string text = sampleText;
        const size_t line = lineStarts[random() % lineStarts.size()];
        const size_t lineEnd = text.find('\n', line);
        const size_t at = line + random() % (lineEnd - line + 1);
        switch (random() % 4) {
            case 0:
                text[at] = alphabet[random() % alphabet.size()];
                break;
            case 1:
                text.erase(at, 1 + random() % 3);
                break;
            case 2:
                text.insert(at, 1, alphabet[random() % alphabet.size()]);
                break;
            default:
                text.insert(at, text.substr(line, random() % 12));
        }
        refused += ReadBothWays(text, text.substr(line, 60)) == StatusBadFileFormat ? 1 : 0;
    }
    // Both kinds of text are met: damage that is noticed, and damage a spelling absorbs.
    EXPECT_GT(refused, kTexts / 4);
    EXPECT_LT(refused, kTexts);
}

}  // namespace
