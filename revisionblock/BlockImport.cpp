// Giving a drawing its revision block: the definition copied from a template drawing, and a
// reference that places it in the drawing's current layout. Neither touches the table's cells.
#include <memory>

#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbIdMapping.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

namespace RevisionBlock {
namespace {

void ThrowOnStatus(Plotwright::ErrorStatus status) {
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);
}

// The id of the revision block of `source`, found as the manager finds its own, except that
// here every failure is one: the caller named this drawing as the one that has the block.
PwDbObjectId SourceBlock(PwDbDatabase& source) {
    PwDbObjectPointer<PwDbBlockTable> blocks(&source, PwDb::OpenForRead);
    ThrowOnStatus(blocks.openStatus());
    PwDbObjectId id;
    ThrowOnStatus(blocks->getIdAt(RevisionBlockName.c_str(), id, false));
    PwDbObjectPointer<PwDbBlockTableRecord> record(id, PwDb::OpenForRead, false);
    blocks.release();
    ThrowOnStatus(record.openStatus());
    return record->objectId();
}

// The block that takes new placements in `drawing`: the block of its current layout, as the
// host's layout service tells it. A service that answers with no block, or with one of
// another drawing, is refused before anything is added.
PwDbObjectId ActiveLayoutBlock(PwDbDatabase& drawing) {
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    if (services == nullptr) throw lode::PlotwrightException(Plotwright::StatusNoHostServices);
    const PwDbObjectId block = services->hostLayoutService()->activeLayoutBlockId(&drawing);
    if (block.isNull()) throw lode::PlotwrightException(Plotwright::StatusNullObjectId);
    if (block.database() != &drawing) {
        throw lode::PlotwrightException(Plotwright::StatusWrongDatabase);
    }
    return block;
}

}  // namespace

// Records of the same name that the block brings along (text styles, layers) and that this
// drawing has already are kept as they are, and the copy uses them: the drawing's own look of
// a style wins over the template's.
bool BlockMgr::ImportBlockDefinition(PwDbDatabase& source) {
    if (impl != nullptr) return false;
    PwArray<PwDbObjectId> ids;
    if (ids.append(SourceBlock(source)) == PwArray<PwDbObjectId>::kNoIndex) {
        throw lode::PlotwrightException(Plotwright::StatusOutOfMemory);
    }
    PwDbObjectId owner;
    {
        PwDbObjectPointer<PwDbBlockTable> blocks(&database, PwDb::OpenForRead);
        ThrowOnStatus(blocks.openStatus());
        owner = blocks->objectId();
    }
    PwDbIdMapping mapping;
    ThrowOnStatus(
        database.wblockCloneObjects(ids, owner, mapping, PwDb::DuplicateRecordKeepTarget, false));
    Reset();
    return true;
}

// Every property the reference gets is checked as it is set, so that a point or scale the
// toolkit refuses fails the call before the drawing changes. The drawing's measurement plays
// no part: the scale is the caller's.
void BlockMgr::InsertBlockInstance(const double& x, const double& y, const double& scale) {
    const PwDbObjectId block = RequireDefinition().BlockRecordId();
    auto reference = std::make_unique<PwDbBlockReference>();
    ThrowOnStatus(reference->setReferencedBlock(block));
    ThrowOnStatus(reference->setScale3d(PwGeScale3d(scale, scale, scale)));
    ThrowOnStatus(reference->setRotationAngle(0.0));
    ThrowOnStatus(reference->setInsertionPoint(PwGePoint3d(x, y, 0.0)));
    PwDbObjectPointer<PwDbBlockTableRecord> space(ActiveLayoutBlock(database), PwDb::OpenForWrite,
                                                  false);
    ThrowOnStatus(space.openStatus());
    PwDbObjectId id;
    ThrowOnStatus(space->appendPwDbEntity(id, reference.get()));
    // The drawing owns the reference from here on.
    reference.release()->close();
}

}  // namespace RevisionBlock
