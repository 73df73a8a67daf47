// The references of design files written to disk, read through the real DGN module, and the
// names the dependency service makes of them.
#include <lodeqdb/service/DgnChildren.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/service/FileClassification.h>
#include "support/TempFolderTest.h"
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using LodeQDBService::FileData;
using LodeQDBService::Request::DGNChildren;
using LodeQDBService::Request::GetFileType;

class DgnChildrenTest : public lodeqdbtest::TempFolderTest {
  protected:
    DgnChildrenTest() : TempFolderTest("dgn-children") {}

    // A design file attaching each stored name in turn; the attachments' word offsets.
    std::vector<uint32_t> SaveDgn(const std::string& name, const std::vector<std::string>& stored) {
        DgnWriter::DgnV7Writer dgn(false);
        dgn.addLine(1, {0, 0, 0}, {100, 100, 0});
        std::vector<uint32_t> offsets;
        uint8_t number = 1;
        for (const std::string& path : stored) {
            DgnWriter::Attachment attachment;
            attachment.fileName = path;
            attachment.fileNumber = number++;
            offsets.push_back(dgn.addAttachment(attachment));
        }
        EXPECT_TRUE(dgn.save(folder + "/" + name));
        return offsets;
    }
    // The one child of a design file attaching `stored` alone.
    FileData OnlyChild(const std::string& stored) {
        SaveDgn("one.dgn", {stored});
        const std::vector<FileData> children = DGNChildren(Path("one.dgn"));
        EXPECT_EQ(children.size(), 1u);
        return children.empty() ? FileData() : children[0];
    }
    wstring Beside(const wstring& relative) const {
        return LodeUtil::CombineRelative(LodeUtil::Utf16FromUtf8(folder), relative);
    }
};

TEST_F(DgnChildrenTest, ADesignFileWithoutReferencesHasNoChildren) {
    SaveDgn("plain.dgn", {});
    EXPECT_TRUE(DGNChildren(Path("plain.dgn")).empty());
}

TEST_F(DgnChildrenTest, AFoundReferenceIsItsFullPathAsFoundWhateverItsStoredForm) {
    SaveDgn("level2.dgn", {});
    // A stored name that starts with a letter of "file:/" loses nothing once it was found.
    EXPECT_EQ(OnlyChild("level2.dgn").GetFullname(), Path("level2.dgn"));
    EXPECT_EQ(OnlyChild("./level2.dgn").GetFullname(), Path("level2.dgn"));
}

TEST_F(DgnChildrenTest, AFileUrlWithADriveLosesItsScheme) {
    const FileData child = OnlyChild("file://C:\\ref\\a.dgn");
    EXPECT_EQ(child.GetFullname(), u"C:\\ref\\a.dgn");
    EXPECT_EQ(child.GetType(), GetFileType(u"C:\\ref\\a.dgn"));
}

TEST_F(DgnChildrenTest, ARelativeNameIsCombinedWithTheDesignFilesFolder) {
    EXPECT_EQ(OnlyChild("ref\\a.dgn").GetFullname(), Beside(u"ref\\a.dgn"));
}

TEST_F(DgnChildrenTest, ANameStartingWithAnyLetterOfTheSchemeLosesSevenCharacters) {
    EXPECT_EQ(OnlyChild("level1.dgn").GetFullname(), Beside(u"dgn"));
    EXPECT_EQ(OnlyChild("/x/site.dgn").GetFullname(), Beside(u".dgn"))
        << "'/' is a member too, so a missing absolute POSIX name is cut as well";
}

TEST_F(DgnChildrenTest, AShortNameLosesAllOfIt) {
    const FileData child = OnlyChild("e.dgn");
    EXPECT_EQ(child.GetFullname(), Beside(u""));
    EXPECT_EQ(child.GetType(), GetFileType(Beside(u"")));
}

TEST_F(DgnChildrenTest, AnUpperCaseSchemeIsLeftAlone) {
    const wstring name = OnlyChild("File://x").GetFullname();
    const wstring expected =
        LodeQDBUtil::IsPathAbsolute(u"File://x") ? u"File://x" : Beside(u"File://x");
    EXPECT_EQ(name, expected);
    EXPECT_EQ(name.substr(name.size() - 8), u"File://x");
}

TEST_F(DgnChildrenTest, AnEmptyStoredNameIsTheDesignFilesFolder) {
    const FileData child = OnlyChild("");
    EXPECT_EQ(child.GetFullname(), Beside(u""));
    EXPECT_EQ(child.GetType(), GetFileType(Beside(u"")));
}

TEST_F(DgnChildrenTest, RecordsKeepFileOrderAndDuplicatesWithTheirAttachmentIds) {
    Write("plan.pdf", "%PDF-1.4\n%%EOF\n");
    SaveDgn("b.dgn", {});
    const std::vector<uint32_t> offsets =
        SaveDgn("a.dgn", {"b.dgn", "notes.txt", "b.dgn", "plan.pdf"});
    const std::vector<FileData> children = DGNChildren(Path("a.dgn"));
    ASSERT_EQ(children.size(), 4u);
    EXPECT_EQ(children[0].GetFullname(), Path("b.dgn"));
    EXPECT_EQ(children[0].GetType(), lode::Dgn);
    EXPECT_EQ(children[1].GetFullname(), Beside(u"notes.txt"));
    EXPECT_EQ(children[1].GetType(), lode::Unknown) << "type 0 is a type like any other";
    EXPECT_EQ(children[2].GetFullname(), Path("b.dgn"));
    EXPECT_EQ(children[3].GetType(), lode::Pdf);
    for (size_t i = 0; i < children.size(); ++i) {
        EXPECT_EQ(children[i].GetRefId(), offsets[i]) << i;
        EXPECT_TRUE(children[i].PwdbObjectId().isNull()) << i;
        EXPECT_EQ(children[i].GetXrefStatus(), 0) << i;
    }
    // The same ids at every read.
    const std::vector<FileData> again = DGNChildren(Path("a.dgn"));
    for (size_t i = 0; i < again.size(); ++i) EXPECT_EQ(again[i].GetRefId(), offsets[i]);
}

TEST_F(DgnChildrenTest, FilesThatCantBeReadAreFileErrors) {
    Write("notes.dgn", "not a design file");
    EXPECT_THROW(DGNChildren(Path("missing.dgn")), lode::NotFound);
    EXPECT_THROW(DGNChildren(Path("notes.dgn")), lode::InvalidFormat);
    EXPECT_THROW(DGNChildren(u""), lode::ReadError) << "an empty name is invalid input";
}

}  // namespace
