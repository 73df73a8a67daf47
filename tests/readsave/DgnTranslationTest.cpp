// The library's DGN calls on design files written to disk and the real DGN module: the models,
// a translation checked entity by entity, the settings file made before it, the attachments
// handed to the repath object.
#include <gtest/gtest.h>

#include <sys/stat.h>

#include <atomic>
#include <cmath>
#include <filesystem>
#include <thread>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/DgnModule.h>
#include <lodeqdb/readsave/DgnSetups.h>
#include <lodeqdb/readsave/DgnTranslation.h>
#include "support/DrawingReadBack.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbText.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileRepath.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using lodeqdbtest::ClassName;
using lodeqdbtest::Entities;
using lodeqdbtest::RecordName;
using lodeqdbtest::ScopedRootFolder;

class DgnTranslationTest : public lodeqdbtest::TempFolderTest {
  protected:
    DgnTranslationTest() : TempFolderTest("dgn-translation") {}

    // A design file of 10 UOR per mm and 1000 mm per m: a line of 2.5 m on level 12, a text
    // on level 3, a cell "DOOR" holding a line, and an attachment of "site-ref.dgn".
    wstring WriteSite(const std::string& name, bool threeD) {
        DgnWriter::DgnV7Writer dgn(threeD);
        dgn.addLine(12, {0, 0, 0}, {25000, 0, threeD ? 5000 : 0});
        dgn.addText(3, {1000, 2000, 0}, "NORTH WING", 3000);
        dgn.beginCell("DOOR", {5000, 0, 0});
        dgn.addLine(4, {5000, 0, 0}, {5000, 9000, 0});
        dgn.endComplex();
        DgnWriter::Attachment attachment;
        attachment.fileName = "site-ref.dgn";
        attachment.logicalName = "SURVEY";
        dgn.addAttachment(attachment);
        EXPECT_TRUE(dgn.save(folder + "/" + name));
        return Path(name);
    }

    std::string SettingsText() const { return Read("root/Support/DgnSetups.ini"); }
};

TEST_F(DgnTranslationTest, AV7FileHasOneModelNamedDefault) {
    const wstring site = WriteSite("site.dgn", false);
    EXPECT_EQ(LodeQDBUtil::GetModelViewNamesFromDGN(site), std::vector<wstring>{u"Default"});
}

// Once the library holds the module's entries, a request to unload the module is refused,
// and every DGN call goes on answering through the entries it holds.
TEST_F(DgnTranslationTest, TheModuleStaysWhileTheLibraryHoldsItsEntries) {
    const wstring site = WriteSite("site.dgn", false);
    ASSERT_TRUE(LodeQDBUtil::IsDGNFile(site));
    ASSERT_EQ(LodeQDBUtil::GetModelViewNamesFromDGN(site), std::vector<wstring>{u"Default"});
    EXPECT_FALSE(pwrxUnloadModule(kPwDgnModuleName));
    EXPECT_TRUE(pwrxIsModuleLoaded(kPwDgnModuleName));
    EXPECT_TRUE(LodeQDBUtil::IsDGNFile(site));
    EXPECT_EQ(LodeQDBUtil::GetModelViewNamesFromDGN(site), std::vector<wstring>{u"Default"});
    ScopedRootFolder root(Path("root"));
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(site, u"", drawing);
    EXPECT_FALSE(Entities(drawing.modelSpaceId()).empty());
    // The toolkit's own call into the module binds the same way and pins it too.
    PwArray<PwDbDgnRefFileData*> references(0, 4);
    EXPECT_EQ(pwdbGetDgnFileReferences(site.c_str(), nullptr, references), Plotwright::StatusOk);
    pwdbDeleteDgnFileReferences(references);
    EXPECT_FALSE(pwrxUnloadModule(kPwDgnModuleName));
    EXPECT_TRUE(LodeQDBUtil::IsDGNFile(site));
}

// Different threads may ask at once, the first asks of each binding the module's entry: each
// gets the module's answer.
TEST_F(DgnTranslationTest, ThreadsAskingAtOnceAllGetTheAnswer) {
    const wstring site = WriteSite("site.dgn", false);
    std::vector<std::thread> threads;
    std::atomic<int> answeredTrue{0};
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([&] {
            if (LodeQDBUtil::IsDGNFile(site) &&
                LodeQDBUtil::GetModelViewNamesFromDGN(site) == std::vector<wstring>{u"Default"}) {
                ++answeredTrue;
            }
        });
    }
    for (std::thread& thread : threads) thread.join();
    EXPECT_EQ(answeredTrue.load(), 8);
}

TEST_F(DgnTranslationTest, FilesThatAreNoV7DesignFilesAreInvalidFormat) {
    Write("notes.dgn", "just some text that is no design file");
    Write("v8.dgn", std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(1024, '\0'));
    PwDbDatabase drawing(false, true);
    for (const char* name : {"notes.dgn", "v8.dgn", "missing.dgn"}) {
        EXPECT_THROW(LodeQDBUtil::GetModelViewNamesFromDGN(Path(name)), lode::InvalidFormat)
            << name;
        EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(Path(name), u"", drawing),
                     lode::InvalidFormat)
            << name;
    }
}

