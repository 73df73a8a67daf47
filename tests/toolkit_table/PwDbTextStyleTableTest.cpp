// Text styles: the table every drawing has, adding styles, their fields in both file
// formats, and drawings from files written before there were text styles.
#include <gtest/gtest.h>

#include "TableTestSupport.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlxCodec.h"

namespace {

using Plotwright::StatusOk;
using pwdbtabletest::Format;
using pwdbtabletest::Same;

TEST(TextStyles, ANewDrawingHasStandard) {
    PwDbDatabase drawing;
    PwDbTextStyleTable* styles = nullptr;
    ASSERT_EQ(drawing.getSymbolTable(styles, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(styles->objectId(), drawing.textStyleTableId());
    EXPECT_TRUE(styles->ownerId().isNull());
    PwDbTextStyleTableRecord* standard = nullptr;
    ASSERT_EQ(styles->getAt(u"standard", standard, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(standard->objectId(), drawing.standardTextStyleId());
    EXPECT_EQ(wstring(standard->fontName()), u"sans-serif");
    EXPECT_EQ(standard->textHeight(), 0.0);
    EXPECT_EQ(standard->widthFactor(), 1.0);
    standard->close();
    EXPECT_EQ(styles->numRecords(), 1u);
    styles->close();
}

TEST(TextStyles, AuthoringAddsStylesAndRefusesBadOnes) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId titles;
    ASSERT_EQ(PwDbAuthoring::addTextStyle(*drawing, u"Titles", {u"serif", 5.0, 1.2}, &titles),
              StatusOk);
    EXPECT_EQ(PwDbAuthoring::addTextStyle(*drawing, u"TITLES"), Plotwright::StatusDuplicateKey);
    EXPECT_EQ(PwDbAuthoring::addTextStyle(*drawing, u""), Plotwright::StatusInvalidKey);
    EXPECT_EQ(PwDbAuthoring::addTextStyle(*drawing, u"Wide", {u"serif", 0.0, 0.0}),
              Plotwright::StatusInvalidInput);
    EXPECT_EQ(PwDbAuthoring::addTextStyle(*drawing, u"Tall", {u"serif", -1.0, 1.0}),
              Plotwright::StatusInvalidInput);
    EXPECT_EQ(PwDbAuthoring::addTextStyle(*drawing, u"Nameless font", {u"", 1.0, 1.0}),
              Plotwright::StatusInvalidInput);
    PwDbObjectPointer<PwDbTextStyleTableRecord> style(titles, PwDb::OpenForRead);
    ASSERT_EQ(style.openStatus(), StatusOk);
    EXPECT_EQ(style->setTextHeight(2.0), Plotwright::StatusNotOpenForWrite);
    EXPECT_EQ(style->textHeight(), 5.0);
}

class TextStyleFiles : public pwdbtabletest::InBothFormats {};

TEST_P(TextStyleFiles, EveryFieldReadsBack) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbObjectId titles;
    ASSERT_EQ(
        PwDbAuthoring::addTextStyle(*drawing, u"Titles", {u"serif bold", 5.25, 0.875}, &titles),
        StatusOk);
    const auto read = ReadBack(*drawing, "styles");
    EXPECT_EQ(read->textStyleTableId().handle(), drawing->textStyleTableId().handle());
    PwDbObjectPointer<PwDbTextStyleTableRecord> style(Same(*read, titles), PwDb::OpenForRead);
    ASSERT_EQ(style.openStatus(), StatusOk);
    const char16_t* name = nullptr;
    ASSERT_EQ(style->getName(name), StatusOk);
    EXPECT_EQ(wstring(name), u"Titles");
    EXPECT_EQ(wstring(style->fontName()), u"serif bold");
    EXPECT_EQ(style->textHeight(), 5.25);
    EXPECT_EQ(style->widthFactor(), 0.875);
    EXPECT_EQ(style->ownerId(), read->textStyleTableId());
    EXPECT_FALSE(read->standardTextStyleId().isNull());
}

// A drawing whose file has no text style table, as files written before there was one.
TEST_P(TextStyleFiles, AFileWithoutTheTableGetsOneWithStandard) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbDrawingImage image;
    ASSERT_EQ(drawing->captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const size_t all = image.objects.size();
    std::erase_if(image.objects, [](const PwDbObjectRecord& record) {
        return record.classChain.front() == u"PwDbTextStyleTable" ||
               record.classChain.front() == u"PwDbTextStyleTableRecord";
    });
    ASSERT_EQ(image.objects.size(), all - 2);
    std::string bytes;
    const bool native = GetParam() == Format::Native;
    const wstring path = Path(native ? "old.plw" : "old.plx");
    if (native) {
        ASSERT_EQ(pwdbEncodePlw(image, bytes), StatusOk);
    } else {
        ASSERT_EQ(pwdbEncodePlx(image, 17, bytes), StatusOk);
    }
    Write(native ? "old.plw" : "old.plx", bytes);
    PwDbDatabase read;
    ASSERT_EQ(native ? read.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate)
                     : read.plxIn(path.c_str()),
              StatusOk);
    EXPECT_FALSE(read.textStyleTableId().isNull());
    EXPECT_FALSE(read.standardTextStyleId().isNull());
    EXPECT_GE(read.textStyleTableId().handle(), image.handseed) << "new handles only";
    EXPECT_EQ(read.numObjects(), all);
}

INSTANTIATE_TEST_SUITE_P(BothFormats, TextStyleFiles,
                         testing::Values(Format::Native, Format::Exchange),
                         pwdbtabletest::FormatName);

}  // namespace
