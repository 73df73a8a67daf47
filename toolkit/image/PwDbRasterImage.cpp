// The placed raster image: its definition, placement and persistent data.
#include <lodeqdb/toolkit/image/PwDbRasterImage.h>

#include <cmath>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbRasterImage, PwDbEntity, u"PwDbRasterImage");

namespace {

bool IsValidSize(double width, double height) {
    return std::isfinite(width) && std::isfinite(height) && width > 0.0 && height > 0.0;
}

}  // namespace

PwDbRasterImage::PwDbRasterImage() = default;

PwDbRasterImage::~PwDbRasterImage() = default;

Plotwright::ErrorStatus PwDbRasterImage::setImageDefId(PwDbObjectId definition) {
    if (!definition.isNull() && database() != nullptr && definition.database() != database())
        return Plotwright::StatusWrongDatabase;
    return setField(m_definition, definition);
}

Plotwright::ErrorStatus PwDbRasterImage::setPosition(const PwGePoint3d& position) {
    if (!position.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_position, position);
}

Plotwright::ErrorStatus PwDbRasterImage::setSize(double width, double height) {
    if (!IsValidSize(width, height)) return Plotwright::StatusInvalidInput;
    if (auto status = setField(m_width, width)) return status;
    return setField(m_height, height);
}

Plotwright::ErrorStatus PwDbRasterImage::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwDbObjectId definition;
    PwGePoint3d position;
    double width = 0.0;
    double height = 0.0;
    if (auto status = filer->readObjectId(definition)) return status;
    if (auto status = filer->readPoint3d(position)) return status;
    if (auto status = filer->readDouble(width)) return status;
    if (auto status = filer->readDouble(height)) return status;
    if (!position.isFinite() || !IsValidSize(width, height)) return Plotwright::StatusFilerError;
    m_definition = definition;
    m_position = position;
    m_width = width;
    m_height = height;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbRasterImage::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writeObjectId(m_definition)) return status;
    if (auto status = filer->writePoint3d(m_position)) return status;
    if (auto status = filer->writeDouble(m_width)) return status;
    return filer->writeDouble(m_height);
}
