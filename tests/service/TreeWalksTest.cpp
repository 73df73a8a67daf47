// Nested children and parents over trees of drawings on disk: order, cycles, diamonds, and the
// quiet end of a walk that meets a failure.
#include <lodeqdb/service/TreeWalks.h>

#include <gtest/gtest.h>

#include <cerrno>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include "toolkit/pal/PwFileSystemCalls.h"
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using LodeQDBService::FileData;
using LodeQDBService::Request::PlotwrightNestedChildren;
using LodeQDBService::Request::PlotwrightParents;
using Plotwright::StatusOk;

class TreeWalks : public lodeqdbtest::TempFolderTest {
  protected:
    TreeWalks() : TempFolderTest("lodeqdb-walks") {}

    void Save(const std::string& name, const std::vector<wstring>& references) {
        auto drawing = PwDbAuthoring::createDrawing();
        int n = 0;
        for (const wstring& path : references)
            ASSERT_EQ(PwDbAuthoring::addXref(
                          *drawing, std::u16string{u'R', static_cast<char16_t>(u'0' + n++)}, path),
                      StatusOk);
        ASSERT_EQ(drawing->saveAs(Path(name).c_str(), false, PwDb::PwDbPlwVersionCurrent),
                  StatusOk);
    }
    std::unique_ptr<PwDbDatabase> Open(const std::string& name) {
        auto database = std::make_unique<PwDbDatabase>(false, true);
        EXPECT_EQ(database->readPlwFile(Path(name).c_str(), PwDbDatabase::OpenModeAlternate),
                  StatusOk);
        pwdbResolveCurrentXRefs(database.get(), false, true);
        return database;
    }
    std::vector<wstring> Names(const std::vector<FileData>& records) {
        std::vector<wstring> names;
        for (const FileData& record : records) names.push_back(record.GetFullname());
        return names;
    }
};

TEST_F(TreeWalks, ADiamondIsWalkedOnceInPreOrder) {
    Save("d.plw", {});
    Save("b.plw", {u"d.plw"});
    Save("c.plw", {u"d.plw"});
    Save("a.plw", {u"b.plw", u"c.plw"});
    const std::vector<wstring> expected = {Path("b.plw"), Path("d.plw"), Path("c.plw")};
    EXPECT_EQ(Names(PlotwrightNestedChildren(Path("a.plw"), true)), expected);
    auto a = Open("a.plw");
    EXPECT_EQ(Names(PlotwrightNestedChildren(*a, false)), expected);
    // Both parents of D, though D was visited under B before C is reached.
    EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *a, Path("d.plw"))),
              (std::vector<wstring>{Path("b.plw"), Path("c.plw")}));
}

TEST_F(TreeWalks, ACycleIsCutAtTheRoot) {
    Save("b.plw", {u"a.plw"});
    Save("a.plw", {u"b.plw"});
    auto a = Open("a.plw");
    EXPECT_EQ(Names(PlotwrightNestedChildren(*a, true)), (std::vector<wstring>{Path("b.plw")}));
    EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *a, Path("b.plw"))),
              (std::vector<wstring>{Path("a.plw")}));
    EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *a, Path("a.plw"))),
              (std::vector<wstring>{Path("b.plw")}));
}

TEST_F(TreeWalks, ADrawingThatRefersToItself) {
    Save("self.plw", {u"self.plw"});
    auto self = Open("self.plw");
    EXPECT_TRUE(PlotwrightNestedChildren(*self, true).empty());
    const auto parents = PlotwrightParents(Path("self.plw"), *self, Path("self.plw"));
    ASSERT_EQ(parents.size(), 1u);
    EXPECT_EQ(parents[0].GetFullname(), Path("self.plw"));
    EXPECT_TRUE(parents[0].PwdbObjectId().isNull());
    EXPECT_EQ(parents[0].GetRefId(), 0u);
    EXPECT_EQ(parents[0].GetType(), lode::Plw);
    EXPECT_EQ(parents[0].GetXrefStatus(), PwDb::XrefResolved);
}

TEST_F(TreeWalks, TheRootIsReportedAsTheCallerSpelledIt) {
    Save("x.plw", {});
    Save("a.plw", {u"x.plw"});
    auto a = Open("a.plw");
    const wstring spelled = Path("./a.plw");
    const auto parents = PlotwrightParents(spelled, *a, Path("X.PLW"));
    ASSERT_EQ(parents.size(), 1u);
    EXPECT_EQ(parents[0].GetFullname(), spelled);
    EXPECT_TRUE(PlotwrightParents(spelled, *a, std::vector<wstring>{}).empty());
}

