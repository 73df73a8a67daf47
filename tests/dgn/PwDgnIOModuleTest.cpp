// The module "PwDgnIO.qdb" loaded by name, its entries bound through the service: files,
// items, conversion and its report, references, null and stale handles.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include "dgn/DgnTestSupport.h"
#include "modules/dgn/DgnV7Reader.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"

namespace {

using DgnWriter::DgnV7Writer;
using Plotwright::StatusOk;

class PwDgnIOModuleTest : public lodeqdbtest::TempFolderTest {
  protected:
    PwDgnIOModuleTest() : TempFolderTest("dgn-module") {}
    void SetUp() override {
        TempFolderTest::SetUp();
        ASSERT_TRUE(dgn.bind());
    }
    void WriteBytes(const std::string& name, const std::vector<uint8_t>& bytes) {
        Write(name, std::string(bytes.begin(), bytes.end()));
    }
    std::string Plan() {
        DgnV7Writer plan(false);
        plan.addLine(12, {0, 0}, {10000, 20000});
        plan.addText(3, {0, 0}, "NOTE", 1000);
        plan.addRaw([] {
            std::vector<uint8_t> cone = dgntest::LineElement(0, 0, 0, 0);
            cone[1] = 23;
            return cone;
        }());
        EXPECT_TRUE(plan.save(folder + "/plan.dgn"));
        return folder + "/plan.dgn";
    }

