// Model document references in drawings on disk: views of Gearmark and of other products, the
// redirection information and the carried drawing file, in both file formats; and damaged
// packages, which must fail the read and never write outside the chosen folder.
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjUtil.h>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <string>

#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocAuthoring.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjects.h>

namespace {

using Plotwright::StatusOk;

// Bytes of every value, and more than one filing piece of them.
std::string SampleBytes() {
    std::string bytes;
    for (size_t i = 0; i < PwDbModelDocPackage::kPieceBytes + 1000; ++i)
        bytes.push_back(static_cast<char>(i * 7 % 256));
    return bytes;
}

class ModelDocInFiles : public lodeqdbtest::TempFolderTest,
                        public testing::WithParamInterface<bool> {
  protected:
    ModelDocInFiles() : TempFolderTest("pwdb-modeldoc") {}

    // Saves `drawing` in the format under test as a new file and reads it back into `read`.
    void RoundTrip(PwDbDatabase& drawing, PwDbDatabase& read) {
        const bool exchange = GetParam();
        const std::string stem = "drawing" + std::to_string(++saves_);
        const wstring path = Path(stem + (exchange ? ".plx" : ".plw"));
        if (exchange) {
            ASSERT_EQ(drawing.plxOut(path.c_str(), 16, PwDb::PwDbPlwVersionCurrent), StatusOk);
            ASSERT_EQ(read.plxIn(path.c_str()), StatusOk);
        } else {
            ASSERT_EQ(drawing.saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent), StatusOk);
            ASSERT_EQ(read.readPlwFile(path.c_str()), StatusOk);
        }
    }

  private:
    int saves_ = 0;
};

TEST_P(ModelDocInFiles, GearmarkViewsAreFoundAfterReading) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"Front", PwModelDocKeys::kGearmarkProduct,
                                             u"parts\\gear.gmd"),
              StatusOk);
    PwDbDatabase read(false, true);
    RoundTrip(*drawing, read);
    EXPECT_TRUE(PwModelDocObjUtil::hasGearmarkModelDocViews(&read));

    PwDbObjectPointer<PwDbDictionary> root(read.namedObjectsDictionaryId(), PwDb::OpenForRead);
    PwDbObjectId viewsId;
    ASSERT_EQ(root->getAt(PwModelDocKeys::kViews, viewsId), StatusOk);
    PwDbObjectPointer<PwDbDictionary> views(viewsId, PwDb::OpenForRead);
    PwDbObjectId frontId;
    ASSERT_EQ(views->getAt(u"Front", frontId), StatusOk);
    PwDbObjectPointer<PwDbModelDocView> front(frontId, PwDb::OpenForRead);
    ASSERT_EQ(front.openStatus(), StatusOk);
    EXPECT_EQ(front->product(), u"Gearmark");
    EXPECT_EQ(front->documentPath(), u"parts\\gear.gmd");
    EXPECT_EQ(front->viewName(), u"Front");
}

TEST_P(ModelDocInFiles, ViewsOfAnotherProductDontCount) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"Side", u"OtherCad", u"side.doc"),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"Top", u"gearmark", u"top.gmd"), StatusOk);
    PwDbDatabase read(false, true);
    RoundTrip(*drawing, read);
    EXPECT_FALSE(PwModelDocObjUtil::hasGearmarkModelDocViews(&read));
}

TEST_P(ModelDocInFiles, RedirectionsAreKeptAndReplaced) {
    auto drawing = PwDbAuthoring::createDrawing();
    PwString info;
    EXPECT_EQ(PwModelDocObjUtil::getRedirectionsInfo(drawing.get(), info),
              Plotwright::StatusKeyNotFound);
    ASSERT_EQ(PwModelDocObjUtil::setRedirectionsInfo(drawing.get(), PwString(u"old=new")),
              StatusOk);
    ASSERT_EQ(PwModelDocObjUtil::setRedirectionsInfo(drawing.get(), PwString(u"a.gmd=b.gmd\nä")),
              StatusOk);
    PwDbDatabase read(false, true);
    RoundTrip(*drawing, read);
    ASSERT_EQ(PwModelDocObjUtil::getRedirectionsInfo(&read, info), StatusOk);
    EXPECT_EQ(info.toWString(), u"a.gmd=b.gmd\nä");

    ASSERT_EQ(PwModelDocObjUtil::setRedirectionsInfo(&read, PwString()), StatusOk);
    PwDbDatabase again(false, true);
    RoundTrip(read, again);
    info = u"unchanged?";
    ASSERT_EQ(PwModelDocObjUtil::getRedirectionsInfo(&again, info), StatusOk);
    EXPECT_TRUE(info.isEmpty());
}