TEST_F(DgnTranslationTest, A2DFileIsTranslatedEntityByEntityInMasterUnits) {
    const wstring site = WriteSite("site.dgn", false);
    ScopedRootFolder root(Path("root"));
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(site, u"", drawing);
    const std::vector<PwDbObjectId> model = Entities(drawing.modelSpaceId());
    ASSERT_EQ(model.size(), 4u);

    PwDbObjectPointer<PwDbLine> line(model[0], PwDb::OpenForRead);
    ASSERT_EQ(line.openStatus(), Plotwright::StatusOk);
    EXPECT_DOUBLE_EQ(line->startPoint().x, 0.0);
    EXPECT_DOUBLE_EQ(line->endPoint().x, 2.5);
    EXPECT_EQ(RecordName(line->layerId()), u"Level 12");

    PwDbObjectPointer<PwDbText> text(model[1], PwDb::OpenForRead);
    ASSERT_EQ(text.openStatus(), Plotwright::StatusOk);
    EXPECT_EQ(wstring(text->textString()), u"NORTH WING");
    EXPECT_DOUBLE_EQ(text->position().x, 0.1);
    EXPECT_DOUBLE_EQ(text->position().y, 0.2);
    EXPECT_EQ(RecordName(text->layerId()), u"Level 3");

    PwDbObjectPointer<PwDbBlockReference> door(model[2], PwDb::OpenForRead);
    ASSERT_EQ(door.openStatus(), Plotwright::StatusOk);
    EXPECT_EQ(RecordName(door->blockTableRecord()), u"DOOR");
    EXPECT_DOUBLE_EQ(door->position().x, 0.5);
    ASSERT_EQ(Entities(door->blockTableRecord()).size(), 1u);
    EXPECT_EQ(ClassName(Entities(door->blockTableRecord())[0]), u"PwDbLine");

    PwDbObjectPointer<PwDbUnderlayReference> underlay(model[3], PwDb::OpenForRead);
    ASSERT_EQ(underlay.openStatus(), Plotwright::StatusOk);
    PwDbObjectPointer<PwDbDgnDefinition> definition(underlay->definitionId(), PwDb::OpenForRead);
    ASSERT_EQ(definition.openStatus(), Plotwright::StatusOk);
    EXPECT_EQ(wstring(definition->getSourceFileName()), u"site-ref.dgn") << "not found: as stored";
    EXPECT_EQ(wstring(definition->getItemName()), u"Default");
}

TEST_F(DgnTranslationTest, A3DFileKeepsItsHeights) {
    const wstring site = WriteSite("site3d.dgn", true);
    ScopedRootFolder root(Path("root"));
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(site, u"Default", drawing);
    const std::vector<PwDbObjectId> model = Entities(drawing.modelSpaceId());
    ASSERT_EQ(model.size(), 4u);
    PwDbObjectPointer<PwDbLine> line(model[0], PwDb::OpenForRead);
    ASSERT_EQ(line.openStatus(), Plotwright::StatusOk);
    EXPECT_DOUBLE_EQ(line->endPoint().x, 2.5);
    EXPECT_DOUBLE_EQ(line->endPoint().z, 0.5);
}

TEST_F(DgnTranslationTest, AModelNameMustMatchExactly) {
    const wstring site = WriteSite("site.dgn", false);
    ScopedRootFolder root(Path("root"));
    PwDbDatabase drawing(false, true);
    try {
        LodeQDBUtil::ReadDGNToPlwDatabase(site, u"default", drawing);
        FAIL() << "no exception";
    } catch (const lode::NotFound& error) {
        EXPECT_NE(error.message().find(u"default"), wstring::npos) << "names the model";
        EXPECT_EQ(error.message().find(u"site.dgn"), wstring::npos) << "not the file";
    }
    EXPECT_TRUE(Entities(drawing.modelSpaceId()).empty());
}

TEST_F(DgnTranslationTest, TheReportCountsWhatBecameWhat) {
    const wstring site = WriteSite("site.dgn", false);
    ScopedRootFolder root(Path("root"));
    PwDbDatabase drawing(false, true);
    std::vector<LodeQDBUtil::DgnConvertRow> report;
    LodeQDBUtil::ReadDGNToPlwDatabase(site, u"", drawing, report);
    const auto count = [&](int32_t type, const wstring& className) {
        for (const auto& row : report) {
            if (row.elementType == type && row.className == className) return row.count;
        }
        return 0u;
    };
    EXPECT_EQ(count(3, u"PwDbLine"), 2u) << "the line and the cell's line";
    EXPECT_EQ(count(17, u"PwDbText"), 1u);
    EXPECT_EQ(count(2, u"PwDbBlockReference"), 1u);
    EXPECT_EQ(count(5, u"PwDbUnderlayReference"), 1u);
}

