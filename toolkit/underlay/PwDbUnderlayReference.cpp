// The placed underlay: its definition, placement and persistent data.
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbUnderlayReference, PwDbEntity, u"PwDbUnderlayReference");

PwDbUnderlayReference::PwDbUnderlayReference() = default;

PwDbUnderlayReference::~PwDbUnderlayReference() = default;

Plotwright::ErrorStatus PwDbUnderlayReference::setDefinitionId(PwDbObjectId definition) {
    if (!definition.isNull() && database() != nullptr && definition.database() != database())
        return Plotwright::StatusWrongDatabase;
    return setField(m_definition, definition);
}

Plotwright::ErrorStatus PwDbUnderlayReference::setPosition(const PwGePoint3d& position) {
    if (!PwDbPlacement::acceptsPosition(position)) return Plotwright::StatusInvalidInput;
    return setField(m_placement.position, position);
}

Plotwright::ErrorStatus PwDbUnderlayReference::setScaleFactors(const PwGeScale3d& scale) {
    if (!PwDbPlacement::acceptsScale(scale)) return Plotwright::StatusInvalidInput;
    return setField(m_placement.scale, scale);
}

Plotwright::ErrorStatus PwDbUnderlayReference::setRotation(double radians) {
    if (!PwDbPlacement::acceptsRotation(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_placement.rotation, radians);
}

Plotwright::ErrorStatus PwDbUnderlayReference::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwDbObjectId shown;
    if (auto status = filer->readObjectId(shown)) return status;
    if (auto status = m_placement.readFrom(filer)) return status;
    m_definition = shown;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbUnderlayReference::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writeObjectId(m_definition)) return status;
    return m_placement.writeTo(filer);
}
