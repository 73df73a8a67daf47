// Saving in the drawing's own generation or a named one, natively and as exchange files.
#include <lodeqdb/readsave/Saving.h>

#include <gtest/gtest.h>

#include <lodeqdb/identification/FileFormat.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>

namespace {

using Plotwright::StatusOk;

class Saving : public lodeqdbtest::TempFolderTest {
  protected:
    Saving() : TempFolderTest("lodeqdb-saving") {}

    // A drawing read from a file of `version` (native, or exchange for a ".plx" name).
    std::unique_ptr<PwDbDatabase> ReadVersion(int version, const std::string& name) {
        auto made = PwDbAuthoring::createDrawing();
        PwDbAuthoring::addLayer(*made, u"Walls");
        const wstring path = Path(name);
        const auto v = static_cast<PwDb::PwDbPlwVersion>(version);
        const bool exchange = name.size() > 4 && name.substr(name.size() - 4) == ".plx";
        EXPECT_EQ(
            exchange ? made->plxOut(path.c_str(), 16, v) : made->saveAs(path.c_str(), false, v),
            StatusOk);
        auto read = std::make_unique<PwDbDatabase>(false, true);
        EXPECT_EQ(exchange ? read->plxIn(path.c_str()) : read->readPlwFile(path.c_str()), StatusOk);
        return read;
    }
    bool Exists(const std::string& name) const { return LodeUtil::File::Exists(Path(name)); }
    // The generation of a file as the library tells it.
    lode::PlotwrightFileFormat FormatOf(const std::string& name) const {
        return LodeQDBUtil::GetPlotwrightFileFormat(Path(name));
    }
};

TEST_F(Saving, ANameOfNeitherFormatWritesNothing) {
    auto drawing = ReadVersion(33, "a.plw");
    EXPECT_EQ(LodeQDBUtil::DbSaveAsOriginalVersion(*drawing, Path("out.txt")),
              Plotwright::StatusNoSuchVersion);
    EXPECT_FALSE(Exists("out.txt"));
}

TEST_F(Saving, TheOriginalVersionIsChosenByTheName) {
    auto drawing = ReadVersion(27, "a.plw");
    ASSERT_EQ(drawing->closeInput(), StatusOk);
    EXPECT_EQ(LodeQDBUtil::DbSaveAsOriginalVersion(*drawing, Path("a.plw")), StatusOk);
    EXPECT_EQ(FormatOf("a.plw"), lode::FormatGeneration5);
    EXPECT_EQ(LodeQDBUtil::DbSaveAsOriginalVersion(*drawing, Path("a.plx")), StatusOk);
    EXPECT_EQ(FormatOf("a.plx"), lode::FormatGeneration5);
}

TEST_F(Saving, TheHigherNumberOfEachPairIsWritten) {
    auto old = ReadVersion(22, "v22.plw");
    ASSERT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*old, Path("v22.plw")), StatusOk);
    PwDbDatabase again;
    ASSERT_EQ(again.readPlwFile(Path("v22.plw").c_str()), StatusOk);
    EXPECT_EQ(again.originalFileVersion(), 23);
    auto current = ReadVersion(32, "v32.plw");
    ASSERT_EQ(current->closeInput(), StatusOk);
    ASSERT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*current, Path("v32.plw")), StatusOk);
    PwDbDatabase newest;
    ASSERT_EQ(newest.readPlwFile(Path("v32.plw").c_str()), StatusOk);
    EXPECT_EQ(newest.originalFileVersion(), 33);
}

TEST_F(Saving, AnOldNativeDrawingSavedUnderAnExchangeNameIsUnsupported) {
    auto drawing = ReadVersion(21, "a21.plw");
    EXPECT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*drawing, Path("a21.plx")),
              Plotwright::StatusNoSuchVersion);
    EXPECT_FALSE(Exists("a21.plx"));
}

TEST_F(Saving, TheOldestExchangeGenerationWritesNoNativeFile) {
    auto drawing = ReadVersion(16, "a16.plx");
    EXPECT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*drawing, Path("copy.plx")), StatusOk);
    EXPECT_FALSE(Exists("copy.plx"));
}

TEST_F(Saving, ThePreviousVersionSaverIgnoresWhatItCantWrite) {
    auto drawing = ReadVersion(33, "a.plw");
    for (auto format : {lode::FormatCurrent, lode::FormatOldestPlx, lode::FormatUnsupported}) {
        EXPECT_EQ(
            LodeQDBUtil::DbSaveAsPreviousVersionforLODEHOST(*drawing, Path("prev.plw"), format),
            StatusOk);
        EXPECT_FALSE(Exists("prev.plw"));
    }
}

