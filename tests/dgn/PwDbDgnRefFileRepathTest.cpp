// PwDbDgnRefFileRepath: attaching to a design file, its attachments by index and by id, and
// what a failed attach leaves.
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileRepath.h>

#include <gtest/gtest.h>

#include "dgn/DgnTestSupport.h"
#include "support/TempFolderTest.h"

namespace {

using DgnWriter::DgnV7Writer;
using Plotwright::StatusOk;

class PwDbDgnRefFileRepathTest : public lodeqdbtest::TempFolderTest {
  protected:
    PwDbDgnRefFileRepathTest() : TempFolderTest("dgn-repath") {}

    void WriteHost() {
        DgnV7Writer host(true);
        for (const char* name : {"a.dgn", "b.dgn", "c.dgn"}) {
            DgnWriter::Attachment attachment;
            attachment.fileName = name;
            words.push_back(host.addAttachment(attachment));
        }
        ASSERT_TRUE(host.save(folder + "/host.dgn"));
        ASSERT_TRUE(DgnV7Writer(false).save(folder + "/b.dgn"));
    }

    std::vector<uint32_t> words;
};

TEST_F(PwDbDgnRefFileRepathTest, OffersTheAttachmentsByIndex) {
    WriteHost();
    PwDbDgnRefFileRepath repath;
    EXPECT_EQ(repath.numReferences(), 0u);
    EXPECT_TRUE(repath.file().isEmpty());
    ASSERT_EQ(repath.setFile(PwString(Path("host.dgn")), nullptr), StatusOk);
    EXPECT_EQ(repath.file().toWString(), Path("host.dgn"));
    ASSERT_EQ(repath.numReferences(), 3u);
    EXPECT_EQ(repath.reference(0)->storedPath.toWString(), u"a.dgn");
    EXPECT_TRUE(repath.reference(0)->resolvedPath.isEmpty());
    EXPECT_EQ(repath.reference(1)->resolvedPath.toWString(), Path("b.dgn"));
    EXPECT_EQ(repath.reference(2)->refId, words[2]);
    EXPECT_EQ(repath.reference(3), nullptr);
    size_t index = 99;
    ASSERT_EQ(repath.findReference(words[1], index), StatusOk);
    EXPECT_EQ(index, 1u);
    EXPECT_EQ(repath.findReference(12345, index), Plotwright::StatusKeyNotFound);
    EXPECT_EQ(index, 1u);
}

TEST_F(PwDbDgnRefFileRepathTest, AFailedAttachDetaches) {
    WriteHost();
    Write("text.dgn", "no design file");
    PwDbDgnRefFileRepath repath;
    ASSERT_EQ(repath.setFile(PwString(Path("host.dgn")), u"password"), StatusOk);
    EXPECT_EQ(repath.setFile(PwString(Path("missing.dgn")), nullptr),
              Plotwright::StatusFileNotFound);
    EXPECT_EQ(repath.numReferences(), 0u);
    EXPECT_TRUE(repath.file().isEmpty());
    ASSERT_EQ(repath.setFile(PwString(Path("host.dgn")), nullptr), StatusOk);
    EXPECT_EQ(repath.setFile(PwString(Path("text.dgn")), nullptr), Plotwright::StatusBadFileFormat);
    EXPECT_EQ(repath.numReferences(), 0u);
    EXPECT_EQ(repath.setFile(PwString(), nullptr), Plotwright::StatusInvalidInput);
    ASSERT_EQ(repath.setFile(PwString(Path("host.dgn")), nullptr), StatusOk);
    repath.detach();
    EXPECT_EQ(repath.numReferences(), 0u);
}

}  // namespace
