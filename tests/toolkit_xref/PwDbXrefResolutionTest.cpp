// Resolving references between drawings on disk: depth, sharing, cycles, missing files and
// every form of stored path.
#include <gtest/gtest.h>
#include <unistd.h>

#include "XrefTestSupport.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

using namespace pwdbxreftest;
using Plotwright::StatusOk;

class XrefResolution : public XrefFolderTest {};

TEST_F(XrefResolution, AChainThreeLevelsDeepLoadsEveryLevel) {
    WriteDrawing("d.plw", {}, u"D");
    WriteDrawing("c.plw", {{u"D", u"d.plw"}}, u"C");
    WriteDrawing("b.plw", {{u"C", u"c.plw"}}, u"B");
    WriteDrawing("a.plw", {{u"B", u"b.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    ASSERT_EQ(StatusOf(*a, u"B"), PwDb::XrefResolved);
    PwDbDatabase* b = LoadedFor(*a, u"B");
    ASSERT_NE(b, nullptr);
    EXPECT_EQ(MarkerOf(b), u"B");
    ASSERT_EQ(StatusOf(*b, u"C"), PwDb::XrefResolved);
    PwDbDatabase* c = LoadedFor(*b, u"C");
    EXPECT_EQ(MarkerOf(c), u"C");
    ASSERT_EQ(StatusOf(*c, u"D"), PwDb::XrefResolved);
    PwDbDatabase* d = LoadedFor(*c, u"D");
    EXPECT_EQ(MarkerOf(d), u"D");
    EXPECT_EQ(wstring(pwdbOriginalXrefFullPathFor(d)), Path("d.plw"));
    EXPECT_EQ(wstring(pwdbOriginalXrefFullPathFor(b)), Path("b.plw"));
    EXPECT_EQ(wstring(pwdbOriginalXrefFullPathFor(a.get())), u"");
    EXPECT_EQ(wstring(pwdbOriginalXrefFullPathFor(nullptr)), u"");
    EXPECT_EQ(pwdbXrefHostFor(d), a.get());
    EXPECT_EQ(pwdbXrefHostFor(a.get()), nullptr);
}

TEST_F(XrefResolution, ADiamondLoadsTheSharedDrawingOnce) {
    WriteDrawing("d.plw", {}, u"D");
    WriteDrawing("b.plw", {{u"D", u"d.plw"}}, u"B");
    WriteDrawing("c.plw", {{u"D", u"./d.plw"}}, u"C");
    WriteDrawing("a.plw", {{u"B", u"b.plw"}, {u"C", u"c.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    PwDbDatabase* b = LoadedFor(*a, u"B");
    PwDbDatabase* c = LoadedFor(*a, u"C");
    ASSERT_NE(b, nullptr);
    ASSERT_NE(c, nullptr);
    PwDbDatabase* fromB = LoadedFor(*b, u"D");
    PwDbDatabase* fromC = LoadedFor(*c, u"D");
    ASSERT_NE(fromB, nullptr);
    EXPECT_EQ(fromB, fromC);
    EXPECT_EQ(MarkerOf(fromB), u"D");
}

TEST_F(XrefResolution, ACycleEndsWithTheReferenceThatWouldCloseIt) {
    WriteDrawing("b.plw", {{u"A", u"a.plw"}}, u"B");
    WriteDrawing("a.plw", {{u"B", u"b.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    ASSERT_EQ(StatusOf(*a, u"B"), PwDb::XrefResolved);
    PwDbDatabase* b = LoadedFor(*a, u"B");
    EXPECT_EQ(StatusOf(*b, u"A"), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(LoadedFor(*b, u"A"), nullptr);
}

TEST_F(XrefResolution, ADrawingThatRefersToItselfIsNotLoadedAgain) {
    WriteDrawing("a.plw", {{u"SELF", u"a.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"SELF"), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(LoadedFor(*a, u"SELF"), nullptr);
}

TEST_F(XrefResolution, AMissingFileGetsItsStatusAndTheRestGoesOn) {
    WriteDrawing("b.plw", {}, u"B");
    WriteDrawing("a.plw", {{u"GONE", u"gone.plw"}, {u"B", u"b.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"GONE"), PwDb::XrefFileMissing);
    EXPECT_EQ(LoadedFor(*a, u"GONE"), nullptr);
    EXPECT_EQ(StatusOf(*a, u"B"), PwDb::XrefResolved);
}

TEST_F(XrefResolution, AFileThatIsNoDrawingStaysUnresolved) {
    Write("junk.plw", "this is not a drawing");
    WriteDrawing("a.plw", {{u"JUNK", u"junk.plw"}, {u"AGAIN", u"junk.plw"}});
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"JUNK"), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(StatusOf(*a, u"AGAIN"), PwDb::XrefFilePresentUnresolved);
}

TEST_F(XrefResolution, RelativePathsWithEitherSeparatorAreFoundBesideTheirHolder) {
    MakeFolder("sub");
    MakeFolder("sub/deeper");
    WriteDrawing("sub/deeper/c.plw", {}, u"C");
    // b lies in sub/: its own references are relative to sub/, not to a.
    WriteDrawing("sub/b.plw", {{u"C", u"deeper\\c.plw"}}, u"B");
    WriteDrawing("a.plw", {{u"SLASH", u"sub/b.plw"}, {u"BACKSLASH", u"sub\\b.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"SLASH"), PwDb::XrefResolved);
    EXPECT_EQ(StatusOf(*a, u"BACKSLASH"), PwDb::XrefResolved);
    PwDbDatabase* b = LoadedFor(*a, u"SLASH");
    EXPECT_EQ(b, LoadedFor(*a, u"BACKSLASH"));
    EXPECT_EQ(wstring(pwdbOriginalXrefFullPathFor(b)), Path("sub/b.plw"));
    EXPECT_EQ(MarkerOf(LoadedFor(*b, u"C")), u"C");
}

TEST_F(XrefResolution, RootedAndRootRelativePathsAreFound) {
    MakeFolder("lib");
    WriteDrawing("lib/x.plw", {}, u"X");
    wstring rootRelative = Path("lib/x.plw");
    for (char16_t& unit : rootRelative)
        if (unit == u'/') unit = u'\\';
    WriteDrawing("a.plw", {{u"ROOTED", Path("lib/x.plw")}, {u"ROOTRELATIVE", rootRelative}});
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"ROOTED"), PwDb::XrefResolved);
    EXPECT_EQ(StatusOf(*a, u"ROOTRELATIVE"), PwDb::XrefResolved);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"ROOTRELATIVE")), u"X");
}

TEST_F(XrefResolution, AStalePathFallsBackOnTheBareNameBesideTheHolder) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"MOVED", u"C:\\old\\place\\x.plw"}});
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"MOVED"), PwDb::XrefResolved);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"MOVED")), u"X");
}

// A host whose file-finding hook knows where URLs are kept.
class UrlServices : public PwDbHostApplicationServices {
  public:
    Plotwright::ErrorStatus findFile(wstring& found, const char16_t* name, PwDbDatabase*,
                                     FindFileHint hint) override {
        if (hint != kXrefDrawing || wstring(name) != u"https://example.com/x.plw")
            return Plotwright::StatusFileNotFound;
        found = local;
        return StatusOk;
    }
    wstring local;
};

TEST_F(XrefResolution, AURLIsMissingUnlessTheHostFindsIt) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"WEB", u"https://example.com/x.plw"}});
    EXPECT_EQ(StatusOf(*OpenResolved("a.plw"), u"WEB"), PwDb::XrefFileMissing);
    UrlServices services;
    services.local = Path("x.plw");
    PwDbHostApplicationServices* previous = pwdbSetHostApplicationServices(&services);
    auto a = OpenResolved("a.plw");
    pwdbSetHostApplicationServices(previous);
    EXPECT_EQ(StatusOf(*a, u"WEB"), PwDb::XrefResolved);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"WEB")), u"X");
}

