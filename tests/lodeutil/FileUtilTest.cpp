// Tests for the extension-based file kind checks.
#include <lodeqdb/lodeutil/FileUtil.h>

#include <gtest/gtest.h>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil {
namespace {

TEST(FileUtilTest, GetFileExtensionKeepsTheDotAndTheCase) {
    EXPECT_EQ(FileUtil::GetFileExtension(u"C:\\proj\\Host.PLW"), u".PLW");
    EXPECT_EQ(FileUtil::GetFileExtension(u"/home/a/x.plx"), u".plx");
    EXPECT_EQ(FileUtil::GetFileExtension(u"archive.tar.gz"), u".gz");
    EXPECT_EQ(FileUtil::GetFileExtension(u"a.b\\c"), u"");
    EXPECT_EQ(FileUtil::GetFileExtension(u"name."), u"");
    EXPECT_EQ(FileUtil::GetFileExtension(u""), u"");
}

TEST(FileUtilTest, GetFileExtensionAgreesWithPathGetExtension) {
    const char16_t* const paths[] = {u"C:\\a\\b.plw",          u"x.PLW",   u".bashrc", u"a.b/c",
                                     u"\\\\srv\\share\\d.pdf", u"C:x.tif", u"/a/b..c", u"C:\\"};
    for (const char16_t* path : paths) {
        SCOPED_TRACE(Utf8FromUtf16(path));
        EXPECT_EQ(FileUtil::GetFileExtension(path), Path::GetExtension(path));
    }
}

struct KindCase {
    const char16_t* extension;
    bool plw;
    bool plx;
    bool pdf;
    bool image;
};

const KindCase kKindCases[] = {
    {u".plw", true, false, false, false},
    {u".PLW", true, false, false, false},
    {u".Plw", true, false, false, false},
    {u"plw", true, false, false, false},
    {u"PlW", true, false, false, false},
    {u".plx", false, true, false, false},
    {u"PLX", false, true, false, false},
    {u".pdf", false, false, true, false},
    {u".PDF", false, false, true, false},
    {u"pdf", false, false, true, false},
    {u".bmp", false, false, false, true},
    {u".jpg", false, false, false, true},
    {u".JPEG", false, false, false, true},
    {u"png", false, false, false, true},
    {u".tif", false, false, false, true},
    {u".TIFF", false, false, false, true},
    {u".gif", false, false, false, true},
    {u".jp2", false, false, false, true},
    {u".webp", false, false, false, true},
    // Neither a path, nor a near miss, nor non-ASCII look-alikes count.
    {u"a.plw", false, false, false, false},
    {u"C:\\a.plw", false, false, false, false},
    {u"", false, false, false, false},
    {u".", false, false, false, false},
    {u".plwx", false, false, false, false},
    {u".pl", false, false, false, false},
    {u"..plw", false, false, false, false},
    {u" .plw", false, false, false, false},
    {u".plw ", false, false, false, false},
    {u".pdf.", false, false, false, false},
    {u".txt", false, false, false, false},
    {u".PL\u0174", false, false, false, false},            // W with circumflex
    {u".\uFF50\uFF4C\uFF57", false, false, false, false},  // full-width plw
    {u".p\xD800w", false, false, false, false},            // lone surrogate
    {u".gi\u0192", false, false, false, false},
    {u".j2\u212A", false, false, false, false},  // Kelvin sign, which Unicode folds to k
};

TEST(FileUtilTest, KindChecksTakeAnExtensionInAnyCase) {
    for (const KindCase& c : kKindCases) {
        const wstring extension = c.extension;
        SCOPED_TRACE("extension: " + Utf8FromUtf16(extension));
        EXPECT_EQ(FileUtil::IsPLWFile(extension), c.plw);
        EXPECT_EQ(FileUtil::IsPLXFile(extension), c.plx);
        EXPECT_EQ(FileUtil::IsPDFFile(extension), c.pdf);
        EXPECT_EQ(FileUtil::IsImageFile(extension), c.image);
    }
}

TEST(FileUtilTest, EveryDocumentedImageExtensionIsAccepted) {
    const char16_t* const images[] = {u"bmp", u"dib",  u"gif", u"jpg", u"jpeg",
                                      u"jpe", u"jfif", u"jp2", u"j2k", u"png",
                                      u"tif", u"tiff", u"pcx", u"tga", u"webp"};
    for (const char16_t* image : images) {
        SCOPED_TRACE(Utf8FromUtf16(image));
        EXPECT_TRUE(FileUtil::IsImageFile(image));
        EXPECT_TRUE(FileUtil::IsImageFile(wstring(u".") + image));
        EXPECT_FALSE(FileUtil::IsPLWFile(image));
    }
}

TEST(FileUtilTest, ExtensionOfAPathFeedsTheKindChecks) {
    EXPECT_TRUE(FileUtil::IsPLWFile(FileUtil::GetFileExtension(u"D:\\proj\\HOST.PLW")));
    EXPECT_TRUE(FileUtil::IsPDFFile(FileUtil::GetFileExtension(u"/out/sheet.Pdf")));
    EXPECT_FALSE(FileUtil::IsPLWFile(FileUtil::GetFileExtension(u"D:\\x.plw\\readme")));
    EXPECT_FALSE(FileUtil::IsImageFile(FileUtil::GetFileExtension(u"png")));
}

}  // namespace
}  // namespace LodeUtil
