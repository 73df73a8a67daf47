// Text entities: placement, size, angle and text, their checks, the persistent form and the
// open protocol.
#include <lodeqdb/toolkit/db/PwDbText.h>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include "toolkit/pal/PwHeapFaults.h"

#include "PwDbEntityTestSupport.h"

namespace {

using namespace pwdbtest;

// Longer than a PwString holds inside itself, so that copying it takes a heap block.
constexpr const char16_t* kLongText = u"Erdgeschoss Grundriss, Achsen A bis F, Maßstab 1:100";

std::unique_ptr<PwDbText> makeText(double offset, const char16_t* text = u"Section A-A") {
    auto entity = std::make_unique<PwDbText>();
    EXPECT_EQ(entity->setPosition(PwGePoint3d(100 + offset, 20, -offset)), StatusOk);
    EXPECT_EQ(entity->setHeight(2.5 + offset), StatusOk);
    EXPECT_EQ(entity->setRotation(0.75 - offset), StatusOk);
    EXPECT_EQ(entity->setTextString(text), StatusOk);
    return entity;
}

void expectSame(const PwDbText& actual, const PwDbText& expected) {
    expectSameEntity(actual, expected);
    EXPECT_EQ(actual.position(), expected.position());
    EXPECT_EQ(actual.height(), expected.height());
    EXPECT_EQ(actual.rotation(), expected.rotation());
    EXPECT_EQ(wstring(actual.textString()), wstring(expected.textString()));
}

class PwDbTextHeap : public pwdbtest::HeapFaultTest {};

TEST(PwDbText, StartsEmptyWithHeightOne) {
    PwDbText text;
    ASSERT_NE(text.textString(), nullptr);
    EXPECT_EQ(wstring(text.textString()), u"");
    EXPECT_EQ(text.position(), PwGePoint3d());
    EXPECT_EQ(text.height(), 1.0);
    EXPECT_EQ(text.rotation(), 0.0);
}

TEST(PwDbText, KeepsItsValues) {
    PwDbText text;
    EXPECT_EQ(text.setPosition(PwGePoint3d(1, 2, 3)), StatusOk);
    EXPECT_EQ(text.setHeight(0.001), StatusOk);
    EXPECT_EQ(text.setRotation(-9.5), StatusOk);
    EXPECT_EQ(text.setTextString(u"Fläche 12 m²"), StatusOk);
    EXPECT_EQ(text.position(), PwGePoint3d(1, 2, 3));
    EXPECT_EQ(text.height(), 0.001);
    EXPECT_EQ(text.rotation(), -9.5);
    EXPECT_EQ(wstring(text.textString()), u"Fläche 12 m²");
    EXPECT_EQ(text.setTextString(kLongText), StatusOk);
    EXPECT_EQ(wstring(text.textString()), kLongText);
    EXPECT_EQ(text.setTextString(u""), StatusOk);
    EXPECT_EQ(wstring(text.textString()), u"");
}

TEST(PwDbText, CopyOutlivesLaterChanges) {
    const auto text = makeText(0, kLongText);
    PwString copy(u"previous");
    ASSERT_EQ(text->textString(copy), StatusOk);
    EXPECT_EQ(copy, kLongText);
    ASSERT_EQ(text->setTextString(u"changed"), StatusOk);
    EXPECT_EQ(copy, kLongText);
    EXPECT_EQ(wstring(text->textString()), u"changed");
}

TEST(PwDbText, RefusesNullText) {
    const auto text = makeText(0);
    EXPECT_EQ(text->setTextString(nullptr), StatusInvalidInput);
    EXPECT_EQ(wstring(text->textString()), u"Section A-A");
}

TEST(PwDbText, RefusesBadNumbers) {
    const auto text = makeText(0);
    for (double height : {0.0, -0.0, -1.0, kNaN, kInf, -kInf}) {
        SCOPED_TRACE(height);
        EXPECT_EQ(text->setHeight(height), StatusInvalidInput);
    }
    for (double bad : {kNaN, kInf, -kInf}) {
        SCOPED_TRACE(bad);
        EXPECT_EQ(text->setRotation(bad), StatusInvalidInput);
        EXPECT_EQ(text->setPosition(PwGePoint3d(bad, 0, 0)), StatusInvalidInput);
        EXPECT_EQ(text->setPosition(PwGePoint3d(0, 0, bad)), StatusInvalidInput);
    }
    expectSame(*text, *makeText(0));
}

TEST_F(PwDbTextHeap, TextStaysWhenItsCopyCannotBeMade) {
    const auto text = makeText(0);
    pwHeapFailAfter(0);
    EXPECT_EQ(text->setTextString(kLongText), Plotwright::StatusOutOfMemory);
    EXPECT_FALSE(pwHeapFailPending());
    pwHeapFailReset();
    EXPECT_EQ(wstring(text->textString()), u"Section A-A");

    ASSERT_EQ(text->setTextString(kLongText), StatusOk);
    PwString copy(u"kept");
    pwHeapFailAfter(0);
    EXPECT_EQ(text->textString(copy), Plotwright::StatusOutOfMemory);
    pwHeapFailReset();
    EXPECT_EQ(copy, u"kept");
}

TEST(PwDbText, ClosedTextRefusesChangesUntilOpenedForWrite) {
    PwDbDatabase database;
    const PwDbObjectId id = appendToModelSpace(database, makeText(0).release());
    ASSERT_FALSE(id.isNull());
    PwDbText* text = nullptr;
    ASSERT_EQ(pwdbOpenObject(text, id, PwDb::OpenForRead), StatusOk);
    EXPECT_EQ(text->setPosition(PwGePoint3d(5, 5, 5)), StatusNotOpenForWrite);
    EXPECT_EQ(text->setHeight(9.0), StatusNotOpenForWrite);
    EXPECT_EQ(text->setRotation(1.0), StatusNotOpenForWrite);
    EXPECT_EQ(text->setTextString(u"other"), StatusNotOpenForWrite);
    const auto twin = makeText(0);
    EXPECT_EQ(text->position(), twin->position());
    EXPECT_EQ(text->height(), twin->height());
    EXPECT_EQ(text->rotation(), twin->rotation());
    EXPECT_EQ(wstring(text->textString()), u"Section A-A");
    EXPECT_EQ(text->upgradeOpen(), StatusOk);
    EXPECT_EQ(text->setTextString(u"other"), StatusOk);
    EXPECT_EQ(wstring(text->textString()), u"other");
    EXPECT_EQ(text->close(), StatusOk);
}

TEST(PwDbText, RoundTripsThroughAFiler) {
    PwDbDatabase database;
    expectRoundTripInDrawing(database, makeText(1, kLongText), 7, expectSame);
}

TEST(PwDbText, EmptyTextRoundTrips) {
    const auto source = makeText(0, u"");
    PwDbMemoryFiler filer;
    ASSERT_EQ(source->plwOutFields(&filer), StatusOk);
    const auto target = makeText(3, kLongText);
    ASSERT_EQ(target->plwInFields(&filer), StatusOk);
    expectSame(*target, *source);
}

TEST(PwDbText, ShortenedDataIsRefused) {
    expectEveryShortenedFormRefused(
        *makeText(0), [] { return makeText(100, kLongText); }, expectSame);
}

TEST(PwDbText, StoredValuesAreCheckedLikeSetterValues) {
    const auto source = makeText(0);
    PwDbMemoryFiler full;
    ASSERT_EQ(source->plwOutFields(&full), StatusOk);
    const size_t count = full.items().size();
    // From the end: text, rotation, height, position z.
    const std::pair<size_t, PwDbMemoryFiler::Item> breaks[] = {
        {count - 2, kNaN},      {count - 3, 0.0},  {count - 3, -4.0},
        {count - 4, kInf},      {count - 1, 12.0},  // a number where the text belongs
        {count - 3, int32_t{2}}};                   // an integer where the height belongs
    for (const auto& [index, item] : breaks) {
        SCOPED_TRACE(index);
        expectChangedFormRefused(
            full, index, item, [] { return makeText(100); }, expectSame);
    }
}

TEST(PwDbText, ClassDerivesFromTheEntityAndIsFoundByName) {
    expectEntityClassFoundByName<PwDbText>(u"PwDbText");
}

}  // namespace