TEST_F(TreeWalks, AReferenceThatIsntResolvedIsListedAndNotEntered) {
    Save("junk.plw", {});
    Write("junk.plw", "not a drawing");
    Save("a.plw", {u"gone.plw", u"junk.plw"});
    const auto children = PlotwrightNestedChildren(Path("a.plw"), true);
    ASSERT_EQ(children.size(), 2u);
    EXPECT_EQ(children[0].GetXrefStatus(), PwDb::XrefFileMissing);
    EXPECT_EQ(children[1].GetXrefStatus(), PwDb::XrefFilePresentUnresolved);
}

TEST_F(TreeWalks, AFailureEndsTheWalkWithWhatWasFound) {
    Save("b2.plw", {});
    Save("b.plw", {u"b2.plw"});
    Save("c.plw", {});
    auto a = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addXref(*a, u"B", u"b.plw"), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addXref(*a, u"C", u"c.plw"), StatusOk);
    PwDbObjectId image;
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(*a, u"I", u"photo.png", &image), StatusOk);
    ASSERT_EQ(PwDbAuthoring::addRasterImage(*a, a->modelSpaceId(), image, {}, 1, 1), StatusOk);
    // A design file that isn't there: entering it fails.
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*a, PwDbDgnDefinition::desc(), u"D",
                                                   u"missing.dgn", u""),
              StatusOk);
    ASSERT_EQ(
        PwDbAuthoring::addUnderlayDefinition(*a, PwDbPdfDefinition::desc(), u"P", u"plan.pdf", u""),
        StatusOk);
    ASSERT_EQ(a->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    const std::vector<wstring> beforeTheFailure = {Path("b.plw"), Path("b2.plw"), Path("c.plw"),
                                                   Path("photo.png"), Path("missing.dgn")};
    EXPECT_EQ(Names(PlotwrightNestedChildren(Path("a.plw"), true)), beforeTheFailure);
    // Not entering design files, the walk goes through.
    std::vector<wstring> whole = beforeTheFailure;
    whole.push_back(Path("plan.pdf"));
    EXPECT_EQ(Names(PlotwrightNestedChildren(Path("a.plw"), false)), whole);
    // The parent walk ends as quietly.
    auto root = Open("a.plw");
    EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *root, Path("b2.plw"))),
              (std::vector<wstring>{Path("b.plw")}));
}

// The walk that ends early says so when asked: what stopped it, and at which file.
TEST_F(TreeWalks, AWalkThatEndsEarlySaysWhyWhenAsked) {
    Save("c.plw", {});
    Write("v8.dgn", std::string("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1", 8) + std::string(1024, '\0'));
    for (const char* designFile : {"missing.dgn", "v8.dgn"}) {
        auto a = PwDbAuthoring::createDrawing();
        ASSERT_EQ(PwDbAuthoring::addXref(*a, u"C", u"c.plw"), StatusOk);
        ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*a, PwDbDgnDefinition::desc(), u"D",
                                                       LodeUtil::Utf16FromUtf8(designFile), u""),
                  StatusOk);
        ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*a, PwDbPdfDefinition::desc(), u"P",
                                                       u"plan.pdf", u""),
                  StatusOk);
        ASSERT_EQ(a->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
        const wstring dgn = Path(designFile);

        LodeQDBService::Request::WalkStop stop;
        stop.stopped = true;  // a walk that goes through clears it
        EXPECT_EQ(Names(PlotwrightNestedChildren(Path("a.plw"), false, stop)),
                  (std::vector<wstring>{Path("c.plw"), dgn, Path("plan.pdf")}));
        EXPECT_FALSE(stop.stopped) << designFile;

        const auto found = PlotwrightNestedChildren(Path("a.plw"), true, stop);
        EXPECT_EQ(Names(found), (std::vector<wstring>{Path("c.plw"), dgn})) << "the PDF is lost";
        EXPECT_TRUE(stop.stopped) << designFile;
        EXPECT_EQ(stop.file, dgn);
        EXPECT_EQ(stop.exceptionClass,
                  std::string(designFile) == "missing.dgn" ? "NotFound" : "InvalidFormat");
        EXPECT_EQ(stop.code, std::string(designFile) == "missing.dgn" ? lode::NotFoundCode
                                                                      : lode::InvalidFormatCode);
        EXPECT_FALSE(stop.message.empty());

        auto root = Open("a.plw");
        LodeQDBService::Request::WalkStop parentStop;
        EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *root, {Path("zzz.plw")}, parentStop)),
                  std::vector<wstring>{});
        EXPECT_TRUE(parentStop.stopped) << designFile;
        EXPECT_EQ(parentStop.file, dgn);
    }
}

