// After a change of the table, every reference that shows the block is marked changed, and so
// is every reference to a block that holds one of them, up to the layouts: whatever shows the
// table knows it changed.
//
// The walk keeps the blocks still to visit on the heap and visits each block once. Marking a
// reference twice changes nothing, so this is the same as visiting every path up through the
// nesting, but it ends quickly for blocks nested many levels deep or placed many times over,
// and for blocks that (in a damaged drawing) place each other in a cycle.
#include <unordered_set>
#include <vector>

#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace RevisionBlock {

struct BlockMgrImpl::BlockWalk {
    std::vector<PwDbObjectId> pending;
    std::unordered_set<PwDbObjectId> seen;
};

namespace {

// Marks each reference to `block` changed and hands its owner block to `next`. A list that
// can't be had marks nothing; a reference that can't be opened for write is passed over.
template <class Next>
void TouchPlacements(const PwDbBlockTableRecord& block, Next&& next) {
    PwArray<PwDbObjectId> ids;
    if (block.getBlockReferenceIds(ids, true, false) != Plotwright::StatusOk) return;
    for (size_t i = 0; i < ids.length(); ++i) {
        PwDbEntity* reference = nullptr;
        if (pwdbOpenObject(reference, ids.at(i), PwDb::OpenForWrite, false) !=
            Plotwright::StatusOk) {
            continue;
        }
        reference->assertWriteEnabled(true, true);
        const PwDbObjectId owner = reference->ownerId();
        reference->close();
        next(owner);
    }
}

}  // namespace

void BlockMgrImpl::TouchReferences() {
    BlockWalk walk;
    walk.seen.insert(blockRecord->objectId());
    const auto queue = [&walk](PwDbObjectId owner) {
        if (!owner.isNull() && walk.seen.insert(owner).second) walk.pending.push_back(owner);
    };
    TouchPlacements(*blockRecord, queue);
    while (!walk.pending.empty()) {
        const PwDbObjectId block = walk.pending.back();
        walk.pending.pop_back();
        TouchOwnerReferences(block, walk);
    }
}

// A block that can't be opened (or isn't a block) ends that way up quietly.
void BlockMgrImpl::TouchOwnerReferences(PwDbObjectId id, BlockWalk& walk) {
    if (id.isNull()) return;
    PwDbObjectPointer<PwDbBlockTableRecord> block(id, PwDb::OpenForRead);
    if (block.openStatus() != Plotwright::StatusOk) return;
    TouchPlacements(*block, [&walk](PwDbObjectId owner) {
        if (!owner.isNull() && walk.seen.insert(owner).second) walk.pending.push_back(owner);
    });
}

}  // namespace RevisionBlock
