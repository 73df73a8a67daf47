// PwDbPolyline: a chain of straight segments through 2D vertices, lying at one elevation.
//
//   auto* outline = new PwDbPolyline;
//   outline->addVertexAt(0, PwGePoint2d(0, 0));
//   outline->addVertexAt(1, PwGePoint2d(420, 0));
//   outline->addVertexAt(2, PwGePoint2d(420, 297));
//   outline->setClosed(true);                       // a segment joins the last to the first
//
//   PwGePoint2d corner;
//   if (outline->getPointAt(2, corner) == Plotwright::StatusOk) { ... }
#pragma once

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbPolyline : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbPolyline);

  public:
    /// The most vertices a polyline holds; stored data that claims more is refused.
    static constexpr unsigned int kMaxVertices = 1u << 24;

    /// No vertices, open, at elevation 0.
    PwDbPolyline();
    ~PwDbPolyline() override;

    unsigned int numVerts() const { return static_cast<unsigned int>(m_vertices.length()); }
    /// Inserts `point` before the vertex at `index`; `index` == numVerts() appends.
    /// StatusInvalidInput for an index above numVerts(), a non-finite coordinate or a
    /// polyline that holds kMaxVertices already; StatusOutOfMemory when there is no room, the
    /// vertices then staying as they were.
    Plotwright::ErrorStatus addVertexAt(unsigned int index, const PwGePoint2d& point);
    /// The vertex at `index`; StatusInvalidInput, `point` untouched, for an index not below
    /// numVerts().
    Plotwright::ErrorStatus getPointAt(unsigned int index, PwGePoint2d& point) const;
    /// Removes the vertex at `index`; StatusInvalidInput for an index not below numVerts().
    Plotwright::ErrorStatus removeVertexAt(unsigned int index);

    /// True when a segment joins the last vertex back to the first.
    bool isClosed() const { return m_closed; }
    Plotwright::ErrorStatus setClosed(bool closed);
    /// The Z coordinate shared by every vertex.
    double elevation() const { return m_elevation; }
    /// StatusInvalidInput for a non-finite elevation.
    Plotwright::ErrorStatus setElevation(double elevation);

    /// Stored as: the vertex count, the vertices (x then y), the closed flag, the elevation.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwArray<PwGePoint2d> m_vertices;
    bool m_closed = false;
    double m_elevation = 0.0;
};
