// Reference attachments: their fields, their identity between reads, and where their files are
// found.
#include "modules/dgn/DgnV7Attachments.h"

#include <gtest/gtest.h>

#include <sys/stat.h>

#include "dgn/DgnTestSupport.h"
#include <lodeqdb/lodeutil/Utf.h>
#include "support/TempFolderTest.h"

namespace {

using DgnWriter::Attachment;
using DgnWriter::DgnV7Writer;
using Plotwright::StatusOk;

class DgnV7AttachmentsTest : public lodeqdbtest::TempFolderTest {
  protected:
    DgnV7AttachmentsTest() : TempFolderTest("dgn-attachments") {}

    // A host with three attachments (type 5, type 66, one deleted) and the words they start at.
    DgnV7Writer Host(bool threeD) {
        DgnV7Writer host(threeD);
        host.addLine(0, {0, 0, 0}, {10, 10, 10});
        Attachment site;
        site.fileName = "refs/site.dgn";
        site.fileNumber = 3;
        site.logicalName = "SITE";
        site.description = "Site plan, 1:500";
        site.masterOrigin = {100, 200, 300};
        site.referenceOrigin = {-1, -2, -3};
        site.scale = 2.5;
        siteWord = host.addAttachment(site);
        Attachment terrain;
        terrain.asApplicationElement = true;
        terrain.fileName = "C:\\survey\\terrain.dgn";
        terrain.fileNumber = 200;
        terrainWord = host.addAttachment(terrain);
        Attachment old;
        old.fileName = "old.dgn";
        host.markDeleted(host.addAttachment(old));
        return host;
    }

    uint32_t siteWord = 0, terrainWord = 0;
};

TEST_F(DgnV7AttachmentsTest, FieldsOfBothKinds) {
    for (bool threeD : {false, true}) {
        const auto document = dgntest::Document(Host(threeD));
        const auto attachments = dgnCollectAttachments(*document);
        ASSERT_EQ(attachments.size(), 2u) << "the deleted one is left out";
        const DgnV7Attachment& site = attachments[0];
        EXPECT_EQ(site.wordOffset, siteWord);
        EXPECT_EQ(site.elementType, 5);
        EXPECT_EQ(site.fileNumber, 3);
        EXPECT_EQ(site.storedPath, u"refs/site.dgn");
        EXPECT_EQ(site.logicalName, u"SITE");
        EXPECT_EQ(site.description, u"Site plan, 1:500");
        EXPECT_EQ(site.masterOrigin.x, 100);
        EXPECT_EQ(site.masterOrigin.z, 300);
        EXPECT_EQ(site.referenceOrigin.y, -2);
        EXPECT_DOUBLE_EQ(site.scale, 2.5);
        const DgnV7Attachment& terrain = attachments[1];
        EXPECT_EQ(terrain.wordOffset, terrainWord);
        EXPECT_EQ(terrain.elementType, 66);
        EXPECT_EQ(terrain.fileNumber, 200);
        EXPECT_EQ(terrain.storedPath, u"C:\\survey\\terrain.dgn");
        EXPECT_EQ(terrain.logicalName, u"");
        EXPECT_DOUBLE_EQ(terrain.scale, 1.0);
    }
}

TEST_F(DgnV7AttachmentsTest, IdentitiesStayTheSameBetweenReads) {
    ASSERT_TRUE(Host(false).save(folder + "/host.dgn"));
    std::shared_ptr<const DgnV7DesignFile> first, second;
    ASSERT_EQ(DgnV7DesignFile::load(Path("host.dgn"), first), StatusOk);
    ASSERT_EQ(DgnV7DesignFile::load(Path("host.dgn"), second), StatusOk);
    const auto a = dgnCollectAttachments(*first);
    const auto b = dgnCollectAttachments(*second);
    ASSERT_EQ(a.size(), b.size());
    for (size_t i = 0; i < a.size(); ++i) EXPECT_EQ(a[i].wordOffset, b[i].wordOffset);
    EXPECT_NE(a[0].wordOffset, a[1].wordOffset);
}

TEST_F(DgnV7AttachmentsTest, FieldsThatOverstateTheirLengthStopAtTheirRoom) {
    DgnV7Writer host(false);
    Attachment named;
    named.fileName = "a.dgn";
    named.logicalName = "L";
    const uint32_t at = host.addAttachment(named);
    host.patchWord(at + 18, 500);   // attached file name count
    host.patchWord(at + 146, 900);  // logical name count
    const auto attachments = dgnCollectAttachments(*dgntest::Document(host));
    ASSERT_EQ(attachments.size(), 1u);
    EXPECT_EQ(attachments[0].storedPath, u"a.dgn") << "the first NUL ends the text";
    EXPECT_EQ(attachments[0].logicalName, u"L");
}

TEST_F(DgnV7AttachmentsTest, ElementsTooShortToHoldTheirTextsAreLeftOut) {
    DgnV7Writer host(false);
    std::vector<uint8_t> shortAttachment = dgntest::LineElement(0, 0, 0, 0);
    shortAttachment[0] = 9;  // level 9
    shortAttachment[1] = 5;  // type 5
    host.addRaw(shortAttachment);
    EXPECT_TRUE(dgnCollectAttachments(*dgntest::Document(host)).empty());
}

TEST_F(DgnV7AttachmentsTest, FilesAreFoundBesideTheDesignFile) {
    mkdir((folder + "/refs").c_str(), 0755);
    ASSERT_TRUE(DgnV7Writer(false).save(folder + "/refs/site.dgn"));
    ASSERT_TRUE(DgnV7Writer(false).save(folder + "/terrain.dgn"));
    const wstring host = Path("host.dgn");
    EXPECT_EQ(dgnResolveAttachment(host, u"refs/site.dgn"), Path("refs/site.dgn"));
    EXPECT_EQ(dgnResolveAttachment(host, u"refs\\site.dgn"), Path("refs/site.dgn"));
    EXPECT_EQ(dgnResolveAttachment(host, u"C:\\survey\\terrain.dgn"), Path("terrain.dgn"))
        << "by its bare name";
    EXPECT_EQ(dgnResolveAttachment(host, u"/elsewhere/site.dgn"), u"")
        << "the bare name is looked for beside the design file only";
    EXPECT_EQ(dgnResolveAttachment(host, Path("refs/site.dgn")), Path("refs/site.dgn"));
    EXPECT_EQ(dgnResolveAttachment(host, u"missing.dgn"), u"");
    EXPECT_EQ(dgnResolveAttachment(host, u""), u"");
    EXPECT_EQ(dgnResolveAttachment(u"", u"refs/site.dgn"), u"")
        << "without a design file, only rooted paths are found";
}

}  // namespace
