// Binding the DGN reader module by name, and the probe that must answer even when the module
// faults.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "readsave/DgnBinding.h"
#include <lodeqdb/readsave/DgnModule.h>
#include <lodeqdb/readsave/DgnTranslation.h>
#include <lodeqdb/service/DgnChildren.h>
#include <lodeqdb/service/FileClassification.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileRepath.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"

namespace {

using ProbeCount = int (*)();

// The tests of one stand-in run only in the process ctest starts with it.
void RequireStandIn(const char* variant) {
    const char* actual = std::getenv("DGN_STAND_IN");
    if (actual == nullptr || std::string(actual) != variant) GTEST_SKIP();
}

int StandInCount(const char* name) {
    auto count = reinterpret_cast<ProbeCount>(pwrxServiceSymbol(u"PwDgnIO", name));
    return count != nullptr ? count() : -1;
}

int ProbesSoFar() {
    return StandInCount("StandInProbeCount");
}

const PwDbDgnConvertOptions& OptionsReceived() {
    using Options = const PwDbDgnConvertOptions* (*)();
    return *reinterpret_cast<Options>(pwrxServiceSymbol(u"PwDgnIO", "StandInConvertOptions"))();
}

// The host's root folder, a fresh folder of its own for the test.
class ScopedRootFolder {
  public:
    ScopedRootFolder() {
        char pattern[] = "/tmp/dgn-binding-XXXXXX";
        m_folder = ::mkdtemp(pattern);
        m_before = pwdbHostApplicationServices()->rootFolder();
        pwdbHostApplicationServices()->setRootFolder(wstring(m_folder.begin(), m_folder.end()));
    }
    ~ScopedRootFolder() {
        pwdbHostApplicationServices()->setRootFolder(m_before);
        std::filesystem::remove_all(m_folder);
    }
    std::filesystem::path settings() const { return m_folder + "/Support/DgnSetups.ini"; }

