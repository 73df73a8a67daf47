// Bad design files: every prefix of a sample, lengths and counts that lie, nesting without end,
// and random bytes. Each gives a status or a partial drawing, never a crash or a hang.
#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "dgn/DgnTestSupport.h"
#include "modules/dgn/DgnV7Attachments.h"
#include "modules/dgn/DgnV7Reader.h"
#include "support/TempFolderTest.h"

namespace {

using DgnWriter::DgnV7Writer;
using Plotwright::StatusOk;

// Every element kind the writer knows, an attachment among them.
DgnV7Writer Sample(bool threeD) {
    DgnV7Writer dgn(threeD);
    dgn.addLine(1, {0, 0, 0}, {10000, 0, 500});
    dgn.addLineString(2, {{0, 0, 0}, {1000, 0, 0}, {1000, 1000, 0}});
    dgn.addShape(3, {{0, 0, 0}, {4000, 0, 0}, {4000, 3000, 0}});
    dgn.addCurve(4, {{0, 0, 0}, {1, 0, 0}, {2, 1, 0}, {3, 0, 0}, {4, 1, 0}, {5, 0, 0}, {6, 0, 0}});
    dgn.addEllipse(5, 5000, 5000, 0, 2000, 1000, 30);
    dgn.addArc(6, 0, 0, 0, 1000, 1000, 0, 0, 90);
    dgn.addText(7, {100, 200, 0}, "TEXT", 350, 15);
    dgn.beginTextNode(7, {0, 0, 0}, 100);
    dgn.addText(7, {0, 0, 0}, "ONE", 100);
    dgn.endComplex();
    dgn.beginComplexChain(8);
    dgn.addLine(8, {0, 0, 0}, {1000, 0, 0});
    dgn.addArc(8, 1000, 500, 0, 500, 500, 0, 270, 180);
    dgn.endComplex();
    dgn.beginComplexShape(9);
    dgn.addLineString(9, {{0, 0, 0}, {500, 0, 0}, {500, 500, 0}});
    dgn.addLine(9, {500, 500, 0}, {0, 0, 0});
    dgn.endComplex();
    dgn.beginCell("DOOR", {20000, 0, 0}, 10);
    dgn.addLine(10, {20000, 0, 0}, {20000, 9000, 0});
    dgn.beginCell("KNOB", {20500, 4500, 0}, 10);
    dgn.addEllipse(10, 20500, 4500, 0, 100, 100, 0);
    dgn.endComplex();
    dgn.endComplex();
    DgnWriter::Attachment attachment;
    attachment.fileName = "ref.dgn";
    dgn.addAttachment(attachment);
    dgn.markDeleted(dgn.addLine(11, {0, 0, 0}, {1, 1, 0}));
    return dgn;
}

// Translates `bytes` when they load; the load status.
Plotwright::ErrorStatus TranslateBytes(const std::vector<uint8_t>& bytes, DgnConvertReport& report,
                                       size_t* entities = nullptr) {
    std::shared_ptr<const DgnV7DesignFile> document;
    const Plotwright::ErrorStatus status = DgnV7DesignFile::fromBytes(bytes, u"", document);
    if (status != StatusOk) return status;
    PwDbDatabase drawing;
    DgnTranslation translation;
    EXPECT_EQ(dgnTranslate(*document, translation, drawing, report), StatusOk);
    dgnCollectAttachments(*document);
    if (entities != nullptr) *entities = dgntest::Entities(drawing.modelSpaceId()).size();
    return StatusOk;
}

// Byte offsets at which elements start, and the end of the last one.
std::vector<size_t> Boundaries(const std::vector<uint8_t>& bytes) {
    std::vector<size_t> boundaries;
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement element;
    while (stream.next(element)) boundaries.push_back(element.byteOffset);
    boundaries.push_back(stream.position());
    return boundaries;
}

class DgnV7Prefixes : public testing::TestWithParam<bool> {};

TEST_P(DgnV7Prefixes, EveryPrefixGivesAStatusOrAPartialDrawing) {
    const std::vector<uint8_t> full = Sample(GetParam()).bytes();
    const std::vector<size_t> boundaries = Boundaries(full);
    size_t fullEntities = 0;
    DgnConvertReport report;
    ASSERT_EQ(TranslateBytes(full, report, &fullEntities), StatusOk);
    ASSERT_EQ(fullEntities, 12u);  // the attachment among them, as an underlay
    size_t previousEntities = 0;
    for (size_t length = 0; length < full.size(); ++length) {
        const std::vector<uint8_t> prefix(full.begin(), full.begin() + length);
        size_t entities = 0;
        const Plotwright::ErrorStatus status = TranslateBytes(prefix, report, &entities);
        if (length < 1536) {
            EXPECT_EQ(status, Plotwright::StatusBadFileFormat) << length;
            continue;
        }
        ASSERT_EQ(status, StatusOk) << length;
        // Whatever follows the last whole element is counted as unreadable, to the byte.
        size_t lastWhole = 0;
        for (size_t boundary : boundaries) {
            if (boundary <= length) lastWhole = boundary;
        }
        EXPECT_EQ(report.skippedCount(kPwDbDgnUnreadableBytes), length - lastWhole) << length;
        EXPECT_LE(entities, fullEntities) << length;
        // Longer prefixes never lose a whole top-level element that a shorter one had, except
        // where a complex element, cut short, gave up components.
        EXPECT_GE(entities + 3, previousEntities) << length;
        previousEntities = entities;
    }
}

INSTANTIATE_TEST_SUITE_P(Dimensions, DgnV7Prefixes, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? "ThreeD" : "TwoD";
                         });

