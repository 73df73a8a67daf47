// Block placements: which block, where, how scaled and turned.
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbBlockReference, PwDbEntity, u"PwDbBlockReference");

PwDbBlockReference::PwDbBlockReference() = default;

PwDbBlockReference::~PwDbBlockReference() = default;

Plotwright::ErrorStatus PwDbBlockReference::setReferencedBlock(PwDbObjectId block) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() != nullptr && !block.isNull() && block.database() != database()) {
        return Plotwright::StatusWrongDatabase;
    }
    assertWriteEnabled();
    setBlock(block);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockReference::setInsertionPoint(const PwGePoint3d& point) {
    if (!PwDbPlacement::acceptsPosition(point)) return Plotwright::StatusInvalidInput;
    return setField(m_placement.position, point);
}

Plotwright::ErrorStatus PwDbBlockReference::setScale3d(const PwGeScale3d& scale) {
    if (!PwDbPlacement::acceptsScale(scale)) return Plotwright::StatusInvalidInput;
    return setField(m_placement.scale, scale);
}

Plotwright::ErrorStatus PwDbBlockReference::setRotationAngle(double radians) {
    if (!PwDbPlacement::acceptsRotation(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_placement.rotation, radians);
}

Plotwright::ErrorStatus PwDbBlockReference::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwDbObjectId shown;
    if (auto status = filer->readObjectId(shown)) return status;
    if (auto status = m_placement.readFrom(filer)) return status;
    setBlock(shown);
    return Plotwright::StatusOk;
}

void PwDbBlockReference::setBlock(PwDbObjectId block) {
    const PwDbObjectId before = m_block;
    m_block = block;
    if (PwDbDatabase* drawing = database()) drawing->noteBlockReference(objectId(), before, block);
}

Plotwright::ErrorStatus PwDbBlockReference::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writeObjectId(m_block)) return status;
    return m_placement.writeTo(filer);
}
