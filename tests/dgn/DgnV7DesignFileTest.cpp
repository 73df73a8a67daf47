// Telling design files from V8 files and from other bytes; the control block's units and
// dimension; loading from disk.
#include "modules/dgn/DgnV7DesignFile.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "dgn/DgnTestSupport.h"
#include "support/TempFolderTest.h"
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using DgnWriter::DgnV7Writer;
using Plotwright::StatusOk;

DgnFileKind Classify(const std::vector<uint8_t>& bytes, const wstring& name = u"plan.dgn") {
    return dgnClassifyBytes(bytes, bytes.size(), name);
}

TEST(DgnV7Classify, DesignFilesIn2DAnd3D) {
    EXPECT_EQ(Classify(DgnV7Writer(false).bytes()), DgnFileKind::DesignV7);
    EXPECT_EQ(Classify(DgnV7Writer(true).bytes(), u"no-extension"), DgnFileKind::DesignV7);
}

TEST(DgnV7Classify, AControlBlockMustComeFirstAndFit) {
    std::vector<uint8_t> bytes = DgnV7Writer(false).bytes();
    EXPECT_EQ(dgnClassifyBytes(bytes, 1535, u"a.dgn"), DgnFileKind::NotDgn)
        << "a file shorter than its control block";
    std::vector<uint8_t> wrongLevel = bytes;
    wrongLevel[0] = 9;
    EXPECT_EQ(Classify(wrongLevel), DgnFileKind::NotDgn);
    std::vector<uint8_t> deleted = bytes;
    deleted[1] |= 0x80;
    EXPECT_EQ(Classify(deleted), DgnFileKind::NotDgn);
    std::vector<uint8_t> cellLibrary = bytes;
    cellLibrary[1] = 5;  // a cell library starts with a type 5 on level 8
    EXPECT_EQ(Classify(cellLibrary), DgnFileKind::NotDgn);
    std::vector<uint8_t> tooShort = bytes;
    tooShort[2] = 100;  // a control block too short to reach the units and origin
    tooShort[3] = 0;
    EXPECT_EQ(Classify(tooShort), DgnFileKind::NotDgn);
    EXPECT_EQ(Classify({}), DgnFileKind::NotDgn);
    EXPECT_EQ(Classify({0x08, 0x09}), DgnFileKind::NotDgn);
}

TEST(DgnV7Classify, CompoundDocumentsAreV8WhenNamedOrHoldingADgnStorage) {
    EXPECT_EQ(Classify(dgntest::CompoundDocument(u"Dgn~H"), u"plan.bin"), DgnFileKind::CompoundV8);
    EXPECT_EQ(Classify(dgntest::CompoundDocument(u"Workbook"), u"PLAN.DGN"),
              DgnFileKind::CompoundV8);
    EXPECT_EQ(Classify(dgntest::CompoundDocument(u"Workbook"), u"book.xls"), DgnFileKind::NotDgn);
    std::vector<uint8_t> badSignature = dgntest::CompoundDocument(u"Dgn~H");
    badSignature[7] = 0;
    EXPECT_EQ(Classify(badSignature, u"plan.dgn"), DgnFileKind::NotDgn);
}

TEST(DgnV7Header, UnitsOriginAndDimension) {
    DgnWriter::Units units;
    units.uorPerSubunit = 254;
    units.subunitsPerMaster = 12;
    units.masterName = "ft";
    units.subunitName = "in";
    units.originX = -2147483648.0;
    units.originY = 12345.5;
    units.originZ = 7;
    for (bool threeD : {false, true}) {
        DgnV7Header header;
        ASSERT_EQ(dgnReadHeader(DgnV7Writer(threeD, units).bytes(), header), StatusOk);
        EXPECT_EQ(header.is3d, threeD);
        EXPECT_EQ(header.units.uorPerSubunit, 254);
        EXPECT_EQ(header.units.subunitsPerMaster, 12);
        EXPECT_EQ(header.units.uorPerMaster(), 3048.0);
        EXPECT_EQ(header.units.masterName, u"ft");
        EXPECT_EQ(header.units.subunitName, u"in");
        EXPECT_EQ(header.units.originX, -2147483648.0);
        EXPECT_EQ(header.units.originY, 12345.5);
        EXPECT_EQ(header.units.originZ, 7.0);
    }
}

