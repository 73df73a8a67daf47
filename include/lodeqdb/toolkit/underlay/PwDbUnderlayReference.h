// PwDbUnderlayReference: an underlay shown in a block: its definition, position, scale and
// rotation.
//
// Setting the definition id doesn't touch the definition: whoever places the underlay also
// adds it to the definition as a persistent reactor (PwDbAuthoring::addUnderlayReference does
// both), which is how a definition knows its placements.
#pragma once

#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbPlacement.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbUnderlayReference : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbUnderlayReference);

  public:
    PwDbUnderlayReference();
    ~PwDbUnderlayReference() override;

    /// The definition shown; null for none.
    PwDbObjectId definitionId() const { return m_definition; }
    /// StatusNotOpenForWrite; StatusWrongDatabase for a definition of another drawing.
    Plotwright::ErrorStatus setDefinitionId(PwDbObjectId definition);

    PwGePoint3d position() const { return m_placement.position; }
    /// StatusInvalidInput for a non-finite point.
    Plotwright::ErrorStatus setPosition(const PwGePoint3d& position);
    PwGeScale3d scaleFactors() const { return m_placement.scale; }
    /// StatusInvalidInput unless every factor is finite and not 0.
    Plotwright::ErrorStatus setScaleFactors(const PwGeScale3d& scale);
    /// Radians from the X axis, as set.
    double rotation() const { return m_placement.rotation; }
    /// StatusInvalidInput for a non-finite angle.
    Plotwright::ErrorStatus setRotation(double radians);

    /// The definition id, position, scale and rotation (after the entity's own).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwDbObjectId m_definition;
    PwDbPlacement m_placement;
};