TEST_F(XrefResolution, OneFileAttachedByTwoBlocksIsOneDatabase) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"FIRST", u"x.plw"}, {u"SECOND", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    ASSERT_NE(LoadedFor(*a, u"FIRST"), nullptr);
    EXPECT_EQ(LoadedFor(*a, u"FIRST"), LoadedFor(*a, u"SECOND"));
}

TEST_F(XrefResolution, AnExchangeFileIsReadAsOne) {
    WriteDrawing("x.plx", {}, u"X");
    WriteDrawing("a.plw", {{u"EXCHANGE", u"x.plx"}});
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"EXCHANGE"), PwDb::XrefResolved);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"EXCHANGE")), u"X");
}

TEST_F(XrefResolution, BeforeResolvingAReferenceIsUnresolved) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    PwDbDatabase a;
    ASSERT_EQ(a.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    EXPECT_EQ(StatusOf(a, u"X"), PwDb::XrefFilePresentUnresolved);
    EXPECT_EQ(LoadedFor(a, u"X"), nullptr);
    EXPECT_EQ(StatusOf(a, u"*Model_Space"), PwDb::XrefNotAnXref);
}

TEST_F(XrefResolution, AnUnloadedReferenceIsPassedOverAndStaysSoInTheFile) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    {
        PwDbDatabase a;
        ASSERT_EQ(a.readPlwFile(Path("a.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
        PwDbObjectPointer<PwDbBlockTableRecord> block(Block(a, u"X")->objectId(),
                                                      PwDb::OpenForWrite);
        ASSERT_EQ(block->setIsUnloaded(true), StatusOk);
        block.release();
        ASSERT_EQ(a.saveAs(Path("a.plw").c_str(), true, PwDb::PwDbPlwVersionCurrent), StatusOk);
    }
    auto a = OpenResolved("a.plw");
    EXPECT_EQ(StatusOf(*a, u"X"), PwDb::XrefUnloaded);
    EXPECT_EQ(LoadedFor(*a, u"X"), nullptr);
    EXPECT_TRUE(Block(*a, u"X")->isUnloaded());
}

TEST_F(XrefResolution, ResolvingAgainKeepsWhatIsLoadedAndTriesWhatIsNot) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}, {u"LATER", u"later.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbDatabase* x = LoadedFor(*a, u"X");
    EXPECT_EQ(StatusOf(*a, u"LATER"), PwDb::XrefFileMissing);
    WriteDrawing("later.plw", {}, u"LATER");
    ASSERT_EQ(pwdbResolveCurrentXRefs(a.get(), false, true), StatusOk);
    EXPECT_EQ(LoadedFor(*a, u"X"), x);
    EXPECT_EQ(StatusOf(*a, u"LATER"), PwDb::XrefResolved);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"LATER")), u"LATER");
}