TEST(DgnV7Header, UnitsBelowOneReadAsOne) {
    DgnWriter::Units units;
    units.uorPerSubunit = 0;
    units.subunitsPerMaster = -5;
    units.masterName = "";
    DgnV7Header header;
    ASSERT_EQ(dgnReadHeader(DgnV7Writer(false, units).bytes(), header), StatusOk);
    EXPECT_EQ(header.units.uorPerSubunit, 1);
    EXPECT_EQ(header.units.subunitsPerMaster, 1);
    EXPECT_EQ(header.units.masterName, u"");
}

TEST(DgnV7Header, RefusedWithoutAControlBlock) {
    DgnV7Header header;
    EXPECT_EQ(dgnReadHeader(dgntest::CompoundDocument(u"Dgn~H"), header),
              Plotwright::StatusBadFileFormat);
    std::shared_ptr<const DgnV7DesignFile> document;
    EXPECT_EQ(DgnV7DesignFile::fromBytes({1, 2, 3}, u"", document),
              Plotwright::StatusBadFileFormat);
    EXPECT_EQ(document, nullptr);
}

class DgnV7FilesOnDisk : public lodeqdbtest::TempFolderTest {
  protected:
    DgnV7FilesOnDisk() : TempFolderTest("dgn-document") {}
    void WriteBytes(const std::string& name, const std::vector<uint8_t>& bytes) {
        Write(name, std::string(bytes.begin(), bytes.end()));
    }
};

TEST_F(DgnV7FilesOnDisk, LoadsAndKeepsTheAbsolutePath) {
    DgnV7Writer dgn(true);
    dgn.addLine(1, {0, 0, 0}, {1, 2, 3});
    ASSERT_TRUE(dgn.save(folder + "/plan.dgn"));
    mkdir((folder + "/sub").c_str(), 0755);
    std::shared_ptr<const DgnV7DesignFile> document;
    ASSERT_EQ(DgnV7DesignFile::load(Path("sub/../plan.dgn"), document), StatusOk);
    EXPECT_EQ(document->path(), Path("plan.dgn"));
    EXPECT_TRUE(document->header().is3d);
    EXPECT_EQ(document->bytes().size(), dgn.bytes().size());
}

TEST_F(DgnV7FilesOnDisk, StatusesOfWhatIsNoDesignFile) {
    std::shared_ptr<const DgnV7DesignFile> document;
    EXPECT_EQ(DgnV7DesignFile::load(Path("missing.dgn"), document), Plotwright::StatusFileNotFound);
    mkdir((folder + "/folder.dgn").c_str(), 0755);
    EXPECT_EQ(DgnV7DesignFile::load(Path("folder.dgn"), document), Plotwright::StatusFileNotFound);
    EXPECT_EQ(DgnV7DesignFile::load(u"", document), Plotwright::StatusFileNotFound);
    Write("empty.dgn", "");
    EXPECT_EQ(DgnV7DesignFile::load(Path("empty.dgn"), document), Plotwright::StatusBadFileFormat);
    WriteBytes("v8.dgn", dgntest::CompoundDocument(u"Dgn~H"));
    EXPECT_EQ(DgnV7DesignFile::load(Path("v8.dgn"), document), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(document, nullptr);
}

TEST_F(DgnV7FilesOnDisk, ClassifiesFilesOnDisk) {
    Plotwright::ErrorStatus status = StatusOk;
    EXPECT_EQ(dgnClassifyFile(Path("missing.dgn"), status), DgnFileKind::NotDgn);
    EXPECT_EQ(status, Plotwright::StatusFileNotFound);
    ASSERT_TRUE(DgnV7Writer(false).save(folder + "/plan.any"));
    EXPECT_EQ(dgnClassifyFile(Path("plan.any"), status), DgnFileKind::DesignV7);
    EXPECT_EQ(status, StatusOk);
    // A compound document whose directory lies beyond the first block read.
    std::vector<uint8_t> far = dgntest::CompoundDocument(u"Dgn~H");
    far[0x30] = 20;  // directory in sector 20: byte 10752
    std::vector<uint8_t> padded(far.begin(), far.begin() + 512);
    padded.resize(10752, 0);
    padded.insert(padded.end(), far.begin() + 512, far.end());
    WriteBytes("far.bin", padded);
    EXPECT_EQ(dgnClassifyFile(Path("far.bin"), status), DgnFileKind::CompoundV8);
    WriteBytes("far.xls", dgntest::CompoundDocument(u"Workbook"));
    EXPECT_EQ(dgnClassifyFile(Path("far.xls"), status), DgnFileKind::NotDgn);
}

}  // namespace
