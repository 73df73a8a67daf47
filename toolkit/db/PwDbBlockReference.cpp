// Block placements: which block, where, how scaled and turned.
#include "toolkit/db/PwDbBlockReference.h"

#include <cmath>

#include "toolkit/db/PwDbPlwFiler.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbBlockReference, PwDbEntity, u"PwDbBlockReference");

PwDbBlockReference::PwDbBlockReference() = default;

PwDbBlockReference::~PwDbBlockReference() = default;

Plotwright::ErrorStatus PwDbBlockReference::setReferencedBlock(PwDbObjectId block) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() != nullptr && !block.isNull() && block.database() != database()) {
        return Plotwright::StatusWrongDatabase;
    }
    assertWriteEnabled();
    m_block = block;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockReference::setInsertionPoint(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_position, point);
}

Plotwright::ErrorStatus PwDbBlockReference::setScale3d(const PwGeScale3d& scale) {
    if (!scale.isUsable()) return Plotwright::StatusInvalidInput;
    return setField(m_scale, scale);
}

Plotwright::ErrorStatus PwDbBlockReference::setRotationAngle(double radians) {
    if (!std::isfinite(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_rotation, radians);
}

Plotwright::ErrorStatus PwDbBlockReference::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwDbObjectId block;
    PwGePoint3d position;
    PwGeScale3d scale;
    double rotation = 0.0;
    if (auto status = filer->readObjectId(block)) return status;
    if (auto status = filer->readPoint3d(position)) return status;
    if (auto status = filer->readScale3d(scale)) return status;
    if (auto status = filer->readDouble(rotation)) return status;
    if (!position.isFinite() || !scale.isUsable() || !std::isfinite(rotation)) {
        return Plotwright::StatusFilerError;
    }
    m_block = block;
    m_position = position;
    m_scale = scale;
    m_rotation = rotation;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockReference::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writeObjectId(m_block)) return status;
    if (auto status = filer->writePoint3d(m_position)) return status;
    if (auto status = filer->writeScale3d(m_scale)) return status;
    return filer->writeDouble(m_rotation);
}
