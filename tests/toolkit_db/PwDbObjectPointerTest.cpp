// Owning pointers to open objects: fields, statuses, the closing rule.
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

#include <gtest/gtest.h>

#include "PwDbTestObjects.h"
#include <lodeqdb/toolkit/pal/PwHeap.h>

namespace {

using Plotwright::StatusOk;

TEST(PwDbObjectPointer, HoldsTwoFieldsInOrder) {
    static_assert(sizeof(PwDbObjectPointer<PwTestNote>) == 2 * sizeof(void*));
    struct Layout {
        PwTestNote* object;
        Plotwright::ErrorStatus status;
    };
    PwDbObjectPointer<PwTestNote> empty;
    const auto* fields = reinterpret_cast<const Layout*>(&empty);
    EXPECT_EQ(fields->object, nullptr);
    EXPECT_EQ(fields->status, Plotwright::StatusNullDatabase);
}

TEST(PwDbObjectPointer, OpensByIdAndClosesOnRelease) {
    PwDbDatabase database;
    auto* note = new PwTestNote;
    PwDbObjectId id;
    ASSERT_EQ(database.addPwDbObject(id, note), StatusOk);
    note->close();
    {
        PwDbObjectPointer<PwTestNote> pointer(id, PwDb::OpenForRead);
        EXPECT_EQ(pointer.openStatus(), StatusOk);
        EXPECT_EQ(pointer.object(), note);
        EXPECT_EQ(note->numReaders(), 1u);
    }
    EXPECT_EQ(note->numReaders(), 0u);
    PwDbObjectPointer<PwTestNote> pointer(id, PwDb::OpenForWrite);
    pointer.release();
    EXPECT_EQ(pointer.object(), nullptr);
    EXPECT_EQ(pointer.openStatus(), Plotwright::StatusNullDatabase);
    EXPECT_FALSE(note->isWriteEnabled());
}

TEST(PwDbObjectPointer, FailedOpenKeepsItsStatusAndReleasesNothing) {
    PwDbObjectPointer<PwTestNote> pointer(PwDbObjectId(), PwDb::OpenForRead);
    EXPECT_EQ(pointer.openStatus(), Plotwright::StatusNullObjectId);
    EXPECT_EQ(pointer.object(), nullptr);
    pointer.release();
    EXPECT_EQ(pointer.openStatus(), Plotwright::StatusNullDatabase);
}

TEST(PwDbObjectPointer, ObjectWithoutIdIsDeletedNotClosed) {
    const size_t before = pwHeapLiveBlockCount();
    {
        PwDbObjectPointer<PwTestNote> pointer(new PwTestNote);
        EXPECT_EQ(pointer.openStatus(), StatusOk);
    }
    // LeakSanitizer reports the note if it was closed instead of deleted.
    EXPECT_EQ(pwHeapLiveBlockCount(), before);
    PwDbObjectPointer<PwTestNote> none(static_cast<PwTestNote*>(nullptr));
    EXPECT_EQ(none.openStatus(), Plotwright::StatusNullDatabase);
}

TEST(PwDbObjectPointer, MoveTransfersOwnership) {
    PwDbDatabase database;
    PwDbObjectPointer<PwDbObject> first(database.modelSpaceId(), PwDb::OpenForRead);
    ASSERT_EQ(first.openStatus(), StatusOk);
    PwDbObjectPointer<PwDbObject> second(std::move(first));
    EXPECT_EQ(first.object(), nullptr);  // NOLINT(bugprone-use-after-move)
    EXPECT_EQ(second->numReaders(), 1u);
}

}  // namespace