    dgntest::DgnModule dgn;
};

TEST_F(PwDgnIOModuleTest, RegistersItsService) {
    EXPECT_TRUE(pwrxServiceIsRegistered(kPwDgnServiceName));
    EXPECT_TRUE(pwrxIsModuleLoaded(kPwDgnModuleName));
}

TEST_F(PwDgnIOModuleTest, TellsDgnFilesFromEverythingElse) {
    Plan();
    WriteBytes("v8.dgn", dgntest::CompoundDocument(u"Dgn~H"));
    WriteBytes("v8.bin", dgntest::CompoundDocument(u"Dgn~Md"));
    WriteBytes("book.xls", dgntest::CompoundDocument(u"Workbook"));
    Write("empty.dgn", "");
    Write("text.dgn", "not a design file at all");
    mkdir((folder + "/folder.dgn").c_str(), 0755);
    EXPECT_TRUE(dgn.isDgnFile(PwString(Path("plan.dgn"))));
    EXPECT_TRUE(dgn.isDgnFile(PwString(Path("v8.dgn"))));
    EXPECT_TRUE(dgn.isDgnFile(PwString(Path("v8.bin"))));
    EXPECT_FALSE(dgn.isDgnFile(PwString(Path("book.xls"))));
    EXPECT_FALSE(dgn.isDgnFile(PwString(Path("empty.dgn"))));
    EXPECT_FALSE(dgn.isDgnFile(PwString(Path("text.dgn"))));
    EXPECT_FALSE(dgn.isDgnFile(PwString(Path("folder.dgn"))));
    EXPECT_FALSE(dgn.isDgnFile(PwString(Path("missing.dgn"))));
    EXPECT_FALSE(dgn.isDgnFile(PwString()));
}

TEST_F(PwDgnIOModuleTest, LoadsV7FilesAndRefusesTheRest) {
    Plan();
    WriteBytes("v8.dgn", dgntest::CompoundDocument(u"Dgn~H"));
    Write("empty.dgn", "");
    void* file = dgn.loadFile(Path("plan.dgn").c_str(), 0, 0x80000000u, 1);
    ASSERT_NE(file, nullptr);
    EXPECT_EQ(dgn.getItemCount(file), 1u);
    dgn.closeFile(file);
    EXPECT_EQ(dgn.loadFile(Path("v8.dgn").c_str(), 0, 0x80000000u, 1), nullptr)
        << "V8 files are recognised but not read";
    EXPECT_EQ(dgn.loadFile(Path("empty.dgn").c_str(), 0, 0x80000000u, 1), nullptr);
    EXPECT_EQ(dgn.loadFile(Path("missing.dgn").c_str(), 0, 0x80000000u, 1), nullptr);
    EXPECT_EQ(dgn.loadFile(u"", 0, 0x80000000u, 1), nullptr);
}

TEST_F(PwDgnIOModuleTest, ConvertsTheDefaultModelAndReportsIt) {
    Plan();
    void* file = dgn.loadFile(Path("plan.dgn").c_str(), 0, 0x80000000u, 1);
    ASSERT_NE(file, nullptr);
    void* item = dgn.getItem(file, 0);
    ASSERT_NE(item, nullptr);
    EXPECT_EQ(dgn.getItem(file, 1), nullptr);
    PwString name;
    ASSERT_EQ(dgn.getItemName(item, &name), StatusOk);
    EXPECT_EQ(name.toWString(), u"Default");

    uint32_t rowCount = 99;
    ASSERT_EQ(dgn.getConvertReport(item, nullptr, 0, &rowCount), StatusOk);
    EXPECT_EQ(rowCount, 0u) << "nothing converted yet";

    dgn.closeFile(file);  // the item keeps what it needs
    dgntest::ScopedRootFolder noSettings(u"");
    PwDbDatabase drawing;
    PwDbDgnConvertOptions options;  // the library's values
    ASSERT_EQ(dgn.convertItemEx(item, &options, &drawing), StatusOk);
    const auto model = dgntest::Entities(drawing.modelSpaceId());
    ASSERT_EQ(model.size(), 2u);
    PwDbObjectPointer<PwDbLine> line(model[0], PwDb::OpenForRead);
    ASSERT_EQ(line.openStatus(), StatusOk);
    EXPECT_EQ(line->endPoint(), PwGePoint3d(10000, 20000, 0))
        << "units of resolution without settings";
    EXPECT_EQ(dgntest::ClassName(model[1]), u"PwDbText");

    PwDbDgnConvertReportRow rows[8];
    ASSERT_EQ(dgn.getConvertReport(item, rows, 8, &rowCount), StatusOk);
    ASSERT_EQ(rowCount, 3u);
    EXPECT_EQ(rows[0].elementType, kDgnLine);
    EXPECT_EQ(wstring(rows[0].className), u"PwDbLine");
    EXPECT_EQ(rows[0].count, 1u);
    EXPECT_EQ(rows[1].elementType, kDgnText);
    EXPECT_EQ(wstring(rows[1].className), u"PwDbText");
    EXPECT_EQ(rows[2].elementType, 23);
    EXPECT_EQ(rows[2].className[0], u'\0');
    EXPECT_EQ(rows[2].count, 1u);
    // Fewer rows than there are: the count still says how many.
    PwDbDgnConvertReportRow one[1];
    ASSERT_EQ(dgn.getConvertReport(item, one, 1, &rowCount), StatusOk);
    EXPECT_EQ(rowCount, 3u);
    EXPECT_EQ(one[0].elementType, kDgnLine);

    // Refused options leave the drawing and the last report alone.
    options.unitsMode = 9;
    PwDbDatabase untouched;
    const size_t objects = untouched.numObjects();
    EXPECT_EQ(dgn.convertItemEx(item, &options, &untouched), Plotwright::StatusInvalidInput);
    EXPECT_EQ(untouched.numObjects(), objects);
    ASSERT_EQ(dgn.getConvertReport(item, rows, 8, &rowCount), StatusOk);
    EXPECT_EQ(rowCount, 3u);
    dgn.closeItem(item);
}

TEST_F(PwDgnIOModuleTest, NullArgumentsGetAStatusOrNull) {
    Plan();
    void* file = dgn.loadFile(Path("plan.dgn").c_str(), 0, 0x80000000u, 1);
    ASSERT_NE(file, nullptr);
    void* item = dgn.getItem(file, 0);
    ASSERT_NE(item, nullptr);
    PwDbDatabase drawing;
    PwDbDgnConvertOptions options;
    PwString name;
    uint32_t rowCount = 0;
    PwDbDgnConvertReportRow row;
    PwArray<PwDbDgnRefFileData*> references;

    EXPECT_EQ(dgn.loadFile(nullptr, 0, 0x80000000u, 1), nullptr);
    dgn.closeFile(nullptr);
    EXPECT_EQ(dgn.getItemCount(nullptr), 0u);
    EXPECT_EQ(dgn.getItem(nullptr, 0), nullptr);
    dgn.closeItem(nullptr);
    EXPECT_EQ(dgn.getItemName(nullptr, &name), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.getItemName(item, nullptr), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.convertItemEx(nullptr, &options, &drawing), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.convertItemEx(item, nullptr, &drawing), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.convertItemEx(item, &options, nullptr), Plotwright::StatusNullDatabase);
    EXPECT_EQ(dgn.getFileReferences(nullptr, nullptr, references), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.getConvertReport(nullptr, &row, 1, &rowCount), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.getConvertReport(item, &row, 1, nullptr), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.getConvertReport(item, nullptr, 1, &rowCount), Plotwright::StatusInvalidInput);
    EXPECT_TRUE(references.isEmpty());

    // Handles of the wrong kind, and handles already closed, are refused the same way.
    EXPECT_EQ(dgn.getItemCount(item), 0u);
    EXPECT_EQ(dgn.getItemName(file, &name), Plotwright::StatusInvalidInput);
    dgn.closeItem(item);
    dgn.closeFile(file);
    EXPECT_EQ(dgn.getItemCount(file), 0u);
    EXPECT_EQ(dgn.getItem(file, 0), nullptr);
    EXPECT_EQ(dgn.getItemName(item, &name), Plotwright::StatusInvalidInput);
    EXPECT_EQ(dgn.convertItemEx(item, &options, &drawing), Plotwright::StatusInvalidInput);
    dgn.closeItem(item);
    dgn.closeFile(file);
}

TEST_F(PwDgnIOModuleTest, ReferencesThroughTheToolkit) {
    DgnV7Writer host(false);
    DgnWriter::Attachment site;
    site.fileName = "site.dgn";
    site.fileNumber = 1;
    site.logicalName = "SITE";
    site.description = "Site";
    const uint32_t siteWord = host.addAttachment(site);
    DgnWriter::Attachment terrain;
    terrain.asApplicationElement = true;
    terrain.fileName = "D:\\gis\\terrain.dgn";
    terrain.fileNumber = 2;
    terrain.scale = 0.5;
    const uint32_t terrainWord = host.addAttachment(terrain);
    ASSERT_TRUE(host.save(folder + "/host.dgn"));
    ASSERT_TRUE(DgnV7Writer(false).save(folder + "/terrain.dgn"));

    PwArray<PwDbDgnRefFileData*> references;
    ASSERT_EQ(pwdbGetDgnFileReferences(Path("host.dgn").c_str(), nullptr, references), StatusOk);
    ASSERT_EQ(references.length(), 2u);
    const PwDbDgnRefFileData& first = *references[0];
    EXPECT_EQ(first.storedPath.toWString(), u"site.dgn");
    EXPECT_TRUE(first.resolvedPath.isEmpty()) << "no site.dgn anywhere";
    EXPECT_EQ(first.refId, siteWord);
    EXPECT_EQ(first.logicalName.toWString(), u"SITE");
    EXPECT_EQ(first.description.toWString(), u"Site");
    EXPECT_EQ(first.fileNumber, 1);
    EXPECT_EQ(first.elementType, 5);
    const PwDbDgnRefFileData& second = *references[1];
    EXPECT_EQ(second.storedPath.toWString(), u"D:\\gis\\terrain.dgn");
    EXPECT_EQ(second.resolvedPath.toWString(), Path("terrain.dgn")) << "found by its bare name";
    EXPECT_EQ(second.refId, terrainWord);
    EXPECT_EQ(second.elementType, 66);
    EXPECT_DOUBLE_EQ(second.scale, 0.5);

    // A second read identifies the attachments the same way, and appends after what is there.
    ASSERT_EQ(pwdbGetDgnFileReferences(Path("host.dgn").c_str(), nullptr, references), StatusOk);
    ASSERT_EQ(references.length(), 4u);
    EXPECT_EQ(references[2]->refId, first.refId);
    EXPECT_EQ(references[3]->refId, second.refId);
    pwdbDeleteDgnFileReferences(references);
    EXPECT_TRUE(references.isEmpty());
}

TEST_F(PwDgnIOModuleTest, ReferenceStatuses) {
    Plan();
    WriteBytes("v8.dgn", dgntest::CompoundDocument(u"Dgn~H"));
    Write("text.dgn", "not a design file");
    PwArray<PwDbDgnRefFileData*> references;
    EXPECT_EQ(pwdbGetDgnFileReferences(Path("plan.dgn").c_str(), nullptr, references), StatusOk);
    EXPECT_TRUE(references.isEmpty()) << "a file without attachments";
    EXPECT_EQ(pwdbGetDgnFileReferences(Path("missing.dgn").c_str(), nullptr, references),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(pwdbGetDgnFileReferences(Path("v8.dgn").c_str(), nullptr, references),
              Plotwright::StatusBadFileFormat);
    EXPECT_EQ(pwdbGetDgnFileReferences(Path("text.dgn").c_str(), nullptr, references),
              Plotwright::StatusBadFileFormat);
    EXPECT_EQ(pwdbGetDgnFileReferences(nullptr, nullptr, references),
              Plotwright::StatusInvalidInput);
    EXPECT_EQ(pwdbGetDgnFileReferences(u"", nullptr, references), Plotwright::StatusInvalidInput);
    EXPECT_TRUE(references.isEmpty());
    // The module's own entry answers the same.
    EXPECT_EQ(dgn.getFileReferences(Path("missing.dgn").c_str(), nullptr, references),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(dgn.getFileReferences(Path("v8.dgn").c_str(), nullptr, references),
              Plotwright::StatusBadFileFormat);
}

}  // namespace
