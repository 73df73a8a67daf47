// Decoding element geometry, as written by dgnwriter, in 2D and 3D; and elements that claim
// more than they hold.
#include "modules/dgn/DgnV7Elements.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <vector>

#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

using DgnWriter::DgnV7Writer;

constexpr double kDegree = std::numbers::pi / 180.0;

// The element starting at `wordOffset` of `bytes`.
DgnV7RawElement At(const std::vector<uint8_t>& bytes, uint32_t wordOffset) {
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement element;
    while (stream.next(element)) {
        if (element.wordOffset() == wordOffset) return element;
    }
    ADD_FAILURE() << "no element at word " << wordOffset;
    return {};
}

class DgnV7ElementsIn : public testing::TestWithParam<bool> {
  protected:
    bool threeD() const { return GetParam(); }
    DgnV7Writer dgn{GetParam()};
};

TEST_P(DgnV7ElementsIn, Lines) {
    const uint32_t at = dgn.addLine(3, {-5, 7, 9}, {100000, -2000000000, -4});
    const auto bytes = dgn.bytes();
    DgnV7Line line;
    ASSERT_TRUE(dgnDecodeLine(At(bytes, at), threeD(), line));
    EXPECT_EQ(line.start.x, -5);
    EXPECT_EQ(line.start.y, 7);
    EXPECT_EQ(line.start.z, threeD() ? 9 : 0);
    EXPECT_EQ(line.end.y, -2000000000);
    EXPECT_EQ(line.end.z, threeD() ? -4 : 0);
}

TEST_P(DgnV7ElementsIn, VertexLists) {
    const uint32_t string = dgn.addLineString(1, {{0, 0, 1}, {10, 0, 2}, {10, 10, 3}});
    const uint32_t shape = dgn.addShape(1, {{0, 0, 0}, {5, 0, 0}, {5, 5, 0}});
    const auto bytes = dgn.bytes();
    DgnV7Vertices vertices;
    ASSERT_TRUE(dgnDecodeVertices(At(bytes, string), threeD(), vertices));
    ASSERT_EQ(vertices.points.size(), 3u);
    EXPECT_EQ(vertices.points[2].x, 10);
    EXPECT_EQ(vertices.points[2].z, threeD() ? 3 : 0);
    ASSERT_TRUE(dgnDecodeVertices(At(bytes, shape), threeD(), vertices));
    ASSERT_EQ(vertices.points.size(), 4u) << "the writer closes the shape";
    EXPECT_EQ(vertices.points[3].x, 0);
}

TEST_P(DgnV7ElementsIn, AVertexCountBeyondTheElementIsRefused) {
    const uint32_t string = dgn.addLineString(1, {{0, 0, 0}, {10, 0, 0}});
    dgn.patchWord(string + 18, 3);
    const uint32_t none = dgn.addLineString(1, {});
    const auto bytes = dgn.bytes();
    DgnV7Vertices vertices;
    EXPECT_FALSE(dgnDecodeVertices(At(bytes, string), threeD(), vertices));
    EXPECT_FALSE(dgnDecodeVertices(At(bytes, none), threeD(), vertices));
}

TEST_P(DgnV7ElementsIn, EllipsesAndArcs) {
    const uint32_t ellipse = dgn.addEllipse(1, 1000.5, -20, 30, 400, 100, 30);
    const uint32_t arc = dgn.addArc(1, 0, 0, 0, 50, 50, 0, 45, -90);
    const uint32_t whole = dgn.addArc(1, 0, 0, 0, 50, 50, 0, 0, 0);
    const auto bytes = dgn.bytes();
    DgnV7Conic conic;
    ASSERT_TRUE(dgnDecodeConic(At(bytes, ellipse), threeD(), conic));
    EXPECT_TRUE(conic.closed);
    EXPECT_EQ(conic.center.x, 1000.5);
    EXPECT_EQ(conic.center.y, -20);
    EXPECT_EQ(conic.center.z, threeD() ? 30 : 0);
    EXPECT_EQ(conic.primary, 400);
    EXPECT_EQ(conic.secondary, 100);
    EXPECT_NEAR(conic.axes.xAxis.x, std::cos(30 * kDegree), 1e-9);
    EXPECT_NEAR(conic.axes.xAxis.y, std::sin(30 * kDegree), 1e-9);
    EXPECT_NEAR(conic.axes.yAxis.x, -std::sin(30 * kDegree), 1e-9);
    EXPECT_NEAR(conic.axes.yAxis.y, std::cos(30 * kDegree), 1e-9);
    EXPECT_NEAR(conic.axes.xAxis.z, 0, 1e-9);
    ASSERT_TRUE(dgnDecodeConic(At(bytes, arc), threeD(), conic));
    EXPECT_FALSE(conic.closed);
    EXPECT_NEAR(conic.startRadians, 45 * kDegree, 1e-12);
    EXPECT_NEAR(conic.sweepRadians, -90 * kDegree, 1e-12) << "the top bit turns clockwise";
    ASSERT_TRUE(dgnDecodeConic(At(bytes, whole), threeD(), conic));
    EXPECT_NEAR(conic.sweepRadians, 2 * std::numbers::pi, 1e-12) << "no sweep is a full turn";
}

