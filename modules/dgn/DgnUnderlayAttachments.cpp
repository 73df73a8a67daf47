// One attachment, one underlay definition and one underlay reference. V7 files hold a single
// model, which underlay definitions name "Default".
#include "modules/dgn/DgnUnderlayAttachments.h"

#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>

Plotwright::ErrorStatus dgnAddAttachmentUnderlay(PwDbDatabase& drawing, PwDbObjectId block,
                                                 const DgnUnderlayPlacement& placement,
                                                 wstring& className) {
    PwDbObjectId definition;
    if (Plotwright::ErrorStatus status =
            PwDbAuthoring::addUnderlayDefinition(drawing, PwDbDgnDefinition::desc(), placement.key,
                                                 placement.sourcePath, u"Default", &definition))
        return status;
    PwDbObjectId reference;
    const PwGeScale3d scale(placement.scale, placement.scale, placement.scale);
    if (Plotwright::ErrorStatus status = PwDbAuthoring::addUnderlayReference(
            drawing, block, definition, placement.position, scale, PwDbObjectId(), &reference)) {
        // A definition nothing places would only puzzle whoever reads the drawing.
        PwDbObjectPointer<PwDbObject> unused(definition, PwDb::OpenForWrite);
        if (unused.openStatus() == Plotwright::StatusOk) unused->erase();
        return status;
    }
    PwDbObjectPointer<PwDbEntity> made(reference, PwDb::OpenForRead);
    className = made.openStatus() == Plotwright::StatusOk ? made->runtimeClass()->name() : u"";
    return Plotwright::StatusOk;
}
