#include "toolkit/underlay/PwDbUnderlayReference.h"

#include <cmath>

#include "toolkit/db/PwDbPlwFiler.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbUnderlayReference, PwDbEntity, u"PwDbUnderlayReference");

PwDbUnderlayReference::PwDbUnderlayReference() = default;

PwDbUnderlayReference::~PwDbUnderlayReference() = default;

Plotwright::ErrorStatus PwDbUnderlayReference::setDefinitionId(PwDbObjectId definition) {
    if (!definition.isNull() && database() != nullptr && definition.database() != database())
        return Plotwright::StatusWrongDatabase;
    return setField(m_definition, definition);
}

Plotwright::ErrorStatus PwDbUnderlayReference::setPosition(const PwGePoint3d& position) {
    if (!position.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_position, position);
}

Plotwright::ErrorStatus PwDbUnderlayReference::setScaleFactors(const PwGeScale3d& scale) {
    if (!scale.isUsable()) return Plotwright::StatusInvalidInput;
    return setField(m_scale, scale);
}

Plotwright::ErrorStatus PwDbUnderlayReference::setRotation(double radians) {
    if (!std::isfinite(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_rotation, radians);
}

Plotwright::ErrorStatus PwDbUnderlayReference::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwDbObjectId definition;
    PwGePoint3d position;
    PwGeScale3d scale;
    double rotation = 0.0;
    if (auto status = filer->readObjectId(definition)) return status;
    if (auto status = filer->readPoint3d(position)) return status;
    if (auto status = filer->readScale3d(scale)) return status;
    if (auto status = filer->readDouble(rotation)) return status;
    if (!position.isFinite() || !scale.isUsable() || !std::isfinite(rotation))
        return Plotwright::StatusFilerError;
    m_definition = definition;
    m_position = position;
    m_scale = scale;
    m_rotation = rotation;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbUnderlayReference::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writeObjectId(m_definition)) return status;
    if (auto status = filer->writePoint3d(m_position)) return status;
    if (auto status = filer->writeScale3d(m_scale)) return status;
    return filer->writeDouble(m_rotation);
}
