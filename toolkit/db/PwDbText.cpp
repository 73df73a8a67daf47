// Text entities: placement, size, angle and the text itself, and their persistent form.
#include <lodeqdb/toolkit/db/PwDbText.h>

#include <cmath>
#include <utility>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbText, PwDbEntity, u"PwDbText");

namespace {

bool isValidHeight(double height) {
    return std::isfinite(height) && height > 0.0;
}

}  // namespace

PwDbText::PwDbText() = default;

PwDbText::~PwDbText() = default;

Plotwright::ErrorStatus PwDbText::setPosition(const PwGePoint3d& point) {
    if (!point.isFinite()) return Plotwright::StatusInvalidInput;
    return setField(m_position, point);
}

Plotwright::ErrorStatus PwDbText::setHeight(double height) {
    if (!isValidHeight(height)) return Plotwright::StatusInvalidInput;
    return setField(m_height, height);
}

Plotwright::ErrorStatus PwDbText::setRotation(double radians) {
    if (!std::isfinite(radians)) return Plotwright::StatusInvalidInput;
    return setField(m_rotation, radians);
}

Plotwright::ErrorStatus PwDbText::textString(PwString& text) const {
    return text.assign(m_text.kwszPtr(), m_text.length());
}

Plotwright::ErrorStatus PwDbText::setTextString(const char16_t* text) {
    if (text == nullptr) return Plotwright::StatusInvalidInput;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    // Copied aside first so that a failed copy neither changes the text nor marks the entity
    // as modified.
    PwString copy;
    if (auto status = copy.assign(text)) return status;
    assertWriteEnabled();
    m_text = std::move(copy);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbText::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    PwGePoint3d position;
    double height = 0.0;
    double rotation = 0.0;
    PwString text;
    if (auto status = filer->readPoint3d(position)) return status;
    if (auto status = filer->readDouble(height)) return status;
    if (auto status = filer->readDouble(rotation)) return status;
    if (auto status = filer->readString(text)) return status;
    if (!position.isFinite() || !isValidHeight(height) || !std::isfinite(rotation)) {
        return Plotwright::StatusFilerError;
    }
    m_position = position;
    m_height = height;
    m_rotation = rotation;
    m_text = std::move(text);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbText::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    if (auto status = filer->writePoint3d(m_position)) return status;
    if (auto status = filer->writeDouble(m_height)) return status;
    if (auto status = filer->writeDouble(m_rotation)) return status;
    return filer->writeString(m_text.kwszPtr());
}
