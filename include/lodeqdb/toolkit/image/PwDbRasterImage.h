// PwDbRasterImage: a placed raster image, showing a PwDbRasterImageDef at a position and a
// size.
//
// Setting the definition id doesn't touch the definition: whoever places the image also adds
// it to the definition as a persistent reactor (PwDbAuthoring::addRasterImage does both), so
// that the definition knows its placements.
#pragma once

#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbRasterImage : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbRasterImage);

  public:
    /// No definition, at the origin, 1 by 1.
    PwDbRasterImage();
    ~PwDbRasterImage() override;

    /// The definition placed; null for none.
    PwDbObjectId imageDefId() const { return m_definition; }
    /// StatusNotOpenForWrite; StatusWrongDatabase for a definition of another drawing.
    Plotwright::ErrorStatus setImageDefId(PwDbObjectId definition);

    /// The lower left corner.
    PwGePoint3d position() const { return m_position; }
    /// StatusInvalidInput for a non-finite point.
    Plotwright::ErrorStatus setPosition(const PwGePoint3d& position);
    /// The size in drawing units, both above 0.
    double width() const { return m_width; }
    double height() const { return m_height; }
    /// StatusInvalidInput unless both are finite and above 0.
    Plotwright::ErrorStatus setSize(double width, double height);

    /// The definition id, the position and the size (after the entity's own).
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwDbObjectId m_definition;
    PwGePoint3d m_position;
    double m_width = 1.0;
    double m_height = 1.0;
};
