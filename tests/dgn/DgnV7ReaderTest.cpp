// The element stream and complex components, over files written by dgnwriter and bytes that
// lie about their lengths.
#include "modules/dgn/DgnV7Reader.h"

#include <gtest/gtest.h>

#include <vector>

#include "dgn/DgnTestSupport.h"
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using DgnWriter::DgnV7Writer;

struct Seen {
    uint8_t type;
    uint8_t level;
    bool complex;
    bool deleted;
    uint64_t wordOffset;
};

std::vector<Seen> Walk(const std::vector<uint8_t>& bytes, DgnV7StreamEnd* end = nullptr) {
    std::vector<Seen> seen;
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement element;
    while (stream.next(element)) {
        seen.push_back(
            {element.type, element.level, element.complex, element.deleted, element.wordOffset()});
    }
    if (end != nullptr) *end = stream.end();
    return seen;
}

TEST(DgnV7ElementStream, WalksTheDesignHeaderAndElementsToTheEndMarker) {
    DgnV7Writer dgn(false);
    const uint32_t line = dgn.addLine(12, {0, 0}, {100, 0});
    const uint32_t gone = dgn.addLine(63, {0, 0}, {5, 5});
    dgn.markDeleted(gone);
    DgnV7StreamEnd end = DgnV7StreamEnd::Running;
    const auto seen = Walk(dgn.bytes(), &end);
    ASSERT_EQ(seen.size(), 5u);
    EXPECT_EQ(seen[0].type, kDgnControlBlock);
    EXPECT_EQ(seen[0].level, 8);
    EXPECT_EQ(seen[1].type, kDgnDigitizerSetup);
    EXPECT_EQ(seen[2].type, kDgnLevelSymbology);
    EXPECT_EQ(seen[3].type, kDgnLine);
    EXPECT_EQ(seen[3].level, 12);
    EXPECT_EQ(seen[3].wordOffset, line);
    EXPECT_FALSE(seen[3].deleted);
    EXPECT_EQ(seen[4].level, 63);
    EXPECT_TRUE(seen[4].deleted);
    EXPECT_EQ(seen[4].wordOffset, gone);
    EXPECT_EQ(end, DgnV7StreamEnd::EndMarker);
}

TEST(DgnV7ElementStream, EndsWithoutMarkerAtTheLastByte) {
    DgnV7Writer dgn(false);
    dgn.addLine(1, {0, 0}, {1, 1});
    std::vector<uint8_t> bytes = dgn.bytes();
    bytes.resize(bytes.size() - 2);  // no end-of-design word
    DgnV7StreamEnd end = DgnV7StreamEnd::Running;
    EXPECT_EQ(Walk(bytes, &end).size(), 4u);
    EXPECT_EQ(end, DgnV7StreamEnd::EndOfBytes);
}

TEST(DgnV7ElementStream, StopsAtAnElementThatRunsPastTheEnd) {
    DgnV7Writer dgn(false);
    dgn.addLine(1, {0, 0}, {1, 1});
    const uint32_t lying = dgn.addLine(2, {0, 0}, {1, 1});
    dgn.setWordsToFollow(lying, 0xFFFF);
    dgn.addLine(3, {0, 0}, {1, 1});
    const std::vector<uint8_t> bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement element;
    size_t count = 0;
    while (stream.next(element)) ++count;
    EXPECT_EQ(count, 4u);
    EXPECT_EQ(stream.end(), DgnV7StreamEnd::Truncated);
    EXPECT_EQ(stream.position(), size_t{lying} * 2);
    EXPECT_EQ(stream.unreadBytes(), bytes.size() - size_t{lying} * 2);
    EXPECT_FALSE(stream.next(element)) << "an ended stream stays ended";
}

