// Polylines: their vertex list, its checks and its persistent form.
#include <lodeqdb/toolkit/db/PwDbPolyline.h>

#include <cmath>
#include <cstdint>
#include <utility>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbPolyline, PwDbEntity, u"PwDbPolyline");

namespace {

// Room is reserved ahead of a read only up to this many vertices: a count is only a claim,
// and the block grows with the vertices actually found.
constexpr size_t kReadReserve = 1024;

Plotwright::ErrorStatus readVertices(PwDbPlwFiler* filer, int32_t count,
                                     PwArray<PwGePoint2d>& vertices) {
    const size_t claimed = static_cast<size_t>(count);
    if (claimed > 0) {
        const size_t reserve = claimed < kReadReserve ? claimed : kReadReserve;
        if (auto status = vertices.setPhysicalLength(reserve)) return status;
    }
    for (size_t i = 0; i < claimed; ++i) {
        PwGePoint2d point;
        if (auto status = filer->readDouble(point.x)) return status;
        if (auto status = filer->readDouble(point.y)) return status;
        if (!point.isFinite()) return Plotwright::StatusFilerError;
        if (vertices.append(point) == PwArray<PwGePoint2d>::kNoIndex) {
            return Plotwright::StatusOutOfMemory;
        }
    }
    return Plotwright::StatusOk;
}

}  // namespace

PwDbPolyline::PwDbPolyline() = default;

PwDbPolyline::~PwDbPolyline() = default;

Plotwright::ErrorStatus PwDbPolyline::addVertexAt(unsigned int index, const PwGePoint2d& point) {
    if (index > numVerts() || !point.isFinite() || numVerts() >= kMaxVertices) {
        return Plotwright::StatusInvalidInput;
    }
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (m_vertices.length() == m_vertices.physicalLength()) {
        // A PwArray that fails to grow drops its contents, so the vertices move to a larger
        // block made beforehand; when that block can't be had, nothing has changed.
        const size_t length = m_vertices.length();
        PwArray<PwGePoint2d> grown(length < 8 ? 8 : length * 2);
        if (grown.physicalLength() == 0) return Plotwright::StatusOutOfMemory;
        for (size_t i = 0; i < length; ++i) grown.append(m_vertices[i]);
        m_vertices = std::move(grown);
    }
    assertWriteEnabled();
    // There is room for one more vertex, so the insertion can't fail.
    return m_vertices.insertAt(index, point);
}

Plotwright::ErrorStatus PwDbPolyline::getPointAt(unsigned int index, PwGePoint2d& point) const {
    if (index >= numVerts()) return Plotwright::StatusInvalidInput;
    point = m_vertices[index];
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPolyline::removeVertexAt(unsigned int index) {
    if (index >= numVerts()) return Plotwright::StatusInvalidInput;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    assertWriteEnabled();
    return m_vertices.removeAt(index);
}

Plotwright::ErrorStatus PwDbPolyline::setClosed(bool closed) {
    return setField(m_closed, closed);
}

Plotwright::ErrorStatus PwDbPolyline::setElevation(double elevation) {
    if (!std::isfinite(elevation)) return Plotwright::StatusInvalidInput;
    return setField(m_elevation, elevation);
}

Plotwright::ErrorStatus PwDbPolyline::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    int32_t count = 0;
    if (auto status = filer->readInt32(count)) return status;
    if (count < 0 || static_cast<uint32_t>(count) > kMaxVertices) {
        return Plotwright::StatusFilerError;
    }
    PwArray<PwGePoint2d> vertices;
    bool closed = false;
    double elevation = 0.0;
    if (auto status = readVertices(filer, count, vertices)) return status;
    if (auto status = filer->readBool(closed)) return status;
    if (auto status = filer->readDouble(elevation)) return status;
    if (!std::isfinite(elevation)) return Plotwright::StatusFilerError;
    m_vertices = std::move(vertices);
    m_closed = closed;
    m_elevation = elevation;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPolyline::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writeInt32(static_cast<int32_t>(m_vertices.length()))) {
        return status;
    }
    for (size_t i = 0; i < m_vertices.length(); ++i) {
        if (auto status = filer->writeDouble(m_vertices[i].x)) return status;
        if (auto status = filer->writeDouble(m_vertices[i].y)) return status;
    }
    if (auto status = filer->writeBool(m_closed)) return status;
    return filer->writeDouble(m_elevation);
}