// A read that fails inside the walk (here the design file's bytes can't be read) ends it
// the same way, with the failure's class.
TEST_F(TreeWalks, AFailingReadInsideTheWalkIsTheStop) {
    DgnWriter::DgnV7Writer dgn(false);
    dgn.addLine(1, {0, 0, 0}, {10, 10, 0});
    ASSERT_TRUE(dgn.save(folder + "/site.dgn"));
    auto a = PwDbAuthoring::createDrawing();
    ASSERT_EQ(
        PwDbAuthoring::addUnderlayDefinition(*a, PwDbDgnDefinition::desc(), u"D", u"site.dgn", u""),
        StatusOk);
    ASSERT_EQ(a->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
    auto root = Open("a.plw");
    PwFileSystemCalls failing{};
    failing.read = [](int, void*, size_t) -> ssize_t {
        errno = EIO;
        return -1;
    };
    pwReplaceFileSystemCallsForTesting(failing);
    LodeQDBService::Request::WalkStop stop;
    const auto found = PlotwrightNestedChildren(*root, true, stop);
    pwReplaceFileSystemCallsForTesting({});
    EXPECT_EQ(Names(found), std::vector<wstring>{Path("site.dgn")});
    EXPECT_TRUE(stop.stopped);
    EXPECT_EQ(stop.file, Path("site.dgn"));
    EXPECT_FALSE(stop.exceptionClass.empty());
}

TEST_F(TreeWalks, AFileThatCantBeReadAsTheRootThrows) {
    EXPECT_THROW(PlotwrightNestedChildren(Path("missing.plw"), true), lode::NotFound);
}

TEST_F(TreeWalks, TheParentWalkReadsWhatTheRootHasntLoaded) {
    Save("leaf.plw", {});
    Save("mid.plw", {u"leaf.plw"});
    Save("a.plw", {u"mid.plw"});
    // A root made in memory, whose reference was never resolved: the walk asks by path.
    auto root = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addXref(*root, u"MID", Path("mid.plw")), StatusOk);
    EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *root, Path("leaf.plw"))),
              std::vector<wstring>{});
    auto loaded = Open("a.plw");
    EXPECT_EQ(Names(PlotwrightParents(Path("a.plw"), *loaded, Path("leaf.plw"))),
              (std::vector<wstring>{Path("mid.plw")}));
}

TEST_F(TreeWalks, DesignFilesAreFollowedThroughTheirAttachmentsOnRequest) {
    // site.dgn attaches survey.dgn and a drawing; survey.dgn attaches site.dgn again.
    const auto saveDgn = [&](const std::string& name, const std::vector<std::string>& attached) {
        DgnWriter::DgnV7Writer dgn(false);
        dgn.addLine(1, {0, 0, 0}, {10, 10, 0});
        for (const std::string& file : attached) {
            DgnWriter::Attachment attachment;
            attachment.fileName = file;
            dgn.addAttachment(attachment);
        }
        ASSERT_TRUE(dgn.save(folder + "/" + name));
    };
    Save("b.plw", {});
    Save("detail.plw", {u"b.plw"});
    saveDgn("site.dgn", {"survey.dgn", "detail.plw"});
    saveDgn("survey.dgn", {"site.dgn"});
    auto a = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(*a, PwDbDgnDefinition::desc(), u"SITE",
                                                   u"site.dgn", u"Default"),
              StatusOk);
    ASSERT_EQ(a->saveAs(Path("a.plw").c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);

    const auto followed = PlotwrightNestedChildren(Path("a.plw"), true);
    // A drawing named by a design file is a leaf: its own references aren't entered.
    EXPECT_EQ(Names(followed),
              (std::vector<wstring>{Path("site.dgn"), Path("survey.dgn"), Path("detail.plw")}));
    ASSERT_EQ(followed.size(), 3u);
    EXPECT_EQ(followed[0].GetType(), lode::Dgn);
    EXPECT_EQ(followed[1].GetType(), lode::Dgn);
    EXPECT_EQ(followed[2].GetType(), lode::Plw);
    EXPECT_EQ(Names(PlotwrightNestedChildren(Path("a.plw"), false)),
              std::vector<wstring>{Path("site.dgn")});
}

}  // namespace