  private:
    std::string m_folder;
    wstring m_before;
};

TEST(DgnBinding, TheModuleIsLoadedOnTheFirstQuestionWithANSWERINGModule) {
    RequireStandIn("answering");
    EXPECT_FALSE(pwrxIsModuleLoaded(kPwDgnModuleName));
    EXPECT_TRUE(LodeQDBUtil::IsDGNFile(u"/srv/site.dgn"));
    EXPECT_TRUE(pwrxIsModuleLoaded(kPwDgnModuleName));
    EXPECT_FALSE(LodeQDBUtil::IsDGNFile(u"/srv/site.plw"));
}

TEST(DgnBinding, AMissingPathGetsTheModulesAnswerWithoutExceptionWithANSWERINGModule) {
    RequireStandIn("answering");
    EXPECT_TRUE(LodeQDBUtil::IsDGNFile(u"/no/such/folder/x.dgn"));
    EXPECT_FALSE(LodeQDBUtil::IsDGNFile(u""));
}

TEST(DgnBinding, ASecondCallGoesThroughTheStoredAddressWithANSWERINGModule) {
    RequireStandIn("answering");
    LodeQDBUtil::IsDGNFile(u"a.dgn");
    const size_t lookups = LodeQDBUtil::detail::DgnEntryLookups();
    const int probes = ProbesSoFar();
    LodeQDBUtil::IsDGNFile(u"b.dgn");
    EXPECT_EQ(LodeQDBUtil::detail::DgnEntryLookups(), lookups);
    EXPECT_EQ(ProbesSoFar(), probes + 1);
}

TEST(DgnBinding, FileTypesAskTheModuleAfterDrawingsAndBeforeDocumentsWithANSWERINGModule) {
    RequireStandIn("answering");
    using LodeQDBService::Request::GetFileType;
    EXPECT_EQ(GetFileType(u"/srv/site.plw"), lode::Plw);
    EXPECT_EQ(GetFileType(u"/srv/dgn-named.plw"), lode::Plw);
    EXPECT_EQ(GetFileType(u"C:\\dgn\\site.PLX"), lode::PlxOrPlf);
    EXPECT_EQ(GetFileType(u"/srv/site.dgn"), lode::Dgn);
    EXPECT_EQ(GetFileType(u"/srv/dgn-inside.pdf"), lode::Dgn);
    EXPECT_EQ(GetFileType(u"/srv/plan.pdf"), lode::Pdf);
    EXPECT_EQ(GetFileType(u"/srv/photo.png"), lode::Image);
    EXPECT_EQ(GetFileType(u"/srv/photo.JPG"), lode::Image);
    EXPECT_EQ(GetFileType(u"/srv/notes.txt"), lode::Unknown);
    EXPECT_EQ(GetFileType(u""), lode::Unknown);
}

TEST(DgnBinding, FileTypesOfDrawingsNeedNoModuleWithMISSINGModule) {
    RequireStandIn("missing");
    using LodeQDBService::Request::GetFileType;
    EXPECT_EQ(GetFileType(u"/srv/site.plw"), lode::Plw);
    EXPECT_EQ(GetFileType(u"/srv/site.plx"), lode::PlxOrPlf);
    EXPECT_THROW(GetFileType(u"/srv/plan.pdf"), lode::InkstoneError);
}

TEST(DgnBinding, AMissingEntryIsAnInkstoneErrorWithANSWERINGModule) {
    RequireStandIn("answering");
    EXPECT_THROW(LodeQDBUtil::BindDgnEntryPoint("DGNNoSuchEntry"), lode::InkstoneError);
}

TEST(DgnBinding, AFaultingProbeAnswersFalseWithFAULTINGModule) {
    RequireStandIn("faulting");
    EXPECT_FALSE(LodeQDBUtil::IsDGNFile(u"/srv/segv.dgn"));
    EXPECT_FALSE(LodeQDBUtil::IsDGNFile(u"/srv/fpe.dgn"));
    EXPECT_FALSE(LodeQDBUtil::IsDGNFile(u"/srv/bus.dgn"));
    // The process goes on sound: the probe runs, and faults, again.
    EXPECT_FALSE(LodeQDBUtil::IsDGNFile(u"/srv/a-long-name-that-lies-on-the-heap-segv.dgn"));
    EXPECT_EQ(ProbesSoFar(), 4);
}

TEST(DgnBinding, AModuleWithoutTheProbeIsAnInkstoneErrorWithNO_ENTRYModule) {
    RequireStandIn("no-entry");
    EXPECT_THROW(LodeQDBUtil::IsDGNFile(u"/srv/site.dgn"), lode::InkstoneError);
    EXPECT_TRUE(pwrxIsModuleLoaded(kPwDgnModuleName));
}

TEST(DgnBinding, AMissingModuleIsAnInkstoneErrorNotAnAnswerWithMISSINGModule) {
    RequireStandIn("missing");
    try {
        LodeQDBUtil::IsDGNFile(u"/srv/site.dgn");
        FAIL() << "no exception";
    } catch (const lode::InkstoneError& error) {
        EXPECT_EQ(error.code(), 0);
    }
}

// Translation through the module's entries.

TEST(DgnBinding, ModelNamesComeInIndexOrderWithoutUnreadableOnesWithANSWERINGModule) {
    RequireStandIn("answering");
    EXPECT_EQ(LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/site.dgn"),
              (std::vector<wstring>{u"Main", u"Sheet"}));
    EXPECT_EQ(StandInCount("StandInOpenFiles"), 0);
    EXPECT_EQ(StandInCount("StandInOpenItems"), 0);
}

TEST(DgnBinding, AFileWithoutModelsGivesNoNamesAndIsClosedWithANSWERINGModule) {
    RequireStandIn("answering");
    EXPECT_TRUE(LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/empty.dgn").empty());
    EXPECT_EQ(StandInCount("StandInOpenFiles"), 0);
}

TEST(DgnBinding, AFileTheModuleRefusesIsInvalidFormatWithANSWERINGModule) {
    RequireStandIn("answering");
    PwDbDatabase drawing(false, true);
    EXPECT_THROW(LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/bad.dgn"), lode::InvalidFormat);
    EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/bad.dgn", u"", drawing),
                 lode::InvalidFormat);
}

TEST(DgnBinding, AnEmptyModelNameTranslatesTheFirstModelWithTheFixedOptionsWithANSWERINGModule) {
    RequireStandIn("answering");
    ScopedRootFolder root;
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/site.dgn", u"", drawing);
    EXPECT_EQ(StandInCount("StandInConvertedItem"), 0);
    const PwDbDgnConvertOptions& options = OptionsReceived();
    EXPECT_EQ(options.cellsAsBlocks, 1);
    EXPECT_EQ(options.unitsMode, 2);
    EXPECT_EQ(options.attachmentsAsUnderlays, 1);
    EXPECT_TRUE(options.layerPrefix.empty());
    EXPECT_EQ(options.targetBlockHandle, 0);
    EXPECT_TRUE(options.cellBlockPrefix.empty());
    EXPECT_EQ(StandInCount("StandInOpenFiles"), 0);
    EXPECT_EQ(StandInCount("StandInOpenItems"), 0);
    // The settings file is there before the module translates.
    EXPECT_TRUE(std::filesystem::exists(root.settings()));
}

TEST(DgnBinding, AnEmptyModelNameTakesAFirstModelWithoutAReadableNameWithANSWERINGModule) {
    RequireStandIn("answering");
    ScopedRootFolder root;
    EXPECT_EQ(LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/unnamed.dgn"),
              std::vector<wstring>{u"Sheet"});
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/unnamed.dgn", u"", drawing);
    EXPECT_EQ(StandInCount("StandInConvertedItem"), 0);
}

TEST(DgnBinding, AResolvedPathIsTakenAsItStandsEvenRelativeWithANSWERINGModule) {
    RequireStandIn("answering");
    const auto children = LodeQDBService::Request::DGNChildren(u"/srv/site.dgn");
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0].GetFullname(), u"found\\here.dgn");
    EXPECT_EQ(children[0].GetRefId(), 7u);
    // Nothing stored and nothing found: the design file's folder.
    EXPECT_EQ(children[1].GetFullname(), LodeUtil::CombineRelative(u"/srv", u""));
    EXPECT_EQ(children[1].GetRefId(), 0u);
}

