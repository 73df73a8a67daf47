// Binding the DGN reader module by name, and the probe that must answer even when the module
// faults.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>

#include "platform/LodeExceptions.h"
#include "readsave/DgnModule.h"
#include "service/FileClassification.h"
#include "toolkit/rx/PwRxModules.h"

namespace {

using ProbeCount = int (*)();

// The tests of one stand-in run only in the process ctest starts with it.
void RequireStandIn(const char* variant) {
    const char* actual = std::getenv("DGN_STAND_IN");
    if (actual == nullptr || std::string(actual) != variant) GTEST_SKIP();
}

int ProbesSoFar() {
    auto count = reinterpret_cast<ProbeCount>(pwrxServiceSymbol(u"PwDgnIO", "StandInProbeCount"));
    return count != nullptr ? count() : -1;
}

TEST(DgnBinding, TheModuleIsLoadedOnTheFirstQuestionWithANSWERINGModule) {
    RequireStandIn("answering");
    EXPECT_FALSE(pwrxIsModuleLoaded(LodeQDBUtil::kDgnModuleName));
    EXPECT_TRUE(LodeQDBUtil::IsDGNFile(u"/srv/site.dgn"));
    EXPECT_TRUE(pwrxIsModuleLoaded(LodeQDBUtil::kDgnModuleName));
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
    EXPECT_TRUE(pwrxIsModuleLoaded(LodeQDBUtil::kDgnModuleName));
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

}  // namespace