TEST(DgnV7ElementStream, CutsInsideHeaderWordsAreTruncations) {
    const std::vector<uint8_t> one = {0x08};
    DgnV7StreamEnd end = DgnV7StreamEnd::Running;
    EXPECT_TRUE(Walk(one, &end).empty());
    EXPECT_EQ(end, DgnV7StreamEnd::Truncated);
    const std::vector<uint8_t> three = {0x08, 0x09, 0xFE};
    EXPECT_TRUE(Walk(three, &end).empty());
    EXPECT_EQ(end, DgnV7StreamEnd::Truncated);
    EXPECT_TRUE(Walk({}, &end).empty());
    EXPECT_EQ(end, DgnV7StreamEnd::EndOfBytes);
}

TEST(DgnV7ElementStream, TinyElementsStillAdvance) {
    // Four-byte elements (no words follow) are odd but walkable, and walked one by one.
    const std::vector<uint8_t> bytes = {0x01, 0x03, 0, 0, 0x02, 0x03, 0, 0, 0xFF, 0xFF};
    const auto seen = Walk(bytes);
    ASSERT_EQ(seen.size(), 2u);
    EXPECT_EQ(seen[1].level, 2);
    EXPECT_EQ(seen[1].wordOffset, 2u);
}

TEST(DgnV7ElementStream, PeekDoesNotMove) {
    DgnV7Writer dgn(false);
    const std::vector<uint8_t> bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement peeked, read;
    ASSERT_TRUE(stream.peek(peeked));
    ASSERT_TRUE(stream.next(read));
    EXPECT_EQ(peeked.byteOffset, read.byteOffset);
    EXPECT_EQ(peeked.bytes.size(), read.bytes.size());
    EXPECT_EQ(stream.position(), 1536u);
}

// A cell holding a chain, a line and a nested cell; then a line after the cell.
class DgnV7ComponentsTest : public testing::Test {
  protected:
    void SetUp() override {
        cell = dgn.beginCell("OUTER", {0, 0});
        chain = dgn.beginComplexChain(4);
        dgn.addLine(4, {0, 0}, {10, 0});
        dgn.addLine(4, {10, 0}, {10, 10});
        dgn.endComplex();
        dgn.addLine(5, {0, 0}, {1, 1});
        inner = dgn.beginCell("INNER", {0, 0});
        dgn.addLine(6, {0, 0}, {2, 2});
        dgn.endComplex();
        dgn.endComplex();
        after = dgn.addLine(7, {0, 0}, {3, 3});
    }

    // Positions `stream` just after the outer cell header.
    DgnV7RawElement ReadCellHeader(DgnV7ElementStream& stream) {
        DgnV7RawElement element;
        while (stream.next(element) && element.type != kDgnCellHeader) {
        }
        return element;
    }

    DgnV7Writer dgn{false};
    uint32_t cell = 0, chain = 0, inner = 0, after = 0;
    std::vector<uint8_t> bytes;
};

TEST_F(DgnV7ComponentsTest, DirectComponentsSkipUnreadNestedOnes) {
    bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    const DgnV7RawElement header = ReadCellHeader(stream);
    ASSERT_EQ(header.wordOffset(), cell);
    size_t words = 0, count = 0;
    ASSERT_TRUE(dgnComplexExtent(header, words, count));
    EXPECT_EQ(count, SIZE_MAX) << "cells state no component count";
    DgnV7Components components(stream, words, count);
    std::vector<uint64_t> direct;
    DgnV7RawElement component;
    while (components.next(component)) direct.push_back(component.wordOffset());
    ASSERT_EQ(direct.size(), 3u);
    EXPECT_EQ(direct[0], chain);
    EXPECT_EQ(direct[2], inner);
    DgnV7RawElement next;
    ASSERT_TRUE(stream.next(next));
    EXPECT_EQ(next.wordOffset(), after);
    EXPECT_FALSE(next.complex);
}