TEST(DgnBinding, AModelIsFoundByItsExactNameWithANSWERINGModule) {
    RequireStandIn("answering");
    ScopedRootFolder root;
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/site.dgn", u"Sheet", drawing);
    EXPECT_EQ(StandInCount("StandInConvertedItem"), 2);
    EXPECT_EQ(StandInCount("StandInOpenItems"), 0);
    EXPECT_EQ(StandInCount("StandInOpenFiles"), 0);
}

TEST(DgnBinding, AModelNameOfAnotherCaseIsNotFoundAndTheFileStaysOpenWithANSWERINGModule) {
    RequireStandIn("answering");
    ScopedRootFolder root;
    PwDbDatabase drawing(false, true);
    const int open = StandInCount("StandInOpenFiles");
    EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/site.dgn", u"sheet", drawing),
                 lode::NotFound);
    EXPECT_EQ(StandInCount("StandInOpenFiles"), open + 1);
    EXPECT_EQ(StandInCount("StandInOpenItems"), 0) << "every item passed is closed";
    EXPECT_FALSE(std::filesystem::exists(root.settings())) << "nothing translated";
}

TEST(DgnBinding, NoModelsOrANullFirstModelIsNotFoundWithANSWERINGModule) {
    RequireStandIn("answering");
    ScopedRootFolder root;
    PwDbDatabase drawing(false, true);
    EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/empty.dgn", u"Main", drawing),
                 lode::NotFound);
    EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/null-item.dgn", u"", drawing),
                 lode::NotFound);
}

TEST(DgnBinding, AFailedTranslationIsAPlotwrightExceptionWithItsStatusWithANSWERINGModule) {
    RequireStandIn("answering");
    ScopedRootFolder root;
    PwDbDatabase drawing(false, true);
    const int open = StandInCount("StandInOpenFiles");
    try {
        LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/fail.dgn", u"Main", drawing);
        FAIL() << "no exception";
    } catch (const lode::PlotwrightException& error) {
        EXPECT_EQ(error.status(), Plotwright::StatusNotApplicable);
    }
    EXPECT_EQ(StandInCount("StandInOpenFiles"), open) << "closed before the exception";
}

TEST(DgnBinding, TranslationWithoutTheModuleIsAnInkstoneErrorWithMISSINGModule) {
    RequireStandIn("missing");
    PwDbDatabase drawing(false, true);
    EXPECT_THROW(LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/site.dgn"), lode::InkstoneError);
    EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/site.dgn", u"", drawing),
                 lode::InkstoneError);
}

TEST(DgnBinding, ReadingAttachmentsWithoutTheModuleIsAFileErrorNotInkstoneWithMISSINGModule) {
    RequireStandIn("missing");
    PwDbDgnRefFileRepath repath;
    EXPECT_THROW(LodeQDBUtil::ReadDGNFile(u"/srv/site.dgn", repath), lode::ReadError);
}

TEST(DgnBinding, TranslationWithoutItsEntriesIsAnInkstoneErrorWithNO_ENTRYModule) {
    RequireStandIn("no-entry");
    PwDbDatabase drawing(false, true);
    EXPECT_THROW(LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/site.dgn"), lode::InkstoneError);
    EXPECT_THROW(LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/site.dgn", u"", drawing),
                 lode::InkstoneError);
}

TEST(DgnBinding, AFaultInTheReferenceCallIsAReadErrorWithFAULTINGModule) {
    RequireStandIn("faulting");
    EXPECT_THROW(LodeQDBService::Request::DGNChildren(u"/srv/segv.dgn"), lode::ReadError);
    EXPECT_THROW(LodeQDBService::Request::DGNChildren(u"/srv/fpe.dgn"), lode::ReadError);
}

}  // namespace
