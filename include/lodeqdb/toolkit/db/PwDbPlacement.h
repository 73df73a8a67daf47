// PwDbPlacement: where an entity that shows something else (a block, an underlay) puts it:
// position, scale factors and rotation, checked and filed the same way for every such entity.
//
//   if (!PwDbPlacement::acceptsPosition(point)) return Plotwright::StatusInvalidInput;
//   return m_placement.readFrom(filer);      // StatusFilerError for values that make no sense
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbPlwFiler;

struct PwDbPlacement {
    PwGePoint3d position;
    PwGeScale3d scale;
    /// Radians about the Z axis.
    double rotation = 0.0;

    /// Finite coordinates.
    static bool acceptsPosition(const PwGePoint3d& position) { return position.isFinite(); }
    /// Finite factors, none of them 0.
    static bool acceptsScale(const PwGeScale3d& scale) { return scale.isUsable(); }
    /// A finite angle.
    static bool acceptsRotation(double radians);

    /// Reads position, scale and rotation; StatusFilerError when one isn't acceptable, and
    /// then the placement is left as it was.
    Plotwright::ErrorStatus readFrom(PwDbPlwFiler* filer);
    Plotwright::ErrorStatus writeTo(PwDbPlwFiler* filer) const;
};