TEST_F(DgnV7ComponentsTest, NestedReadersTakeTheirOwnComponents) {
    bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    const DgnV7RawElement header = ReadCellHeader(stream);
    size_t words = 0, count = 0;
    ASSERT_TRUE(dgnComplexExtent(header, words, count));
    DgnV7Components components(stream, words, count);
    DgnV7RawElement component;
    ASSERT_TRUE(components.next(component));
    ASSERT_EQ(component.type, kDgnComplexChain);
    size_t chainWords = 0, chainCount = 0;
    ASSERT_TRUE(dgnComplexExtent(component, chainWords, chainCount));
    EXPECT_EQ(chainCount, 2u);
    EXPECT_EQ(chainWords, 2u * 26u);
    DgnV7Components chainParts(stream, chainWords, chainCount, components.end());
    DgnV7RawElement part;
    size_t parts = 0;
    while (chainParts.next(part)) {
        EXPECT_EQ(part.type, kDgnLine);
        ++parts;
    }
    EXPECT_EQ(parts, 2u);
    ASSERT_TRUE(components.next(component));
    EXPECT_EQ(component.level, 5);
}

TEST_F(DgnV7ComponentsTest, AHugeStatedLengthStopsAtTheFirstElementWithoutTheComplexBit) {
    dgn.patchWord(cell + 18, 0xFFFF);
    bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    const DgnV7RawElement header = ReadCellHeader(stream);
    size_t words = 0, count = 0;
    ASSERT_TRUE(dgnComplexExtent(header, words, count));
    DgnV7Components(stream, words, count).skipRest();
    DgnV7RawElement next;
    ASSERT_TRUE(stream.next(next));
    EXPECT_EQ(next.wordOffset(), after);
}

TEST_F(DgnV7ComponentsTest, AShortStatedLengthLeavesTheRestAsOrphans) {
    dgn.patchWord(cell + 18, 27 + 24);  // the header's own words and the chain header only
    bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    const DgnV7RawElement header = ReadCellHeader(stream);
    size_t words = 0, count = 0;
    ASSERT_TRUE(dgnComplexExtent(header, words, count));
    EXPECT_EQ(words, 24u);
    DgnV7Components components(stream, words, count);
    DgnV7RawElement component;
    ASSERT_TRUE(components.next(component));
    EXPECT_EQ(component.wordOffset(), chain);
    // The chain's own lines don't fit in what the cell claims, so they stay in the stream.
    EXPECT_FALSE(components.next(component));
    DgnV7RawElement next;
    ASSERT_TRUE(stream.next(next));
    EXPECT_EQ(next.type, kDgnLine);
    EXPECT_TRUE(next.complex);
}

TEST_F(DgnV7ComponentsTest, AComponentCountCapsTheDirectComponents) {
    dgn.patchWord(chain + 19, 1);
    bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    ReadCellHeader(stream);
    DgnV7RawElement chainHeader;
    ASSERT_TRUE(stream.next(chainHeader));
    size_t words = 0, count = 0;
    ASSERT_TRUE(dgnComplexExtent(chainHeader, words, count));
    EXPECT_EQ(count, 1u);
    DgnV7Components parts(stream, words, count);
    DgnV7RawElement part;
    EXPECT_TRUE(parts.next(part));
    EXPECT_FALSE(parts.next(part));
    EXPECT_EQ(parts.count(), 1u);
}

TEST(DgnV7ComplexExtent, OnlyComplexHeadersOfKnownKindsHaveOne) {
    DgnV7Writer dgn(true);
    const uint32_t node = dgn.beginTextNode(1, {0, 0, 0}, 100);
    dgn.addText(1, {0, 0, 0}, "A", 100);
    dgn.endComplex();
    const std::vector<uint8_t> bytes = dgn.bytes();
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement element;
    size_t words = 0, count = 0;
    while (stream.next(element)) {
        const bool header = dgnComplexExtent(element, words, count);
        EXPECT_EQ(header, element.wordOffset() == node) << int(element.type);
        if (header) {
            EXPECT_EQ(count, 1u);
        }
    }
    // A header too short to hold its length word has none.
    const std::vector<uint8_t> shortChain = {0x00, 0x0C, 0x00, 0x00};
    DgnV7ElementStream tiny(shortChain);
    ASSERT_TRUE(tiny.next(element));
    EXPECT_FALSE(dgnComplexExtent(element, words, count));
}

}  // namespace
