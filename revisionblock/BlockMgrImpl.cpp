// Finding the revision table in its block, and the questions about the block that need
// nothing but the open record and table.
#include "revisionblock/BlockMgrImpl.h"

#include <memory>
#include <utility>

#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/revisionblock/RevisionBlockCodes.h>
#include <lodeqdb/revisionblock/RowNotFoundException.h>
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/table/PwDbTable.h>

namespace RevisionBlock {
namespace {

void ThrowOnStatus(Plotwright::ErrorStatus status) {
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
}

}  // namespace

// A throw from LoadTable closes what the fields hold, the table first, as the destructor does.
BlockMgrImpl::BlockMgrImpl(PwDbObjectPointer<PwDbBlockTableRecord>&& record)
    : blockRecord(std::move(record)) {
    LoadTable();
}

BlockMgrImpl::~BlockMgrImpl() = default;

// Only the first table in the block's order counts; a block whose table lacks a header row is
// unusable rather than missing, so it throws.
void BlockMgrImpl::LoadTable() {
    table.release();
    headerRowHeight = 0.0;
    PwDbBlockTableRecordIterator* raw = nullptr;
    ThrowOnStatus(blockRecord->newIterator(raw, true, true));
    const std::unique_ptr<PwDbBlockTableRecordIterator> iterator(raw);
    for (iterator->start(true, true); !iterator->done(); iterator->step(true, true)) {
        PwDbEntity* entity = nullptr;
        ThrowOnStatus(iterator->getEntity(entity, PwDb::OpenForRead, false));
        if (PwRxClass::isDerivedFrom(entity->runtimeClass(), PwDbTable::desc())) {
            table.acquire(static_cast<PwDbTable*>(entity));
            break;
        }
        entity->close();
    }
    if (!table) throw lode::LodeException(NoTableInBlock);
    headerRowHeight = table->rowHeight(FindFirstRowOfKind(PwDb::RowKindHeader));
}

PwDbObjectId BlockMgrImpl::BlockRecordId() const {
    return blockRecord->objectId();
}

bool BlockMgrImpl::HasInstance() const {
    PwArray<PwDbObjectId> ids;
    const Plotwright::ErrorStatus status = blockRecord->getBlockReferenceIds(ids, true, false);
    return status == Plotwright::StatusOk && !ids.isEmpty();
}

unsigned BlockMgrImpl::FindFirstRowOfKind(unsigned kind) const {
    const unsigned rows = table->rowCount();
    for (unsigned row = 0; row < rows; ++row) {
        if (table->rowKind(row) == kind) return row;
    }
    throw RowNotFoundException();
}

bool BlockMgrImpl::HasDataRowBelow(unsigned row) const {
    const unsigned rows = table->rowCount();
    for (unsigned below = row + 1; below < rows; ++below) {
        if (table->rowKind(below) == PwDb::RowKindData) return true;
    }
    return false;
}

}  // namespace RevisionBlock
