// Lines, circles and arcs: their geometry, its checks and its persistent form.
#include <lodeqdb/toolkit/db/PwDbCurves.h>

#include <cmath>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbLine, PwDbEntity, u"PwDbLine");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbCircle, PwDbEntity, u"PwDbCircle");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbArc, PwDbEntity, u"PwDbArc");

namespace {

bool isValidRadius(double radius) {
    return std::isfinite(radius) && radius > 0.0;
}

// Stored data is held to the same rules as the setters, so that no read can make an entity
// that a setter would have refused.
Plotwright::ErrorStatus readFinitePoint(PwDbPlwFiler* filer, PwGePoint3d& point) {
    if (auto status = filer->readPoint3d(point)) return status;
    return point.isFinite() ? Plotwright::StatusOk : Plotwright::StatusFilerError;
}

Plotwright::ErrorStatus readFiniteDouble(PwDbPlwFiler* filer, double& value) {
    if (auto status = filer->readDouble(value)) return status;
    return std::isfinite(value) ? Plotwright::StatusOk : Plotwright::StatusFilerError;
}

Plotwright::ErrorStatus readRadius(PwDbPlwFiler* filer, double& radius) {
    if (auto status = filer->readDouble(radius)) return status;
    return isValidRadius(radius) ? Plotwright::StatusOk : Plotwright::StatusFilerError;
}

}  // namespace

// --- PwDbLine ------------------------------------------------------------------------------

PwDbLine::PwDbLine() = default;

PwDbLine::~PwDbLine() = default;

Plotwright::ErrorStatus PwDbLine::setStartPoint(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_start, point);
}

Plotwright::ErrorStatus PwDbLine::setEndPoint(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_end, point);
}

Plotwright::ErrorStatus PwDbLine::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwGePoint3d start;
    PwGePoint3d end;
    if (auto status = readFinitePoint(filer, start)) return status;
    if (auto status = readFinitePoint(filer, end)) return status;
    m_start = start;
    m_end = end;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbLine::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writePoint3d(m_start)) return status;
    return filer->writePoint3d(m_end);
}

// --- PwDbCircle ----------------------------------------------------------------------------

PwDbCircle::PwDbCircle() = default;

PwDbCircle::~PwDbCircle() = default;

Plotwright::ErrorStatus PwDbCircle::setCenter(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_center, point);
}

Plotwright::ErrorStatus PwDbCircle::setRadius(double radius) {
    if (!isValidRadius(radius)) return Plotwright::StatusInvalidInput;
    return setField(m_radius, radius);
}

Plotwright::ErrorStatus PwDbCircle::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwGePoint3d center;
    double radius = 0.0;
    if (auto status = readFinitePoint(filer, center)) return status;
    if (auto status = readRadius(filer, radius)) return status;
    m_center = center;
    m_radius = radius;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbCircle::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writePoint3d(m_center)) return status;
    return filer->writeDouble(m_radius);
}

// --- PwDbArc -------------------------------------------------------------------------------

PwDbArc::PwDbArc() = default;

PwDbArc::~PwDbArc() = default;

Plotwright::ErrorStatus PwDbArc::setCenter(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_center, point);
}

Plotwright::ErrorStatus PwDbArc::setRadius(double radius) {
    if (!isValidRadius(radius)) return Plotwright::StatusInvalidInput;
    return setField(m_radius, radius);
}

Plotwright::ErrorStatus PwDbArc::setStartAngle(double radians) {
    if (!std::isfinite(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_startAngle, radians);
}

Plotwright::ErrorStatus PwDbArc::setEndAngle(double radians) {
    if (!std::isfinite(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_endAngle, radians);
}

Plotwright::ErrorStatus PwDbArc::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwGePoint3d center;
    double radius = 0.0;
    double startAngle = 0.0;
    double endAngle = 0.0;
    if (auto status = readFinitePoint(filer, center)) return status;
    if (auto status = readRadius(filer, radius)) return status;
    if (auto status = readFiniteDouble(filer, startAngle)) return status;
    if (auto status = readFiniteDouble(filer, endAngle)) return status;
    m_center = center;
    m_radius = radius;
    m_startAngle = startAngle;
    m_endAngle = endAngle;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbArc::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writePoint3d(m_center)) return status;
    if (auto status = filer->writeDouble(m_radius)) return status;
    if (auto status = filer->writeDouble(m_startAngle)) return status;
    return filer->writeDouble(m_endAngle);
}