TEST_P(ModelDocInFiles, TheCarriedFileIsUnpackedWithItsBytes) {
    auto drawing = PwDbAuthoring::createDrawing();
    const std::string bytes = SampleBytes();
    ASSERT_EQ(PwDbAuthoring::embedModelDocFile(*drawing, u"first.gmd", "replaced"), StatusOk);
    ASSERT_EQ(PwDbAuthoring::embedModelDocFile(*drawing, u"gear ä.gmd", bytes), StatusOk);
    PwDbDatabase read(false, true);
    RoundTrip(*drawing, read);

    ASSERT_EQ(system(("mkdir '" + folder + "/out'").c_str()), 0);
    PwString path;
    ASSERT_EQ(PwModelDocObjUtil::unpackGearmarkDrawingFile(&read, PwString(Path("out")), path),
              StatusOk);
    EXPECT_EQ(path.toWString(), Path("out") + u"/gear ä.gmd");
    EXPECT_EQ(Read("out/gear ä.gmd"), bytes);

    // A file of that name is never replaced.
    Write("out/gear ä.gmd", "mine");
    PwString second = u"kept";
    EXPECT_EQ(PwModelDocObjUtil::unpackGearmarkDrawingFile(&read, PwString(Path("out")), second),
              Plotwright::StatusFileIOError);
    EXPECT_EQ(second.toWString(), u"kept");
    EXPECT_EQ(Read("out/gear ä.gmd"), "mine");
}

INSTANTIATE_TEST_SUITE_P(BothFormats, ModelDocInFiles, testing::Bool(),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? std::string("Plx") : std::string("Plw");
                         });

class ModelDoc : public lodeqdbtest::TempFolderTest {
  protected:
    ModelDoc() : TempFolderTest("pwdb-modeldoc") {}
};

TEST_F(ModelDoc, ANewDrawingHasNothing) {
    auto drawing = PwDbAuthoring::createDrawing();
    EXPECT_FALSE(PwModelDocObjUtil::hasGearmarkModelDocViews(drawing.get()));
    PwString path = u"kept";
    EXPECT_EQ(PwModelDocObjUtil::unpackGearmarkDrawingFile(drawing.get(), path),
              Plotwright::StatusKeyNotFound);
    EXPECT_EQ(path.toWString(), u"kept");
}

TEST_F(ModelDoc, NullDatabasesGiveAStatus) {
    PwString text;
    EXPECT_FALSE(PwModelDocObjUtil::hasGearmarkModelDocViews(nullptr));
    EXPECT_EQ(PwModelDocObjUtil::setRedirectionsInfo(nullptr, PwString(u"x")),
              Plotwright::StatusNullDatabase);
    EXPECT_EQ(PwModelDocObjUtil::getRedirectionsInfo(nullptr, text),
              Plotwright::StatusNullDatabase);
    EXPECT_EQ(PwModelDocObjUtil::unpackGearmarkDrawingFile(nullptr, text),
              Plotwright::StatusNullDatabase);
    EXPECT_TRUE(text.isEmpty());
}

TEST_F(ModelDoc, UnpackingMakesAFolderOfItsOwnUnderTheTemporaryFolder) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::embedModelDocFile(*drawing, u"gear.gmd", "GMD1"), StatusOk);
    // The system's temporary folder is this test's folder for the while.
    const char* saved = getenv("TMPDIR");
    const std::string before = saved != nullptr ? saved : "";
    setenv("TMPDIR", folder.c_str(), 1);
    PwString first;
    PwString second;
    const auto firstStatus = PwModelDocObjUtil::unpackGearmarkDrawingFile(drawing.get(), first);
    const auto secondStatus = PwModelDocObjUtil::unpackGearmarkDrawingFile(drawing.get(), second);
    if (saved != nullptr)
        setenv("TMPDIR", before.c_str(), 1);
    else
        unsetenv("TMPDIR");
    ASSERT_EQ(firstStatus, StatusOk);
    ASSERT_EQ(secondStatus, StatusOk);
    const std::filesystem::path one(LodeUtil::Utf8FromUtf16(first.toWString()));
    const std::filesystem::path two(LodeUtil::Utf8FromUtf16(second.toWString()));
    EXPECT_EQ(one.filename(), "gear.gmd");
    EXPECT_EQ(one.parent_path().parent_path(), std::filesystem::path(folder));
    EXPECT_NE(one.parent_path(), two.parent_path());
    EXPECT_EQ(Read(one.parent_path().filename().string() + "/gear.gmd"), "GMD1");
}

