// PwDbBlockReference: a placement (insertion) of a block definition.
//
//   auto* insert = new PwDbBlockReference;
//   insert->setReferencedBlock(revisionBlockId);
//   insert->setInsertionPoint(PwGePoint3d(100, 20, 0));
//   insert->setScale3d(PwGeScale3d(2, 2, 1));
//   insert->setRotationAngle(0.5);                     // radians
#pragma once

#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbPlacement.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbBlockReference : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbBlockReference);

  public:
    PwDbBlockReference();
    ~PwDbBlockReference() override;

    /// The block table record placed; null until set.
    PwDbObjectId blockTableRecord() const { return m_block; }
    /// Places the block table record `block`. The entity must be writable.
    Plotwright::ErrorStatus setReferencedBlock(PwDbObjectId block);
    Plotwright::ErrorStatus setBlockTableRecord(PwDbObjectId block) {
        return setReferencedBlock(block);
    }

    PwGePoint3d position() const { return m_placement.position; }
    Plotwright::ErrorStatus setInsertionPoint(const PwGePoint3d& point);
    PwGeScale3d scaleFactors() const { return m_placement.scale; }
    /// Scale factors; none may be 0.
    Plotwright::ErrorStatus setScale3d(const PwGeScale3d& scale);
    /// The rotation about the Z axis, in radians.
    double rotation() const { return m_placement.rotation; }
    Plotwright::ErrorStatus setRotationAngle(double radians);

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    /// Every change of the block goes through here, so that the drawing's index of each
    /// block's references stays true.
    void setBlock(PwDbObjectId block);

    PwDbObjectId m_block;
    PwDbPlacement m_placement;
};
