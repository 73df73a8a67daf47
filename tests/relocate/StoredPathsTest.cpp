// The stored paths of a drawing: listed in the dependency listing's order, changed in place,
// and a design file's attachments listed with what the reader found.
#include <lodeqdb/relocate/StoredPaths.h>

#include <gtest/gtest.h>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include "relocate/RelocateTrees.h"
#include "support/TempFolderTest.h"

namespace {

using LodeQDBRelocate::StoredPathKind;

class StoredPaths : public lodeqdbtest::TempFolderTest {
  protected:
    StoredPaths() : TempFolderTest("lodeqdb-stored-paths") {}
};

TEST_F(StoredPaths, EveryKindIsListedInTheListingsOrder) {
    lodeqdbtest::DrawingDesign design;
    design.references = {{u"R1", u"a.plw"}, {u"R2", u"C:\\b.plw"}};
    design.images = {{u"IMG", u"pic.png"}};
    design.pdfs = {{u"PDF", u"doc.pdf"}};
    design.dgns = {{u"DGN", u"site.dgn"}};
    lodeqdbtest::WriteDrawing(folder + "/host.plw", design);
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(Path("host.plw"), drawing, true, false);
    // An image definition nothing places is listed, but as no dependency.
    ASSERT_EQ(PwDbAuthoring::addRasterImageDef(drawing, u"UNUSED", u"unused.png"), 0);
    const auto paths = LodeQDBRelocate::ListStoredPaths(drawing);
    ASSERT_EQ(paths.size(), 6u);
    EXPECT_EQ(paths[0].kind, StoredPathKind::Reference);
    EXPECT_EQ(paths[0].name, u"R1");
    EXPECT_EQ(paths[1].path, u"C:\\b.plw");
    EXPECT_EQ(paths[2].kind, StoredPathKind::Image);
    EXPECT_TRUE(paths[2].inUse);
    EXPECT_EQ(paths[3].name, u"UNUSED");
    EXPECT_FALSE(paths[3].inUse);
    EXPECT_EQ(paths[4].kind, StoredPathKind::DgnUnderlay);
    EXPECT_EQ(paths[5].kind, StoredPathKind::PdfUnderlay);
    EXPECT_STREQ(LodeQDBRelocate::StoredPathKindName(paths[5].kind), "pdf-underlay");

    for (const auto& entry : paths)
        EXPECT_EQ(LodeQDBRelocate::SetStoredPath(entry, u"new/" + entry.name), 0);
    const auto changed = LodeQDBRelocate::ListStoredPaths(drawing);
    for (const auto& entry : changed) EXPECT_EQ(entry.path, u"new/" + entry.name);

    LodeQDBRelocate::StoredPath attachment;
    attachment.kind = StoredPathKind::DgnAttachment;
    EXPECT_EQ(LodeQDBRelocate::SetStoredPath(attachment, u"x.dgn"), Plotwright::StatusInvalidInput);
}

TEST_F(StoredPaths, ADesignFilesAttachmentsAreListedWithWhatTheReaderFound) {
    lodeqdbtest::WriteProjectTree(folder, false);
    const auto attachments = LodeQDBRelocate::ListDgnAttachments(Path("proj/survey/site.dgn"));
    ASSERT_EQ(attachments.size(), 1u);
    EXPECT_EQ(attachments[0].stored.path, u"terrain.dgn");
    EXPECT_EQ(attachments[0].stored.name, u"TERRAIN");
    EXPECT_EQ(LodeUtil::Utf8FromUtf16(attachments[0].found), folder + "/proj/survey/terrain.dgn");
    Write("plain.dgn", "not a design file");
    EXPECT_THROW(LodeQDBRelocate::ListDgnAttachments(Path("plain.dgn")), lode::InvalidFormat);
}

}  // namespace