TEST_F(ModelDoc, AnUnwritableFolderLeavesNothingBehind) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::embedModelDocFile(*drawing, u"gear.gmd", "GMD1"), StatusOk);
    PwString path = u"kept";
    EXPECT_NE(PwModelDocObjUtil::unpackGearmarkDrawingFile(drawing.get(),
                                                           PwString(Path("no/such/folder")), path),
              StatusOk);
    EXPECT_EQ(path.toWString(), u"kept");
}

TEST_F(ModelDoc, FileNamesWithAFolderPartAreRefused) {
    auto drawing = PwDbAuthoring::createDrawing();
    for (const wstring name :
         {u"", u".", u"..", u"../gear.gmd", u"a/b", u"a\\b", u"c:gear", u"tab\tname"}) {
        EXPECT_EQ(PwDbAuthoring::embedModelDocFile(*drawing, name, "x"),
                  Plotwright::StatusInvalidInput)
            << LodeUtil::Utf8FromUtf16(name);
    }
    PwString path;
    EXPECT_EQ(PwModelDocObjUtil::unpackGearmarkDrawingFile(drawing.get(), path),
              Plotwright::StatusKeyNotFound);
    EXPECT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"", u"Gearmark", u"x"),
              Plotwright::StatusInvalidKey);
    ASSERT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"Front", u"Gearmark", u"x"), StatusOk);
    EXPECT_EQ(PwDbAuthoring::addModelDocView(*drawing, u"FRONT", u"Gearmark", u"y"),
              Plotwright::StatusDuplicateKey);
}

TEST_F(ModelDoc, EntriesOfAnotherClassGiveAStatus) {
    auto drawing = PwDbAuthoring::createDrawing();
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->namedObjectsDictionaryId(),
                                                PwModelDocKeys::kPackage, new PwDbDictionary),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->namedObjectsDictionaryId(),
                                                PwModelDocKeys::kRedirections, new PwDbDictionary),
              StatusOk);
    ASSERT_EQ(PwDbAuthoring::addDictionaryEntry(*drawing, drawing->namedObjectsDictionaryId(),
                                                PwModelDocKeys::kViews, new PwDbModelDocView),
              StatusOk);
    PwString text = u"kept";
    EXPECT_EQ(PwModelDocObjUtil::unpackGearmarkDrawingFile(drawing.get(), text),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(PwModelDocObjUtil::setRedirectionsInfo(drawing.get(), PwString(u"x")),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(PwModelDocObjUtil::getRedirectionsInfo(drawing.get(), text),
              Plotwright::StatusNotThatKindOfClass);
    EXPECT_EQ(text.toWString(), u"kept");
    EXPECT_FALSE(PwModelDocObjUtil::hasGearmarkModelDocViews(drawing.get()));
}

// A package's record as a damaged file might hold it, read through the filing functions.
Plotwright::ErrorStatus ReadPackage(const wstring& name, int64_t count,
                                    const std::vector<std::string>& pieces) {
    PwDbMemoryFiler filer;
    filer.writeObjectId(PwDbObjectId());
    filer.writeInt32(0);
    filer.writeString(name);
    filer.writeInt64(count);
    for (const std::string& piece : pieces) filer.writeBytes(piece.data(), piece.size());
    filer.rewind();
    PwDbModelDocPackage package;
    return package.plwInFields(&filer);
}

TEST_F(ModelDoc, DamagedPackagesFailTheRead) {
    EXPECT_EQ(ReadPackage(u"gear.gmd", 3, {"abc"}), StatusOk);
    EXPECT_EQ(ReadPackage(u"../gear.gmd", 3, {"abc"}), Plotwright::StatusFilerError);
    EXPECT_EQ(ReadPackage(u"", 0, {}), Plotwright::StatusFilerError);
    EXPECT_EQ(ReadPackage(u"gear.gmd", -1, {}), Plotwright::StatusFilerError);
    EXPECT_EQ(ReadPackage(u"gear.gmd", int64_t{1} << 40, {"abc"}), Plotwright::StatusFilerError);
    // A count that promises more than the pieces hold.
    EXPECT_EQ(ReadPackage(u"gear.gmd", int64_t{1} << 29, {"abc"}), Plotwright::StatusFilerError);
    EXPECT_EQ(ReadPackage(u"gear.gmd", 4, {"abc"}), Plotwright::StatusFilerError);
}

}  // namespace