TEST(DgnV7Corruption, LyingWordsToFollow) {
    for (bool threeD : {false, true}) {
        const std::vector<uint8_t> clean = Sample(threeD).bytes();
        const std::vector<size_t> boundaries = Boundaries(clean);
        for (size_t i = 1; i + 1 < boundaries.size(); ++i) {
            const size_t at = boundaries[i];
            const uint16_t actual = static_cast<uint16_t>(clean[at + 2] | (clean[at + 3] << 8));
            for (uint16_t lie : {uint16_t{0}, uint16_t{1}, uint16_t{11}, uint16_t(actual - 1),
                                 uint16_t(actual + 1), uint16_t{0x7FFF}, uint16_t{0xFFFF}}) {
                std::vector<uint8_t> bytes = clean;
                bytes[at + 2] = static_cast<uint8_t>(lie & 0xFF);
                bytes[at + 3] = static_cast<uint8_t>(lie >> 8);
                DgnConvertReport report;
                EXPECT_EQ(TranslateBytes(bytes, report), StatusOk) << at << " " << lie;
            }
        }
    }
}

TEST(DgnV7Corruption, HugeAndZeroComponentCounts) {
    for (uint16_t lie : {uint16_t{0}, uint16_t{1}, uint16_t{0xFFFF}}) {
        DgnV7Writer dgn(false);
        const uint32_t chain = dgn.beginComplexChain(1);
        dgn.addLine(1, {0, 0}, {1, 0});
        dgn.addLine(1, {1, 0}, {1, 1});
        dgn.endComplex();
        const uint32_t node = dgn.beginTextNode(1, {0, 0}, 100);
        dgn.addText(1, {0, 0}, "A", 100);
        dgn.endComplex();
        const uint32_t cell = dgn.beginCell("C", {0, 0});
        dgn.addLine(1, {0, 0}, {2, 2});
        dgn.endComplex();
        dgn.addLine(2, {5, 5}, {6, 6});
        for (uint32_t header : {chain, node, cell}) {
            DgnV7Writer lying = dgn;
            lying.patchWord(header + 18, lie);  // component length
            lying.patchWord(header + 19, lie);  // component count (the name, for the cell)
            DgnConvertReport report;
            size_t entities = 0;
            ASSERT_EQ(TranslateBytes(lying.bytes(), report, &entities), StatusOk);
            // Components a header doesn't claim are translated on their own.
            EXPECT_GE(entities, 4u) << header << " " << lie;
            EXPECT_LE(entities, 6u) << header << " " << lie;
        }
    }
}

