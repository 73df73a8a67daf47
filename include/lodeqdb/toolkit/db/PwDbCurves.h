// PwDbLine, PwDbCircle and PwDbArc: the straight and round curves of a drawing.
//
//   auto* border = new PwDbLine;
//   border->setStartPoint(PwGePoint3d(0, 0, 0));
//   border->setEndPoint(PwGePoint3d(420, 0, 0));
//
//   auto* hole = new PwDbCircle;
//   if (hole->setRadius(2.5) != Plotwright::StatusOk) { ... }   // radius > 0
//
//   auto* bend = new PwDbArc;
//   bend->setCenter(PwGePoint3d(10, 10, 0));
//   bend->setStartAngle(0.0);                                      // radians
//   bend->setEndAngle(1.5707963267948966);
//
// Every value handed to a setter must be finite; a refused value leaves the entity as it was.
#pragma once

#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

/// A straight segment between two points.
class PwDbLine : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbLine);

  public:
    /// A line from the origin to the origin.
    PwDbLine();
    ~PwDbLine() override;

    PwGePoint3d startPoint() const { return m_start; }
    /// StatusInvalidInput for a point with a non-finite coordinate; StatusNotOpenForWrite
    /// when the entity isn't writable.
    Plotwright::ErrorStatus setStartPoint(const PwGePoint3d& point);
    PwGePoint3d endPoint() const { return m_end; }
    /// Refuses the same values as setStartPoint.
    Plotwright::ErrorStatus setEndPoint(const PwGePoint3d& point);

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwGePoint3d m_start;
    PwGePoint3d m_end;
};

/// A full circle.
class PwDbCircle : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbCircle);

  public:
    /// A circle of radius 1 about the origin.
    PwDbCircle();
    ~PwDbCircle() override;

    PwGePoint3d center() const { return m_center; }
    /// StatusInvalidInput for a point with a non-finite coordinate.
    Plotwright::ErrorStatus setCenter(const PwGePoint3d& point);
    /// Always above 0.
    double radius() const { return m_radius; }
    /// StatusInvalidInput unless `radius` is finite and above 0.
    Plotwright::ErrorStatus setRadius(double radius);

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwGePoint3d m_center;
    double m_radius = 1.0;
};

/// A part of a circle, running counter-clockwise from the start angle to the end angle.
class PwDbArc : public PwDbEntity {
    PWRX_DECLARE_MEMBERS(PwDbArc);

  public:
    /// An arc of radius 1 about the origin whose start and end angles are both 0.
    PwDbArc();
    ~PwDbArc() override;

    PwGePoint3d center() const { return m_center; }
    /// StatusInvalidInput for a point with a non-finite coordinate.
    Plotwright::ErrorStatus setCenter(const PwGePoint3d& point);
    /// Always above 0.
    double radius() const { return m_radius; }
    /// StatusInvalidInput unless `radius` is finite and above 0.
    Plotwright::ErrorStatus setRadius(double radius);
    /// In radians, from the X axis, exactly as set: angles are not brought into [0, 2pi).
    double startAngle() const { return m_startAngle; }
    /// StatusInvalidInput for a non-finite angle.
    Plotwright::ErrorStatus setStartAngle(double radians);
    /// In radians, exactly as set.
    double endAngle() const { return m_endAngle; }
    /// StatusInvalidInput for a non-finite angle.
    Plotwright::ErrorStatus setEndAngle(double radians);

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwGePoint3d m_center;
    double m_radius = 1.0;
    double m_startAngle = 0.0;
    double m_endAngle = 0.0;
};
