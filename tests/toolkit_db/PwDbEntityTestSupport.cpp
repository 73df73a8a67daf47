// Helpers the entity tests share.
#include "PwDbEntityTestSupport.h"

#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include "toolkit/pal/PwHeapFaults.h"

namespace pwdbtest {

PwDbObjectId appendToModelSpace(PwDbDatabase& database, PwDbEntity* entity) {
    PwDbObjectId id;
    PwDbBlockTableRecord* space = nullptr;
    if (pwdbOpenObject(space, database.modelSpaceId(), PwDb::OpenForWrite) != StatusOk) {
        delete entity;
        return id;
    }
    if (space->appendPwDbEntity(id, entity) == StatusOk) {
        entity->close();
    } else {
        delete entity;
        id = PwDbObjectId();
    }
    space->close();
    return id;
}

void copyLeadingItems(const PwDbMemoryFiler& source, size_t count, PwDbMemoryFiler& target) {
    for (size_t i = 0; i < count && i < source.items().size(); ++i) {
        target.append(source.items()[i]);
    }
}

void copyReplacing(const PwDbMemoryFiler& source, size_t index, PwDbMemoryFiler::Item item,
                   PwDbMemoryFiler& target) {
    for (size_t i = 0; i < source.items().size(); ++i) {
        target.append(i == index ? item : source.items()[i]);
    }
}

size_t entityItemCount(const PwDbEntity& entity) {
    PwDbMemoryFiler filer;
    EXPECT_EQ(entity.PwDbEntity::plwOutFields(&filer), StatusOk);
    return filer.items().size();
}

void expectSameEntity(const PwDbEntity& actual, const PwDbEntity& expected) {
    EXPECT_EQ(actual.ownerId(), expected.ownerId());
    EXPECT_EQ(actual.layerId(), expected.layerId());
    EXPECT_EQ(actual.colorIndex(), expected.colorIndex());
}

void HeapFaultTest::TearDown() {
    pwHeapFailReset();
}

}  // namespace pwdbtest
