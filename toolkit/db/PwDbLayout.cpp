// Plot settings and layouts: their data, checks and persistent form.
#include <lodeqdb/toolkit/db/PwDbLayout.h>

#include <cmath>
#include <utility>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbPlotSettings, PwDbObject, u"PwDbPlotSettings");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbLayout, PwDbPlotSettings, u"PwDbLayout");

namespace {

bool isPaperLength(double length) {
    return std::isfinite(length) && length >= 0.0;
}

}  // namespace

// --- PwDbPlotSettings ------------------------------------------------------------------------

PwDbPlotSettings::PwDbPlotSettings() = default;

PwDbPlotSettings::~PwDbPlotSettings() = default;

Plotwright::ErrorStatus PwDbPlotSettings::getPlotSettingsName(const char16_t*& name) const {
    name = m_name.c_str();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlotSettings::setPlotSettingsName(const char16_t* name) {
    if (name == nullptr) return Plotwright::StatusInvalidInput;
    return setField(m_name, name);
}

Plotwright::ErrorStatus PwDbPlotSettings::getPlotPaperSize(double& width, double& height) const {
    width = m_paperWidth;
    height = m_paperHeight;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlotSettings::setPlotPaperSize(double width, double height) {
    if (!isPaperLength(width) || !isPaperLength(height)) return Plotwright::StatusInvalidInput;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    assertWriteEnabled();
    m_paperWidth = width;
    m_paperHeight = height;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlotSettings::setModelType(bool modelType) {
    return setField(m_modelType, modelType);
}

Plotwright::ErrorStatus PwDbPlotSettings::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring name;
    double width = 0.0;
    double height = 0.0;
    bool modelType = false;
    if (auto status = filer->readString(name)) return status;
    if (auto status = filer->readDouble(width)) return status;
    if (auto status = filer->readDouble(height)) return status;
    if (auto status = filer->readBool(modelType)) return status;
    if (!isPaperLength(width) || !isPaperLength(height)) return Plotwright::StatusFilerError;
    m_name = std::move(name);
    m_paperWidth = width;
    m_paperHeight = height;
    m_modelType = modelType;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlotSettings::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeString(m_name)) return status;
    if (auto status = filer->writeDouble(m_paperWidth)) return status;
    if (auto status = filer->writeDouble(m_paperHeight)) return status;
    return filer->writeBool(m_modelType);
}

// --- PwDbLayout ------------------------------------------------------------------------------

PwDbLayout::PwDbLayout() = default;

PwDbLayout::~PwDbLayout() = default;

Plotwright::ErrorStatus PwDbLayout::getLayoutName(const char16_t*& name) const {
    name = m_layoutName.c_str();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbLayout::setLayoutName(const char16_t* name) {
    if (name == nullptr || !PwDbSymbolUtilities::isValidSymbolName(name, false)) {
        return Plotwright::StatusInvalidKey;
    }
    return setField(m_layoutName, name);
}

Plotwright::ErrorStatus PwDbLayout::setBlockTableRecordId(PwDbObjectId block) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() != nullptr && !block.isNull() && block.database() != database()) {
        return Plotwright::StatusWrongDatabase;
    }
    assertWriteEnabled();
    m_block = block;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbLayout::setTabOrder(int order) {
    return setField(m_tabOrder, order);
}

Plotwright::ErrorStatus PwDbLayout::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbPlotSettings::plwInFields(filer)) return status;
    wstring name;
    PwDbObjectId block;
    int32_t order = 0;
    if (auto status = filer->readString(name)) return status;
    if (auto status = filer->readObjectId(block)) return status;
    if (auto status = filer->readInt32(order)) return status;
    m_layoutName = std::move(name);
    m_block = block;
    m_tabOrder = order;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbLayout::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbPlotSettings::plwOutFields(filer)) return status;
    if (auto status = filer->writeString(m_layoutName)) return status;
    if (auto status = filer->writeObjectId(m_block)) return status;
    return filer->writeInt32(m_tabOrder);
}
