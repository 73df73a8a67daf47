// The entity base: its layer and colour.
#include <lodeqdb/toolkit/db/PwDbEntity.h>

#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_MEMBERS(PwDbEntity, PwDbObject, u"PwDbEntity");

PwDbEntity::PwDbEntity() = default;

PwDbEntity::~PwDbEntity() = default;

Plotwright::ErrorStatus PwDbEntity::setLayer(PwDbObjectId layer) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() != nullptr && !layer.isNull() && layer.database() != database()) {
        return Plotwright::StatusWrongDatabase;
    }
    assertWriteEnabled();
    m_layer = layer;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbEntity::setColorIndex(int16_t index) {
    if (index < 0 || index > 256) return Plotwright::StatusInvalidInput;
    return setField(m_colorIndex, index);
}

Plotwright::ErrorStatus PwDbEntity::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    PwDbObjectId layer;
    int32_t color = 256;
    if (auto status = filer->readObjectId(layer)) return status;
    if (auto status = filer->readInt32(color)) return status;
    if (color < 0 || color > 256) return Plotwright::StatusFilerError;
    m_layer = layer;
    m_colorIndex = static_cast<int16_t>(color);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbEntity::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeObjectId(m_layer)) return status;
    return filer->writeInt32(m_colorIndex);
}

Plotwright::ErrorStatus pwdbOpenObject(PwDbEntity*& entity, PwDbObjectId id, PwDb::OpenMode mode,
                                       bool openErased) {
    return pwdbOpenObject<PwDbEntity>(entity, id, &PwDbEntity::desc, mode, openErased);
}
