// The shapes of the indexed native file keep their tags in runs: sound runs read back as the
// tags they stand for, and runs a writer never makes are refused behind good checksums.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "PwDbImageTestSupport.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlwIndexed.h"

namespace {

using Item = PwDbMemoryFiler::Item;
using Plotwright::StatusBadFileFormat;
using Plotwright::StatusOk;

// One record of the root class whose items are a bool and a text: one shape of two runs.
std::string IndexedFile() {
    PwDbDrawingImage image;
    image.appInfo = {{kPwDbOwnerGuidKey, u"ab"}};
    image.objects.push_back(pwdbfiletest::Record(
        {u"PwDbObject"}, 5, {Item(true), Item(std::in_place_type<wstring>, u"x")}));
    std::string bytes;
    EXPECT_EQ(pwdbEncodePlwIndexed(image, bytes), StatusOk);
    return bytes;
}

// The file with the last bytes of its class table, where the one shape stands (class 0, two
// runs: bool once, text once), replaced by `shape` of the same length, and resealed.
std::string WithShape(const std::string& shape) {
    std::string bytes = IndexedFile();
    for (const pwdbfiletest::SectionSpan& span : pwdbfiletest::Sections(bytes)) {
        if (span.tag != "CLSS") continue;
        const size_t at = span.payload + span.length - shape.size();
        EXPECT_EQ(bytes.substr(at, 6), std::string("\x00\x02\x05\x01\x01\x01", 6));
        bytes.replace(at, shape.size(), shape);
        pwdbfiletest::Reseal(bytes);
        return bytes;
    }
    ADD_FAILURE() << "no class table";
    return bytes;
}

Plotwright::ErrorStatus Decode(const std::string& bytes) {
    PwDbDrawingImage image;
    return pwdbDecodePlw(bytes, image);
}

TEST(PwDbPlwShapeRuns, TheWrittenShapeReadsBack) {
    const std::string bytes = WithShape(std::string("\x00\x02\x05\x01\x01\x01", 6));
    EXPECT_EQ(bytes, IndexedFile()) << "resealing changes nothing of a sound file";
    EXPECT_EQ(Decode(bytes), StatusOk);
}

TEST(PwDbPlwShapeRuns, RunsNoWriterMakesAreRefused) {
    const std::vector<std::pair<std::string, std::string>> shapes = {
        {std::string("\x00\x02\x00\x01\x01\x01", 6), "tag 0"},
        {std::string("\x00\x02\x05\x01\x08\x01", 6), "tag 8"},
        {std::string("\x00\x02\x05\x00\x01\x01", 6), "a run of none"},
        {std::string("\x00\x02\x05\x01\x05\x01", 6), "two runs of one tag"},
        {std::string("\x00\x01\x05\xFF\xFF\x7F", 6), "more tags than the file has bytes"},
        {std::string("\x00\x7F\x05\x01\x01\x01", 6), "more runs than bytes"},
        {std::string("\x01\x02\x05\x01\x01\x01", 6), "a class that isn't there"},
        {std::string("\x00\x01\x05\x02\x01\x01", 6), "bytes left over"},
    };
    for (const auto& [shape, what] : shapes) {
        EXPECT_EQ(Decode(WithShape(shape)), StatusBadFileFormat) << what;
    }
}

// A shape whose tags don't fit its records' values reads as a front, and its records fail:
// a double takes 8 bytes, and the record holds 4.
TEST(PwDbPlwShapeRuns, AShapeOfOtherTagsFailsItsRecords) {
    EXPECT_EQ(Decode(WithShape(std::string("\x00\x02\x04\x01\x01\x01", 6))), StatusBadFileFormat);
}

}  // namespace