// The settings file.

TEST_F(DgnTranslationTest, TheSettingsFolderAndFileAreMadeWithMasterUnits) {
    ScopedRootFolder root(Path("root"));
    EXPECT_EQ(LodeQDBUtil::EnsureDgnSetups(), Path("root") + u"\\Support\\DgnSetups.ini");
    EXPECT_EQ(SettingsText(), "[IMPORTSECTION]\nIsMasterUnits=1\n");
}

TEST_F(DgnTranslationTest, AnExistingSupportFolderGetsTheFileAlone) {
    ASSERT_EQ(::mkdir((folder + "/root").c_str(), 0777), 0);
    ASSERT_EQ(::mkdir((folder + "/root/Support").c_str(), 0777), 0);
    Write("root/Support/other.ini", "[X]\nY=2\n");
    ScopedRootFolder root(Path("root"));
    LodeQDBUtil::EnsureDgnSetups();
    EXPECT_EQ(SettingsText(), "[IMPORTSECTION]\nIsMasterUnits=1\n");
    EXPECT_EQ(Read("root/Support/other.ini"), "[X]\nY=2\n");
}

TEST_F(DgnTranslationTest, ASecondTranslationLeavesAChangedSettingsFileAsItIs) {
    const wstring site = WriteSite("site.dgn", false);
    ScopedRootFolder root(Path("root"));
    {
        PwDbDatabase first(false, true);
        LodeQDBUtil::ReadDGNToPlwDatabase(site, u"", first);
    }
    const std::string changed = "; edited by hand\n[IMPORTSECTION]\nIsMasterUnits=0\n";
    Write("root/Support/DgnSetups.ini", changed);
    PwDbDatabase second(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(site, u"", second);
    EXPECT_EQ(SettingsText(), changed);
    // The module read the changed file: units of resolution.
    PwDbObjectPointer<PwDbLine> line(Entities(second.modelSpaceId())[0], PwDb::OpenForRead);
    ASSERT_EQ(line.openStatus(), Plotwright::StatusOk);
    EXPECT_DOUBLE_EQ(line->endPoint().x, 25000.0);
}

TEST_F(DgnTranslationTest, ARootFolderWrittenWithBackslashesWorks) {
    ScopedRootFolder root(Path("host") + u"\\config");
    LodeQDBUtil::EnsureDgnSetups();
    EXPECT_EQ(Read("host/config/Support/DgnSetups.ini"), "[IMPORTSECTION]\nIsMasterUnits=1\n");
}

TEST_F(DgnTranslationTest, AHostWithoutARootFolderGetsNoSettingsFolder) {
    const bool before = std::filesystem::exists("/Support");
    ScopedRootFolder root(u"");
    EXPECT_EQ(LodeQDBUtil::EnsureDgnSetups(), u"\\Support\\DgnSetups.ini");
    EXPECT_EQ(std::filesystem::exists("/Support"), before)
        << "nothing made at the file system's root";
}

TEST_F(DgnTranslationTest, ASettingsFileThatCantBeMadeDoesntStopTheTranslation) {
    Write("root", "a file where the root folder should be");
    const wstring site = WriteSite("site.dgn", false);
    ScopedRootFolder root(Path("root"));
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(site, u"", drawing);
    EXPECT_EQ(Entities(drawing.modelSpaceId()).size(), 4u);
}

// Attachments through the repath object.

TEST_F(DgnTranslationTest, ReadDgnFileHandsTheAttachmentsToTheRepathObject) {
    const wstring site = WriteSite("site.dgn", false);
    DgnWriter::DgnV7Writer reference(false);
    reference.addLine(1, {0, 0, 0}, {1, 1, 0});
    ASSERT_TRUE(reference.save(folder + "/site-ref.dgn"));
    PwDbDgnRefFileRepath repath;
    LodeQDBUtil::ReadDGNFile(site, repath);
    ASSERT_EQ(repath.numReferences(), 1u);
    EXPECT_EQ(repath.reference(0)->storedPath.toWString(), u"site-ref.dgn");
    EXPECT_EQ(repath.reference(0)->resolvedPath.toWString(), Path("site-ref.dgn"));
    EXPECT_EQ(repath.reference(0)->logicalName.toWString(), u"SURVEY");
}

TEST_F(DgnTranslationTest, ReadDgnFileTurnsStatusesIntoFileErrors) {
    Write("notes.dgn", "no design file");
    PwDbDgnRefFileRepath repath;
    EXPECT_THROW(LodeQDBUtil::ReadDGNFile(Path("missing.dgn"), repath), lode::NotFound);
    EXPECT_THROW(LodeQDBUtil::ReadDGNFile(Path("notes.dgn"), repath), lode::InvalidFormat);
    EXPECT_EQ(repath.numReferences(), 0u);
}

}  // namespace