TEST(DgnV7Corruption, NestingWithoutEnd) {
    DgnV7Writer dgn(false);
    for (int depth = 0; depth < 100; ++depth) dgn.beginCell("NEST", {0, 0});
    dgn.addLine(0, {0, 0}, {1, 1});
    for (int depth = 0; depth < 100; ++depth) dgn.endComplex();
    DgnConvertReport report;
    ASSERT_EQ(TranslateBytes(dgn.bytes(), report), StatusOk);
    EXPECT_GT(report.skippedCount(kDgnCellHeader), 0u) << "cells nested too deep are skipped";
    EXPECT_EQ(report.translatedCount(kDgnCellHeader, u"PwDbBlockReference"), 33u);
}

TEST(DgnV7Corruption, RandomTailsAfterAControlBlock) {
    std::mt19937 random(20240611);
    const std::vector<uint8_t> header = DgnV7Writer(false).bytes();
    for (int round = 0; round < 300; ++round) {
        std::vector<uint8_t> bytes(header.begin(), header.begin() + 1536);
        if (round % 2 == 1) bytes[1214] |= 0x40;  // a 3D file
        const size_t tail = random() % 4096;
        for (size_t i = 0; i < tail; ++i) bytes.push_back(static_cast<uint8_t>(random()));
        DgnConvertReport report;
        EXPECT_EQ(TranslateBytes(bytes, report), StatusOk) << round;
    }
}

TEST(DgnV7Corruption, RandomlyDamagedSamples) {
    std::mt19937 random(77);
    for (bool threeD : {false, true}) {
        const std::vector<uint8_t> clean = Sample(threeD).bytes();
        for (int round = 0; round < 300; ++round) {
            std::vector<uint8_t> bytes = clean;
            const int damage = 1 + static_cast<int>(random() % 16);
            for (int i = 0; i < damage; ++i) {
                const size_t at = 1536 + random() % (bytes.size() - 1536);
                bytes[at] = static_cast<uint8_t>(random());
            }
            DgnConvertReport report;
            EXPECT_EQ(TranslateBytes(bytes, report), StatusOk) << round;
        }
    }
}

TEST(DgnV7Corruption, RandomBytesAreNoDesignFile) {
    std::mt19937 random(5);
    for (int round = 0; round < 200; ++round) {
        std::vector<uint8_t> bytes(random() % 3000);
        for (uint8_t& byte : bytes) byte = static_cast<uint8_t>(random());
        bytes.resize(std::max<size_t>(bytes.size(), 2));
        bytes[0] = 0x08;  // a control block's level, but never its type
        bytes[1] = 0x07;
        DgnConvertReport report;
        EXPECT_EQ(TranslateBytes(bytes, report), Plotwright::StatusBadFileFormat);
        EXPECT_EQ(dgnClassifyBytes(bytes, bytes.size(), u"x.dgn"), DgnFileKind::NotDgn);
    }
}

// The same bytes as files, through the module's entries.
class DgnV7DamagedFiles : public lodeqdbtest::TempFolderTest {
  protected:
    DgnV7DamagedFiles() : TempFolderTest("dgn-damaged") {}
};

TEST_F(DgnV7DamagedFiles, TheModuleAnswersWithStatuses) {
    dgntest::DgnModule dgn;
    ASSERT_TRUE(dgn.bind());
    const std::vector<uint8_t> full = Sample(true).bytes();
    for (size_t length = 0; length < full.size(); length += 97) {
        Write("cut.dgn", std::string(full.begin(), full.begin() + length));
        const wstring path = Path("cut.dgn");
        const bool design = length >= 1536;
        EXPECT_EQ(dgn.isDgnFile(PwString(path)), design) << length;
        void* file = dgn.loadFile(path.c_str(), 0, 0x80000000u, 1);
        EXPECT_EQ(file != nullptr, design) << length;
        if (file != nullptr) {
            void* item = dgn.getItem(file, 0);
            PwDbDatabase drawing;
            PwDbDgnConvertOptions options;
            EXPECT_EQ(dgn.convertItemEx(item, &options, &drawing), StatusOk) << length;
            dgn.closeItem(item);
            dgn.closeFile(file);
        }
        PwArray<PwDbDgnRefFileData*> references;
        EXPECT_EQ(dgn.getFileReferences(path.c_str(), nullptr, references),
                  design ? StatusOk : Plotwright::StatusBadFileFormat)
            << length;
        for (size_t i = 0; i < references.length(); ++i) delete references[i];
    }
}

}  // namespace
