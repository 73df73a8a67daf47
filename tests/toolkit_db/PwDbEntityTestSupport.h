// Helpers the entity tests share: adding entities to a drawing, copying a filer's items with
// changes, comparing the entity base's values, the checks every entity class passes (filer
// round trips, shortened data, class records), and a fixture for heap faults.
//
// The checks that compare two entities take the comparison as `same`; it may name an
// overloaded function, and the overload for the entity's class is taken.
#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstdint>
#include <limits>
#include <memory>
#include <type_traits>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>

class PwDbDatabase;

namespace pwdbtest {

// The statuses the entity tests expect most.
using Plotwright::StatusFilerError;
using Plotwright::StatusInvalidInput;
using Plotwright::StatusNotOpenForWrite;
using Plotwright::StatusOk;

/// A value that is not a number, for the checks that refuse values that are not finite.
inline constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
/// Positive infinity, for the same checks.
inline constexpr double kInf = std::numeric_limits<double>::infinity();

/// Adds `entity` to the model space and closes it; on failure the entity is deleted and the id
/// is null.
PwDbObjectId appendToModelSpace(PwDbDatabase& database, PwDbEntity* entity);

/// Appends the first `count` items of `source` (all of them when it has fewer) to `target`.
void copyLeadingItems(const PwDbMemoryFiler& source, size_t count, PwDbMemoryFiler& target);

/// Appends every item of `source` to `target`, the one at `index` replaced by `item`.
void copyReplacing(const PwDbMemoryFiler& source, size_t index, PwDbMemoryFiler::Item item,
                   PwDbMemoryFiler& target);

/// The number of items the entity base writes for `entity`: the entity's own data starts after
/// them.
size_t entityItemCount(const PwDbEntity& entity);

/// Expects the entity base's values of `actual` (owner, layer, colour) to be those of
/// `expected`.
void expectSameEntity(const PwDbEntity& actual, const PwDbEntity& expected);

/// Writes `source` (open in `database`), reads it into a new object made by its class and into
/// a clone, and has `same` compare each with the source.
template <class T, class Same = void (*)(const T&, const T&)>
void expectRoundTrip(PwDbDatabase& database, const T& source, Same same) {
    PwDbMemoryFiler filer(&database);
    ASSERT_EQ(source.plwOutFields(&filer), StatusOk);
    std::unique_ptr<T> made(static_cast<T*>(T::desc()->create()));
    ASSERT_NE(made, nullptr);
    ASSERT_EQ(made->plwInFields(&filer), StatusOk);
    EXPECT_EQ(filer.remaining(), 0u);
    same(*made, source);

    std::unique_ptr<PwDbObject> copy(source.clone());
    ASSERT_NE(copy, nullptr);
    ASSERT_EQ(copy->runtimeClass(), T::desc());
    same(*static_cast<T*>(copy.get()), source);
}

/// Gives `entity` the colour `colour`, adds it to the model space of `database`, opens it for
/// read, expects it to round trip through a filer (see expectRoundTrip) and closes it.
template <class T, class Same = void (*)(const T&, const T&)>
void expectRoundTripInDrawing(PwDbDatabase& database, std::unique_ptr<T> entity, int16_t colour,
                              Same same) {
    ASSERT_EQ(entity->setColorIndex(colour), StatusOk);
    const PwDbObjectId id = appendToModelSpace(database, entity.release());
    T* opened = nullptr;
    ASSERT_EQ(pwdbOpenObject(opened, id, PwDb::OpenForRead), StatusOk);
    expectRoundTrip(database, *opened, same);
    EXPECT_EQ(opened->close(), StatusOk);
}

/// Every shortened form of the data `source` writes is refused, and the object read into (made
/// by `makeTarget`) keeps its values: `same` compares it with another made by `makeTarget`.
template <class T, class MakeTarget, class Same = void (*)(const T&, const T&)>
void expectEveryShortenedFormRefused(const T& source, MakeTarget makeTarget, Same same) {
    PwDbMemoryFiler full;
    ASSERT_EQ(source.plwOutFields(&full), StatusOk);
    ASSERT_GT(full.items().size(), 0u);
    for (size_t keep = 0; keep < full.items().size(); ++keep) {
        SCOPED_TRACE(keep);
        PwDbMemoryFiler shortened;
        copyLeadingItems(full, keep, shortened);
        const auto target = makeTarget();
        EXPECT_EQ(target->plwInFields(&shortened), StatusFilerError);
        same(*target, *makeTarget());
    }
}

/// The data in `full` with the item at `index` replaced by `item` is refused, and the object read
/// into (made by `makeTarget`) keeps its values: `same` compares it with another made by
/// `makeTarget`.
template <class MakeTarget, class T = std::remove_cvref_t<decltype(*std::declval<MakeTarget&>()())>,
          class Same = void (*)(const T&, const T&)>
void expectChangedFormRefused(const PwDbMemoryFiler& full, size_t index,
                              const PwDbMemoryFiler::Item& item, MakeTarget makeTarget, Same same) {
    PwDbMemoryFiler bad;
    copyReplacing(full, index, item, bad);
    const auto target = makeTarget();
    EXPECT_EQ(target->plwInFields(&bad), StatusFilerError);
    same(*target, *makeTarget());
}

/// Expects T's class to be named `name`, to derive straight from the entity class, to be found
/// by `name`, and to make objects that are Ts; a T is an entity and an object.
template <class T>
void expectEntityClassFoundByName(const char16_t* name) {
    T entity;
    EXPECT_EQ(entity.runtimeClass(), T::desc());
    EXPECT_EQ(wstring(entity.runtimeClass()->name()), name);
    EXPECT_TRUE(entity.isKindOf(PwDbEntity::desc()));
    EXPECT_TRUE(entity.isKindOf(PwDbObject::desc()));
    EXPECT_EQ(T::desc()->myParent(), PwDbEntity::desc());
    EXPECT_EQ(pwrxFindClass(name), T::desc());
    std::unique_ptr<PwRxObject> made(pwrxFindClass(name)->create());
    ASSERT_NE(made, nullptr);
    EXPECT_NE(T::cast(made.get()), nullptr);
}

/// A fixture for tests that arm heap faults: whatever a test leaves armed is disarmed after it.
class HeapFaultTest : public testing::Test {
  protected:
    /// Disarms any heap fault the test left armed.
    void TearDown() override;
};

}  // namespace pwdbtest
