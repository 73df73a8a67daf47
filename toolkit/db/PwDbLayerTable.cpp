// Layers: stored flags, colour and description, and whether the drawing uses them.
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>

#include <utility>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbLayerTableRecord, PwDbSymbolTableRecord, u"PwDbLayerTableRecord");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbLayerTable, PwDbSymbolTable, u"PwDbLayerTable");

namespace {

bool isLayerColor(int32_t index) {
    return index >= 1 && index <= 255;
}

}  // namespace

// --- PwDbLayerTableRecord --------------------------------------------------------------------

PwDbLayerTableRecord::PwDbLayerTableRecord() = default;

PwDbLayerTableRecord::~PwDbLayerTableRecord() = default;

Plotwright::ErrorStatus PwDbLayerTableRecord::setIsFrozen(bool frozen) {
    return setField(m_frozen, frozen);
}

Plotwright::ErrorStatus PwDbLayerTableRecord::setIsHidden(bool hidden) {
    return setField(m_hidden, hidden);
}

Plotwright::ErrorStatus PwDbLayerTableRecord::setIsLocked(bool locked) {
    return setField(m_locked, locked);
}

Plotwright::ErrorStatus PwDbLayerTableRecord::setIsOff(bool off) {
    return setField(m_off, off);
}

Plotwright::ErrorStatus PwDbLayerTableRecord::setIsReconciled(bool reconciled) {
    return setField(m_reconciled, reconciled);
}

bool PwDbLayerTableRecord::isInUse() const {
    const PwDbDatabase* drawing = database();
    if (drawing == nullptr) return false;
    const PwDbObjectId self = objectId();
    return self == drawing->layerZeroId() || self == drawing->clayer() ||
           drawing->isLayerUsedByEntities(self);
}

Plotwright::ErrorStatus PwDbLayerTableRecord::description(PwString& description) const {
    return description.assign(m_description.data(), m_description.size());
}

Plotwright::ErrorStatus PwDbLayerTableRecord::setDescription(const char16_t* description) {
    return setField(m_description, description != nullptr ? description : u"");
}

Plotwright::ErrorStatus PwDbLayerTableRecord::setColorIndex(int16_t index) {
    if (!isLayerColor(index)) return Plotwright::StatusInvalidInput;
    return setField(m_colorIndex, index);
}

Plotwright::ErrorStatus PwDbLayerTableRecord::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbSymbolTableRecord::plwInFields(filer)) return status;
    bool flags[5] = {};
    for (bool& flag : flags) {
        if (auto status = filer->readBool(flag)) return status;
    }
    wstring description;
    int32_t color = kDefaultColorIndex;
    if (auto status = filer->readString(description)) return status;
    if (auto status = filer->readInt32(color)) return status;
    if (!isLayerColor(color)) return Plotwright::StatusFilerError;
    m_frozen = flags[0];
    m_hidden = flags[1];
    m_locked = flags[2];
    m_off = flags[3];
    m_reconciled = flags[4];
    m_description = std::move(description);
    m_colorIndex = static_cast<int16_t>(color);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbLayerTableRecord::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbSymbolTableRecord::plwOutFields(filer)) return status;
    for (const bool flag : {m_frozen, m_hidden, m_locked, m_off, m_reconciled}) {
        if (auto status = filer->writeBool(flag)) return status;
    }
    if (auto status = filer->writeString(m_description)) return status;
    return filer->writeInt32(m_colorIndex);
}

// --- PwDbLayerTableIterator and PwDbLayerTable -----------------------------------------------

PwDbLayerTableIterator::PwDbLayerTableIterator(std::vector<PwDbObjectId> ids)
    : PwDbSymbolTableIterator(std::move(ids)) {}

PwDbLayerTableIterator::~PwDbLayerTableIterator() = default;

Plotwright::ErrorStatus PwDbLayerTableIterator::getRecord(PwDbLayerTableRecord*& record,
                                                          PwDb::OpenMode mode,
                                                          bool openErased) const {
    return getTypedRecord(record, mode, openErased);
}

PwDbLayerTable::PwDbLayerTable() = default;

PwDbLayerTable::~PwDbLayerTable() = default;

PwRxClass* PwDbLayerTable::recordClass() const {
    return PwDbLayerTableRecord::desc();
}

Plotwright::ErrorStatus PwDbLayerTable::getAt(const char16_t* name, PwDbLayerTableRecord*& record,
                                              PwDb::OpenMode mode, bool openErased) const {
    return getTypedAt(name, record, mode, openErased);
}

Plotwright::ErrorStatus PwDbLayerTable::newIterator(PwDbLayerTableIterator*& iterator,
                                                    bool atBeginning, bool skipErased) const {
    return newTypedIterator(iterator, atBeginning, skipErased);
}

PwDbSymbolTableIterator* PwDbLayerTable::makeIterator(std::vector<PwDbObjectId> ids) const {
    return new PwDbLayerTableIterator(std::move(ids));
}