TEST_F(XrefResolution, ResolvingEverythingReadsLoadedDrawingsAgain) {
    WriteDrawing("x.plw", {}, u"old");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    PwDbDatabase* x = LoadedFor(*a, u"X");
    WriteDrawing("x.plw", {}, u"new");
    ASSERT_EQ(pwdbResolveCurrentXRefs(a.get(), false, true), StatusOk);
    EXPECT_EQ(MarkerOf(LoadedFor(*a, u"X")), u"old");
    ASSERT_EQ(pwdbResolveCurrentXRefs(a.get(), false, false), StatusOk);
    EXPECT_EQ(LoadedFor(*a, u"X"), x);
    EXPECT_EQ(MarkerOf(x), u"new");
}

TEST_F(XrefResolution, ResolvingAReferenceDrawingResolvesItsHostsTree) {
    WriteDrawing("c.plw", {}, u"C");
    WriteDrawing("b.plw", {{u"C", u"c.plw"}}, u"B");
    WriteDrawing("a.plw", {{u"B", u"b.plw"}}, u"A");
    auto a = OpenResolved("a.plw");
    PwDbDatabase* b = LoadedFor(*a, u"B");
    PwDbDatabase* c = LoadedFor(*b, u"C");
    ASSERT_EQ(pwdbResolveCurrentXRefs(b, false, true), StatusOk);
    EXPECT_EQ(LoadedFor(*a, u"B"), b);
    EXPECT_EQ(LoadedFor(*b, u"C"), c);
    EXPECT_EQ(pwdbResolveCurrentXRefs(nullptr, false, true), Plotwright::StatusNullDatabase);
}

