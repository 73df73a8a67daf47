// PwDbEntity: anything drawn in a block, on a layer.
//
//   PwDbEntity* entity = nullptr;
//   if (pwdbOpenObject(entity, id, PwDb::OpenForRead) == Plotwright::StatusOk) {
//       PwDbObjectId layer = entity->layerId();
//       entity->close();
//   }
#pragma once

#include <cstdint>

#include <lodeqdb/toolkit/db/PwDbObject.h>

class PwDbEntity : public PwDbObject {
    PWRX_DECLARE_MEMBERS(PwDbEntity);

  public:
    PwDbEntity();
    ~PwDbEntity() override;

    /// The block table record that holds the entity (its owner); null while it is in none.
    PwDbObjectId blockId() const { return ownerId(); }

    /// The entity's layer; null until it is set or the entity is added to a block, which puts
    /// it on the drawing's current layer.
    PwDbObjectId layerId() const { return m_layer; }
    /// Puts the entity on `layer`, a layer table record of the entity's drawing. The entity
    /// must be writable.
    Plotwright::ErrorStatus setLayer(PwDbObjectId layer);

    /// The colour index: 0 by block, 256 by layer (the default), 1 to 255 a colour.
    int16_t colorIndex() const { return m_colorIndex; }
    Plotwright::ErrorStatus setColorIndex(int16_t index);

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    PwDbObjectId m_layer;
    int16_t m_colorIndex = 256;
};

/// The entity form: opens `id` as an entity of any entity class.
Plotwright::ErrorStatus pwdbOpenObject(PwDbEntity*& entity, PwDbObjectId id, PwDb::OpenMode mode,
                                       bool openErased = false);
