// Loading references again from disk, directly and through the module "PwXopen.qmx".
#include <gtest/gtest.h>

#include "XrefTestSupport.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using namespace pwdbxreftest;
using Plotwright::StatusOk;

using OpenXrefFile = Plotwright::ErrorStatus (*)(PwArray<PwDbObjectId>, bool);

PwArray<PwDbObjectId> Ids(std::initializer_list<PwDbObjectId> ids) {
    PwArray<PwDbObjectId> array(0, 8);
    for (PwDbObjectId id : ids) array.append(id);
    return array;
}

class XrefReload : public XrefFolderTest {};

TEST_F(XrefReload, ALoadedReferenceIsReadAgainInPlace) {
    WriteDrawing("x.plw", {}, u"old");
    WriteDrawing("a.plw", {{u"FIRST", u"x.plw"}, {u"SECOND", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbDatabase* x = LoadedFor(*a, u"FIRST");
    WriteDrawing("x.plw", {}, u"new");
    EXPECT_EQ(pwdbReloadXrefs(Ids({Block(*a, u"FIRST")->objectId()})), StatusOk);
    EXPECT_EQ(LoadedFor(*a, u"FIRST"), x);
    EXPECT_EQ(MarkerOf(x), u"new");
    EXPECT_EQ(LoadedFor(*a, u"SECOND"), x);
}

TEST_F(XrefReload, ReferencesNewInTheReadDrawingAreResolved) {
    WriteDrawing("y.plw", {}, u"Y");
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    WriteDrawing("x.plw", {{u"Y", u"y.plw"}, {u"BACK", u"a.plw"}}, u"X2");
    EXPECT_EQ(pwdbReloadXrefs(Ids({Block(*a, u"X")->objectId()})), StatusOk);
    PwDbDatabase* x = LoadedFor(*a, u"X");
    EXPECT_EQ(MarkerOf(x), u"X2");
    EXPECT_EQ(MarkerOf(LoadedFor(*x, u"Y")), u"Y");
    EXPECT_EQ(StatusOf(*x, u"BACK"), PwDb::XrefFilePresentUnresolved);
}

TEST_F(XrefReload, AMissingReferenceIsTriedAgain) {
    WriteDrawing("a.plw", {{u"LATER", u"later.plw"}});
    auto a = OpenResolved("a.plw");
    ASSERT_EQ(StatusOf(*a, u"LATER"), PwDb::XrefFileMissing);
    WriteDrawing("later.plw", {}, u"here");
    EXPECT_EQ(pwdbReloadXrefs(Ids({Block(*a, u"LATER")->objectId()})), StatusOk);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"LATER")), u"here");
}

TEST_F(XrefReload, AnUnloadedReferenceLosesItsMark) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    {
        PwDbObjectPointer<PwDbBlockTableRecord> block(Block(*a, u"X")->objectId(),
                                                      PwDb::OpenForWrite);
        ASSERT_EQ(block->setIsUnloaded(true), StatusOk);
    }
    ASSERT_EQ(StatusOf(*a, u"X"), PwDb::XrefUnloaded);
    EXPECT_EQ(pwdbReloadXrefs(Ids({Block(*a, u"X")->objectId()})), StatusOk);
    EXPECT_EQ(StatusOf(*a, u"X"), PwDb::XrefResolved);
    EXPECT_FALSE(Block(*a, u"X")->isUnloaded());
}

TEST_F(XrefReload, AFileThatWentAwayMakesTheReferenceMissing) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    ASSERT_EQ(std::remove((folder + "/x.plw").c_str()), 0);
    EXPECT_EQ(pwdbReloadXrefs(Ids({Block(*a, u"X")->objectId()})), Plotwright::StatusFileNotFound);
    EXPECT_EQ(StatusOf(*a, u"X"), PwDb::XrefFileMissing);
}

TEST_F(XrefReload, ACorruptFileKeepsTheDrawingThatWasLoaded) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    Write("x.plw", "broken");
    EXPECT_EQ(pwdbReloadXrefs(Ids({Block(*a, u"X")->objectId()})), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(StatusOf(*a, u"X"), PwDb::XrefResolved);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"X")), u"X");
}

TEST_F(XrefReload, IdsThatAreNoReferencesAreRefusedAndTheOthersStillReload) {
    WriteDrawing("x.plw", {}, u"old");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    WriteDrawing("x.plw", {}, u"new");
    EXPECT_EQ(pwdbReloadXrefs(Ids({a->modelSpaceId(), Block(*a, u"X")->objectId()})),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"X")), u"new");
    EXPECT_EQ(pwdbReloadXrefs(Ids({a->layerZeroId()})), Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(pwdbReloadXrefs(Ids({PwDbObjectId()})), Plotwright::StatusNullObjectId);
    EXPECT_EQ(pwdbReloadXrefs(Ids({})), StatusOk);
}

TEST_F(XrefReload, TheModuleIsFoundByNameAndReloadsThroughItsService) {
    WriteDrawing("x.plw", {}, u"old");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    WriteDrawing("x.plw", {}, u"new");

    ASSERT_TRUE(pwrxLoadModule(u"PwXopen.qmx", false, true));
    EXPECT_TRUE(pwrxServiceIsRegistered(u"PlotwrightXopen"));
    auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
    ASSERT_NE(linker, nullptr);
    auto open = reinterpret_cast<OpenXrefFile>(
        linker->getSymbolAddress(u"PlotwrightXopen", "pwdbOpenXrefFile"));
    ASSERT_NE(open, nullptr);
    EXPECT_EQ(linker->getSymbolAddress(u"PlotwrightXopen", "noSuchFunction"), nullptr);

    EXPECT_EQ(open(Ids({Block(*a, u"X")->objectId()}), false), StatusOk);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"X")), u"new");
    EXPECT_EQ(open(Ids({PwDbObjectId()}), true), Plotwright::StatusNullObjectId);
}

}  // namespace
