// The largest handle names no object: a record that refers to it reads the reference as null,
// and a drawing read from such a file saves and reads back to the same bytes, its handseed
// never wrapping around to 0.
#include <gtest/gtest.h>

#include <string>

#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "PwDbSampleDrawing.h"
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"

namespace {

using Plotwright::StatusOk;

TEST(HandleLimit, TheLargestHandleNamesNothing) {
    PwDbDatabase drawing;
    EXPECT_TRUE(drawing.getPwDbObjectId(kPwDbNoHandleAfter, true).isNull());
    auto* line = new PwDbLine;
    EXPECT_EQ(drawing.addPwDbObjectWithHandle(line, kPwDbNoHandleAfter),
              Plotwright::StatusInvalidInput);
    delete line;
}

TEST(HandleLimit, ARecordReferringToTheLargestHandleRoundTrips) {
    const auto sample = pwdbfiletest::MakeSampleDrawing();
    PwDbDrawingImage image;
    ASSERT_EQ(sample->captureImage(image, PwDb::PwDbPlwVersionCurrent), StatusOk);
    // The first record that holds a handle now names the largest one.
    bool changed = false;
    for (PwDbObjectRecord& record : image.objects) {
        for (auto& item : record.data) {
            if (auto* handle = std::get_if<PwDbMemoryFiler::Handle>(&item)) {
                handle->value = kPwDbNoHandleAfter;
                changed = true;
                break;
            }
        }
        if (changed) break;
    }
    ASSERT_TRUE(changed);
    PwDbDatabase read;
    ASSERT_EQ(read.loadImage(image), StatusOk);
    PwDbDrawingImage first;
    ASSERT_EQ(read.captureImage(first, PwDb::PwDbPlwVersionCurrent), StatusOk);
    EXPECT_NE(first.handseed, 0u);
    std::string saved;
    ASSERT_EQ(pwdbEncodePlw(first, saved), StatusOk);
    PwDbDrawingImage decoded;
    ASSERT_EQ(pwdbDecodePlw(saved, decoded), StatusOk);
    PwDbDatabase again;
    ASSERT_EQ(again.loadImage(decoded), StatusOk);
    PwDbDrawingImage second;
    ASSERT_EQ(again.captureImage(second, PwDb::PwDbPlwVersionCurrent), StatusOk);
    std::string savedAgain;
    ASSERT_EQ(pwdbEncodePlw(second, savedAgain), StatusOk);
    EXPECT_EQ(savedAgain, saved);
}

}  // namespace
