// The layer table: the drawing's layers, with their visibility flags, colour and description.
//
// Defines PwDbLayerTableRecord, PwDbLayerTable and PwDbLayerTableIterator.
//
//   PwDbLayerTable* layers = nullptr;
//   if (drawing.getSymbolTable(layers, PwDb::OpenForRead) == Plotwright::StatusOk) {
//       PwDbLayerTableIterator* it = nullptr;
//       layers->newIterator(it);
//       for (; !it->done(); it->step()) {
//           PwDbLayerTableRecord* layer = nullptr;
//           if (it->getRecord(layer, PwDb::OpenForRead) != Plotwright::StatusOk) continue;
//           bool hidden = layer->isOff() || layer->isFrozen();
//           layer->close();
//       }
//       delete it;
//       layers->close();
//   }
#pragma once

#include <cstdint>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbSymbolTable.h>

/// A layer. Its flags are stored; whether it is in use is worked out from the drawing.
class PwDbLayerTableRecord : public PwDbSymbolTableRecord {
    PWRX_DECLARE_MEMBERS(PwDbLayerTableRecord);

  public:
    /// The colour a new layer has.
    static constexpr int16_t kDefaultColorIndex = 7;

    PwDbLayerTableRecord();
    ~PwDbLayerTableRecord() override;

    /// The flag setters give StatusNotOpenForWrite unless the layer is writable.
    bool isFrozen() const { return m_frozen; }
    Plotwright::ErrorStatus setIsFrozen(bool frozen);
    bool isHidden() const { return m_hidden; }
    Plotwright::ErrorStatus setIsHidden(bool hidden);
    bool isLocked() const { return m_locked; }
    Plotwright::ErrorStatus setIsLocked(bool locked);
    bool isOff() const { return m_off; }
    Plotwright::ErrorStatus setIsOff(bool off);
    bool isReconciled() const { return m_reconciled; }
    Plotwright::ErrorStatus setIsReconciled(bool reconciled);

    /// True for layer "0" and the current layer of the layer's drawing, and for a layer that a
    /// non-erased entity is on. False for a layer in no drawing.
    bool isInUse() const;

    /// Copies the description (empty at first) into `description`.
    Plotwright::ErrorStatus description(PwString& description) const;
    /// Sets the description; null sets the empty one.
    Plotwright::ErrorStatus setDescription(const char16_t* description);

    /// The colour index, 1 to 255.
    int16_t colorIndex() const { return m_colorIndex; }
    /// StatusInvalidInput outside 1 to 255 (a layer can't take its colour from a block or a
    /// layer), StatusNotOpenForWrite.
    Plotwright::ErrorStatus setColorIndex(int16_t index);

    /// Name (in the base), the five flags, description, colour.
    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override;
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override;

  private:
    wstring m_description;
    int16_t m_colorIndex = kDefaultColorIndex;
    bool m_frozen = false;
    bool m_hidden = false;
    bool m_locked = false;
    bool m_off = false;
    bool m_reconciled = false;
};

/// The typed iterator of the layer table.
class PwDbLayerTableIterator : public PwDbSymbolTableIterator {
  public:
    ~PwDbLayerTableIterator() override;

    using PwDbSymbolTableIterator::getRecord;
    /// Opens the layer; StatusIteratorDone when done, else the status of the open.
    Plotwright::ErrorStatus getRecord(PwDbLayerTableRecord*& record, PwDb::OpenMode mode,
                                      bool openErased = false) const;

  private:
    friend class PwDbLayerTable;
    explicit PwDbLayerTableIterator(std::vector<PwDbObjectId> ids);
};

/// The drawing's layer table; holds PwDbLayerTableRecord objects.
class PwDbLayerTable : public PwDbSymbolTable {
    PWRX_DECLARE_MEMBERS(PwDbLayerTable);

  public:
    PwDbLayerTable();
    ~PwDbLayerTable() override;

    PwRxClass* recordClass() const override;

    using PwDbSymbolTable::getAt;
    /// Opens the layer `name` (see PwDbSymbolTable::getAt).
    Plotwright::ErrorStatus getAt(const char16_t* name, PwDbLayerTableRecord*& record,
                                  PwDb::OpenMode mode, bool openErased = false) const;

    using PwDbSymbolTable::newIterator;
    /// A new typed iterator over a snapshot of the layers, owned by the caller (delete it).
    Plotwright::ErrorStatus newIterator(PwDbLayerTableIterator*& iterator, bool atBeginning = true,
                                        bool skipErased = true) const;

  protected:
    PwDbSymbolTableIterator* makeIterator(std::vector<PwDbObjectId> ids) const override;
};