TEST_F(XrefResolution, ReadingTheHostAgainLetsItsReferencesGo) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    WriteDrawing("plain.plw", {}, u"plain");
    auto a = OpenResolved("a.plw");
    ASSERT_NE(LoadedFor(*a, u"X"), nullptr);
    ASSERT_EQ(a->readPlwFile(Path("plain.plw").c_str(), PwDbDatabase::OpenModeAlternate), StatusOk);
    EXPECT_EQ(Block(*a, u"X"), nullptr);
    EXPECT_EQ(MarkerOf(a.get()), u"plain");
}

TEST_F(XrefResolution, PathNamesAreKeptExactlyInBothFileFormats) {
    const std::vector<Reference> references = {
        {u"SLASH", u"sub/b.plw"},           {u"BACKSLASH", u"..\\lib\\x.plw"},
        {u"ROOTRELATIVE", u"\\lib\\x.plw"}, {u"DRIVE", u"C:\\proj\\x.plw"},
        {u"UNC", u"\\\\srv\\share\\x.plw"}, {u"URL", u"https://example.com/x.plw"}};
    WriteDrawing("a.plw", references);
    WriteDrawing("a.plx", references);
    for (const char* name : {"a.plw", "a.plx"}) {
        PwDbDatabase a;
        const wstring path = Path(name);
        ASSERT_EQ(
            std::string(name) == "a.plx" ? a.plxIn(path.c_str()) : a.readPlwFile(path.c_str()),
            StatusOk);
        for (const Reference& reference : references) {
            PwDbBlockTableRecord* block = Block(a, reference.block);
            ASSERT_NE(block, nullptr);
            EXPECT_EQ(wstring(block->pathName()), reference.path) << name;
            PwString copy;
            EXPECT_EQ(block->pathName(copy), StatusOk);
            EXPECT_EQ(wstring(copy.kwszPtr()), reference.path);
        }
    }
}

TEST_F(XrefResolution, APathNameNeedsAWriteOpenAndEmptyMakesAnOrdinaryBlock) {
    WriteDrawing("x.plw", {}, u"X");
    WriteDrawing("a.plw", {{u"X", u"x.plw"}});
    auto a = OpenResolved("a.plw");
    const PwDbObjectId id = Block(*a, u"X")->objectId();
    {
        PwDbObjectPointer<PwDbBlockTableRecord> reading(id, PwDb::OpenForRead);
        EXPECT_EQ(reading->setPathName(u"y.plw"), Plotwright::StatusNotOpenForWrite);
        EXPECT_EQ(reading->setIsUnloaded(true), Plotwright::StatusNotOpenForWrite);
    }
    PwDbObjectPointer<PwDbBlockTableRecord> writing(id, PwDb::OpenForWrite);
    ASSERT_EQ(writing->setPathName(nullptr), StatusOk);
    EXPECT_FALSE(writing->isFromExternalReference());
    EXPECT_EQ(writing->xrefStatus(), PwDb::XrefNotAnXref);
    EXPECT_EQ(writing->xrefDatabase(), nullptr);
    ASSERT_EQ(writing->setPathName(u"x.plw"), StatusOk);
    EXPECT_EQ(writing->xrefStatus(), PwDb::XrefFilePresentUnresolved);
}

}  // namespace

namespace {

using namespace pwdbxreftest;

class XrefSharing : public XrefFolderTest {};

TEST_F(XrefSharing, ASymbolicLinkAndItsTargetAreOneFile) {
    WriteDrawing("x.plw", {}, u"X");
    ASSERT_EQ(symlink((folder + "/x.plw").c_str(), (folder + "/link.plw").c_str()), 0);
    WriteDrawing("a.plw", {{u"DIRECT", u"x.plw"}, {u"LINKED", u"link.plw"}});
    auto a = OpenResolved("a.plw");
    ASSERT_NE(LoadedFor(*a, u"DIRECT"), nullptr);
    EXPECT_EQ(LoadedFor(*a, u"DIRECT"), LoadedFor(*a, u"LINKED"));
}

}  // namespace