TEST_F(Saving, EveryGenerationIsWrittenAndReadBackAsItself) {
    auto drawing = ReadVersion(33, "a.plw");
    for (int format = lode::FormatOldestPlw; format <= lode::FormatGeneration7; ++format) {
        const auto generation = static_cast<lode::PlotwrightFileFormat>(format);
        const std::string name = std::to_string(format).insert(0, 1, 'g');
        ASSERT_EQ(LodeQDBUtil::DbSaveAsPreviousVersionforLODEHOST(*drawing, Path(name + ".plw"),
                                                                  generation),
                  StatusOk);
        EXPECT_EQ(FormatOf(name + ".plw"), generation);
    }
    for (int format = lode::FormatOldestPlx; format <= lode::FormatCurrent; ++format) {
        const auto generation = static_cast<lode::PlotwrightFileFormat>(format);
        const std::string name = std::to_string(format).insert(0, 1, 'g') + ".plx";
        const Plotwright::ErrorStatus status =
            LodeQDBUtil::DbSaveAsforPLX(*drawing, Path(name), generation);
        if (generation == lode::FormatOldestPlw) {
            EXPECT_EQ(status, Plotwright::StatusNoSuchVersion);
            EXPECT_FALSE(Exists(name));
            continue;
        }
        ASSERT_EQ(status, StatusOk) << format;
        EXPECT_EQ(FormatOf(name), generation);
    }
    // The drawing's own generation is now that of its last save, the seventh.
    ASSERT_EQ(drawing->closeInput(), StatusOk);
    ASSERT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*drawing, Path("a.plw")), StatusOk);
    EXPECT_EQ(FormatOf("a.plw"), lode::FormatGeneration7);
    EXPECT_EQ(
        LodeQDBUtil::DbSaveAsforPLX(*drawing, Path("unsupported.plx"), lode::FormatUnsupported),
        Plotwright::StatusNoSuchVersion);
}

TEST_F(Saving, AnOldDrawingLetsGoOfItsFileBeforeItIsSavedOver) {
    auto made = PwDbAuthoring::createDrawing();
    ASSERT_EQ(made->saveAs(Path("held.plw").c_str(), false, static_cast<PwDb::PwDbPlwVersion>(25)),
              StatusOk);
    PwDbDatabase drawing;
    ASSERT_EQ(drawing.readPlwFile(Path("held.plw").c_str(), PwDbDatabase::OpenModeShareRead),
              StatusOk);
    EXPECT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(drawing, Path("held.plw")), StatusOk);
    EXPECT_EQ(FormatOf("held.plw"), lode::FormatGeneration4);
}

TEST_F(Saving, ToolkitFailuresComeBackUnchanged) {
    auto drawing = ReadVersion(33, "a.plw");
    EXPECT_NE(LodeQDBUtil::DbSaveAsforPLX(*drawing, Path("no/such/folder/a.plx")), StatusOk);
    EXPECT_NE(LodeQDBUtil::DbSaveAsPreviousVersionforLODEHOST(*drawing, Path("no/such/a.plw"),
                                                              lode::FormatGeneration4),
              StatusOk);
}

// A full host that counts the switches of its working database.
class CountingHost : public PwDbHostApplicationServices {
  public:
    int hostKind() const override { return 2; }
    void setWorkingDatabase(PwDbDatabase* database) override {
        ++switches;
        PwDbHostApplicationServices::setWorkingDatabase(database);
    }
    int switches = 0;
};

TEST_F(Saving, AFullHostsWorkingDatabaseStaysThroughout) {
    auto drawing = ReadVersion(27, "a.plw");
    PwDbDatabase working;
    CountingHost host;
    host.setWorkingDatabase(&working);
    host.switches = 0;
    PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(&host);
    EXPECT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*drawing, Path("a.plw")), StatusOk);
    EXPECT_EQ(LodeQDBUtil::DbSaveAsforPLX(*drawing, Path("a.plx")), StatusOk);
    EXPECT_EQ(host.switches, 0);
    EXPECT_EQ(host.workingDatabase(), &working);
    pwdbSetHostApplicationServices(previous);
    host.setWorkingDatabase(nullptr);
}

TEST_F(Saving, UnderTheToolkitAloneTheDrawingWorksWhileItIsSaved) {
    auto drawing = ReadVersion(27, "a.plw");
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    PwDbDatabase other;
    services->setWorkingDatabase(&other);
    EXPECT_EQ(LodeQDBUtil::DbSaveAsforLODEHOST(*drawing, Path("a.plw")), StatusOk);
    EXPECT_EQ(services->workingDatabase(), &other);
    services->setWorkingDatabase(nullptr);
}

}  // namespace