TEST_P(DgnV7ElementsIn, Texts) {
    const uint32_t at = dgn.addText(2, {100, 200, 300}, "Room 1.04", 600, 90, 3);
    const auto bytes = dgn.bytes();
    DgnV7Text text;
    ASSERT_TRUE(dgnDecodeText(At(bytes, at), threeD(), text));
    EXPECT_EQ(text.text, u"Room 1.04");
    EXPECT_EQ(text.font, 3);
    EXPECT_NEAR(text.height, 600, 0.01);
    EXPECT_EQ(text.origin.x, 100);
    EXPECT_EQ(text.origin.z, threeD() ? 300 : 0);
    EXPECT_NEAR(text.axes.xAxis.x, 0, 1e-9);
    EXPECT_NEAR(text.axes.xAxis.y, 1, 1e-9);
}

TEST_P(DgnV7ElementsIn, ATextCountBeyondTheElementIsRefused) {
    const uint32_t at = dgn.addText(2, {0, 0, 0}, "AB", 600);
    const size_t countWord = (threeD() ? 74 : 58) / 2;
    dgn.patchWord(at + static_cast<uint32_t>(countWord), 200);
    const auto bytes = dgn.bytes();
    DgnV7Text text;
    EXPECT_FALSE(dgnDecodeText(At(bytes, at), threeD(), text));
}

TEST_P(DgnV7ElementsIn, CellHeaders) {
    const uint32_t at = dgn.beginCell("DOOR.1", {5, 6, 7}, 4, 2.0, 90);
    dgn.endComplex();
    const auto bytes = dgn.bytes();
    DgnV7CellHeader cell;
    ASSERT_TRUE(dgnDecodeCellHeader(At(bytes, at), threeD(), cell));
    EXPECT_EQ(cell.name, u"DOOR.1");
    EXPECT_EQ(cell.origin.x, 5);
    EXPECT_EQ(cell.origin.y, 6);
    EXPECT_EQ(cell.origin.z, threeD() ? 7 : 0);
}

INSTANTIATE_TEST_SUITE_P(Dimensions, DgnV7ElementsIn, testing::Values(false, true),
                         [](const testing::TestParamInfo<bool>& info) {
                             return info.param ? "ThreeD" : "TwoD";
                         });

TEST(DgnV7Elements, ShortElementsDecodeToNothing) {
    const std::vector<uint8_t> bytes = {0x01, 0x03, 0x00, 0x00};
    DgnV7ElementStream stream(bytes);
    DgnV7RawElement element;
    ASSERT_TRUE(stream.next(element));
    DgnV7Line line;
    DgnV7Vertices vertices;
    DgnV7Conic conic;
    DgnV7Text text;
    DgnV7CellHeader cell;
    for (bool threeD : {false, true}) {
        EXPECT_FALSE(dgnDecodeLine(element, threeD, line));
        EXPECT_FALSE(dgnDecodeVertices(element, threeD, vertices));
        EXPECT_FALSE(dgnDecodeText(element, threeD, text));
        EXPECT_FALSE(dgnDecodeCellHeader(element, threeD, cell));
        element.type = kDgnArc;
        EXPECT_FALSE(dgnDecodeConic(element, threeD, conic));
    }
}

TEST(DgnV7Elements, Radix50Names) {
    EXPECT_EQ(dgnRadix50Name(DgnV7Writer::radix50("ABC123")), u"ABC123");
    EXPECT_EQ(dgnRadix50Name(DgnV7Writer::radix50("A")), u"A");
    EXPECT_EQ(dgnRadix50Name(DgnV7Writer::radix50("$. 9")), u"$. 9");
    EXPECT_EQ(dgnRadix50Name(0), u"");
    // Words beyond the alphabet still give six characters of it.
    EXPECT_EQ(dgnRadix50Name(0xFFFFFFFFu).size(), 6u);
}

}  // namespace
