// Image headers of every supported format, and of everything that only looks like one.
#include <lodeqdb/toolkit/image/PwDbImageFileHeader.h>

#include <gtest/gtest.h>

#include <sys/stat.h>

#include <random>

#include "ImageFiles.h"
#include "support/TempFolderTest.h"

namespace {

using namespace pwdbimagetest;

struct Sample {
    const char* name;
    std::string bytes;
    PwDbImageFormat format;
    uint32_t width, height;
};

std::vector<Sample> Samples() {
    return {{"png", Png(3, 2), PwDbImageFormat::Png, 3, 2},
            {"jpeg", Jpeg(640, 480), PwDbImageFormat::Jpeg, 640, 480},
            {"gif", Gif(5, 7), PwDbImageFormat::Gif, 5, 7},
            {"bmp", Bmp(4, 3), PwDbImageFormat::Bmp, 4, 3},
            {"bmp-top-down", Bmp(4, -3), PwDbImageFormat::Bmp, 4, 3},
            {"bmp-core", BmpCore(6, 2), PwDbImageFormat::Bmp, 6, 2},
            {"tiff-le", Tiff(3, 5, true), PwDbImageFormat::Tiff, 3, 5},
            {"tiff-be", Tiff(7, 2, false), PwDbImageFormat::Tiff, 7, 2}};
}

TEST(ImageHeaders, EachFormatGivesItsSize) {
    for (const Sample& sample : Samples()) {
        PwDbImageFileInfo info;
        ASSERT_TRUE(pwdbReadImageHeader(sample.bytes, info)) << sample.name;
        EXPECT_EQ(info.format, sample.format) << sample.name;
        EXPECT_EQ(info.width, sample.width) << sample.name;
        EXPECT_EQ(info.height, sample.height) << sample.name;
    }
}

TEST(ImageHeaders, EveryPrefixGivesNoImageOrTheRightOne) {
    for (const Sample& sample : Samples()) {
        for (size_t size = 0; size < sample.bytes.size(); ++size) {
            PwDbImageFileInfo info;
            if (!pwdbReadImageHeader(std::string_view(sample.bytes).substr(0, size), info))
                continue;
            EXPECT_EQ(info.format, sample.format) << sample.name << " " << size;
            EXPECT_EQ(info.width, sample.width) << sample.name << " " << size;
            EXPECT_EQ(info.height, sample.height) << sample.name << " " << size;
        }
    }
}

TEST(ImageHeaders, RandomBytesAreNoImageWithoutHarm) {
    std::mt19937 random(20261121);
    int images = 0;
    for (int round = 0; round < 2000; ++round) {
        std::string bytes(random() % 200, '\0');
        for (char& byte : bytes) byte = static_cast<char>(random());
        if (round % 4 == 1) bytes.replace(0, std::min<size_t>(bytes.size(), 2), "\xFF\xD8");
        if (round % 4 == 2)
            bytes.replace(0, std::min<size_t>(bytes.size(), 4), std::string("II*\0", 4));
        if (round % 4 == 3) bytes.replace(0, std::min<size_t>(bytes.size(), 2), "BM");
        PwDbImageFileInfo info;
        if (pwdbReadImageHeader(bytes, info)) {
            ++images;
            EXPECT_GT(info.width, 0u);
            EXPECT_GT(info.height, 0u);
        }
    }
    EXPECT_LT(images, 2000);
}

TEST(ImageHeaders, LyingLengthsAndOffsetsAreNoImage) {
    PwDbImageFileInfo info;
    // A JPEG segment whose length runs past the end, before any frame header.
    EXPECT_FALSE(pwdbReadImageHeader(std::string("\xFF\xD8\xFF\xE0\xFF\xF0JFIF", 10), info));
    // A JPEG segment length below its own two bytes.
    EXPECT_FALSE(pwdbReadImageHeader(std::string("\xFF\xD8\xFF\xE0\x00\x01\x00\x00", 8), info));
    // Scan data before any frame header.
    EXPECT_FALSE(pwdbReadImageHeader(std::string("\xFF\xD8\xFF\xDA\x00\x02", 6), info));
    // A TIFF directory beyond the bytes, and one before the header's end.
    EXPECT_FALSE(pwdbReadImageHeader(std::string("II*\0\xFF\xFF\xFF\x7F", 8), info));
    EXPECT_FALSE(pwdbReadImageHeader(std::string("MM\0*\0\0\0\x04", 8), info));
    // A TIFF that promises many entries and ends.
    EXPECT_FALSE(pwdbReadImageHeader(std::string("II*\0\x08\0\0\0\xFF\xFF", 10), info));
    // Sizes of 0 in each format.
    EXPECT_FALSE(pwdbReadImageHeader(Png(0, 5), info));
    EXPECT_FALSE(pwdbReadImageHeader(Gif(3, 0), info));
    EXPECT_FALSE(pwdbReadImageHeader(Bmp(0, 2), info));
    EXPECT_FALSE(pwdbReadImageHeader(Jpeg(0, 2), info));
    EXPECT_FALSE(pwdbReadImageHeader(Tiff(0, 0, true), info));
    EXPECT_FALSE(pwdbReadImageHeader("", info));
    EXPECT_EQ(info.format, PwDbImageFormat::Unknown);
}

class ImageFileHeaders : public lodeqdbtest::TempFolderTest {
  protected:
    ImageFileHeaders() : TempFolderTest("pwdb-image-headers") {}
};

TEST_F(ImageFileHeaders, FilesAreReadByTheirHeadersWhereverTheTiffDirectoryLies) {
    Write("far.tif", Tiff(9, 4, false, 200000));
    PwDbImageFileInfo info;
    ASSERT_EQ(pwdbReadImageFileHeader(Path("far.tif"), info), Plotwright::StatusOk);
    EXPECT_EQ(info.format, PwDbImageFormat::Tiff);
    EXPECT_EQ(info.width, 9u);
    EXPECT_EQ(info.height, 4u);
    Write("a.png", Png(3, 2));
    ASSERT_EQ(pwdbReadImageFileHeader(Path("a.png"), info), Plotwright::StatusOk);
    EXPECT_EQ(info.format, PwDbImageFormat::Png);
}

TEST_F(ImageFileHeaders, APipeIsNotWaitedOn) {
    ASSERT_EQ(mkfifo((folder + "/pipe.png").c_str(), 0600), 0);
    PwDbImageFileInfo info;
    EXPECT_EQ(pwdbReadImageFileHeader(Path("pipe.png"), info), Plotwright::StatusFileNotFound);
}

TEST_F(ImageFileHeaders, EmptyMissingAndFolderPathsAreNoImages) {
    PwDbImageFileInfo info;
    Write("empty.png", "");
    EXPECT_EQ(pwdbReadImageFileHeader(Path("empty.png"), info), Plotwright::StatusBadFileFormat);
    Write("text.png", "just some text");
    EXPECT_EQ(pwdbReadImageFileHeader(Path("text.png"), info), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(pwdbReadImageFileHeader(Path("missing.png"), info), Plotwright::StatusFileNotFound);
    EXPECT_EQ(pwdbReadImageFileHeader(Path(""), info), Plotwright::StatusFileNotFound);
    EXPECT_NE(pwdbReadImageFileHeader(u"", info), Plotwright::StatusOk);
    EXPECT_EQ(info.format, PwDbImageFormat::Unknown);
    EXPECT_STREQ(pwdbImageFormatName(PwDbImageFormat::Tiff), "TIFF");
    EXPECT_STREQ(pwdbImageFormatName(PwDbImageFormat::Unknown), "");
}

}  // namespace
