// Block definitions: their entities, their layouts, the references that place them.
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>

#include <algorithm>
#include <utility>

#include <lodeqdb/lodeutil/Varint.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>

#include "toolkit/db/PwDbReadLimits.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbBlockTableRecord, PwDbSymbolTableRecord, u"PwDbBlockTableRecord");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbBlockTable, PwDbSymbolTable, u"PwDbBlockTable");

namespace {

// The folded forms of the names of the drawing's own blocks.
constexpr char16_t kModelSpaceFolded[] = u"*model_space";
constexpr char16_t kPaperSpaceFolded[] = u"*paper_space";

}  // namespace

// --- PwDbBlockTableRecordIterator ------------------------------------------------------------

PwDbBlockTableRecordIterator::PwDbBlockTableRecordIterator(std::vector<PwDbObjectId> ids)
    : m_cursor(std::move(ids)) {}

PwDbBlockTableRecordIterator::~PwDbBlockTableRecordIterator() = default;

void PwDbBlockTableRecordIterator::start(bool atBeginning, bool skipErased) {
    m_cursor.start(atBeginning, skipErased);
}

bool PwDbBlockTableRecordIterator::done() const {
    return m_cursor.done();
}

void PwDbBlockTableRecordIterator::step(bool forward, bool skipErased) {
    m_cursor.step(forward, skipErased);
}

Plotwright::ErrorStatus PwDbBlockTableRecordIterator::getEntityId(PwDbObjectId& id) const {
    id = m_cursor.current();
    return id.isNull() ? Plotwright::StatusIteratorDone : Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockTableRecordIterator::getEntity(PwDbEntity*& entity,
                                                                PwDb::OpenMode mode,
                                                                bool openErased) const {
    entity = nullptr;
    if (m_cursor.done()) return Plotwright::StatusIteratorDone;
    return pwdbOpenObject(entity, m_cursor.current(), mode, openErased);
}

Plotwright::ErrorStatus PwDbBlockTableRecordIterator::seek(PwDbObjectId id) {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    return m_cursor.seek(id) ? Plotwright::StatusOk : Plotwright::StatusKeyNotFound;
}

// --- PwDbBlockTableRecord --------------------------------------------------------------------

PwDbBlockTableRecord::PwDbBlockTableRecord() = default;

PwDbBlockTableRecord::~PwDbBlockTableRecord() = default;

bool PwDbBlockTableRecord::acceptsName(const wstring& name) const {
    return PwDbSymbolUtilities::isValidSymbolName(name, true);
}

Plotwright::ErrorStatus PwDbBlockTableRecord::checkAppendable(const PwDbEntity* entity) const {
    if (entity == nullptr) return Plotwright::StatusNullDatabase;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() == nullptr) return Plotwright::StatusNotInDatabase;
    // An entity in no database may carry a stale owner (a copy does): it is no holder.
    if (entity->database() == nullptr) return Plotwright::StatusOk;
    if (entity->database() != database()) return Plotwright::StatusWrongDatabase;
    if (!entity->ownerId().isNull()) return Plotwright::StatusAlreadyInDatabase;
    if (!entity->isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockTableRecord::appendPwDbEntity(PwDbObjectId& id,
                                                               PwDbEntity* entity) {
    id = PwDbObjectId();
    if (auto status = checkAppendable(entity)) return status;
    PwDbDatabase* drawing = database();
    if (entity->database() == nullptr) {
        if (auto status = drawing->addPwDbObject(entity)) return status;
    }
    entity->setOwnerId(objectId());
    // A layer of another drawing (a copied entity's) means nothing here.
    const PwDbObjectId layer = entity->layerId();
    if (layer.isNull() || layer.database() != drawing) entity->setLayer(drawing->clayer());
    assertWriteEnabled();
    entityIds();
    m_entities.push_back(entity->objectId());
    id = entity->objectId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockTableRecord::appendPwDbEntity(PwDbEntity* entity) {
    PwDbObjectId ignored;
    return appendPwDbEntity(ignored, entity);
}

Plotwright::ErrorStatus PwDbBlockTableRecord::newIterator(PwDbBlockTableRecordIterator*& iterator,
                                                          bool atBeginning, bool skipErased) const {
    iterator = new PwDbBlockTableRecordIterator(entityIds());
    iterator->start(atBeginning, skipErased);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockTableRecord::setLayoutId(PwDbObjectId layout) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() != nullptr && !layout.isNull() && layout.database() != database()) {
        return Plotwright::StatusWrongDatabase;
    }
    assertWriteEnabled();
    m_layout = layout;
    return Plotwright::StatusOk;
}

bool PwDbBlockTableRecord::isModelSpace() const {
    return foldedName() == kModelSpaceFolded;
}

bool PwDbBlockTableRecord::isPaperSpace() const {
    const wstring& name = foldedName();
    const wstring prefix(kPaperSpaceFolded);
    if (name.compare(0, prefix.size(), prefix) != 0) return false;
    return std::all_of(name.begin() + static_cast<std::ptrdiff_t>(prefix.size()), name.end(),
                       [](char16_t unit) { return unit >= u'0' && unit <= u'9'; });
}

Plotwright::ErrorStatus PwDbBlockTableRecord::getBlockReferenceIds(PwArray<PwDbObjectId>& ids,
                                                                   bool /*directOnly*/,
                                                                   bool /*forceValidity*/) const {
    ids.setLogicalLength(0);
    const PwDbDatabase* drawing = database();
    if (drawing == nullptr) return Plotwright::StatusNotInDatabase;
    return drawing->getBlockReferenceIds(objectId(), ids);
}

Plotwright::ErrorStatus PwDbBlockTableRecord::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbSymbolTableRecord::plwInFields(filer)) return status;
    int32_t count = 0;
    if (auto status = filer->readInt32(count)) return status;
    if (count < 0) return Plotwright::StatusFilerError;
    std::vector<PwDbObjectId> entities;
    std::string handles;
    size_t named = 0;
    const bool asHandles = filer->keepsIdsAsHandles();
    if (!asHandles) {
        entities.reserve(std::min(static_cast<size_t>(count), kPwDbMaxReserveBeforeItems));
    }
    if (asHandles) {
        if (auto status = filer->readPackedHandles(static_cast<size_t>(count), handles, named)) {
            return status;
        }
    }
    for (int32_t i = 0; !asHandles && i < count; ++i) {
        PwDbObjectId id;
        if (auto status = filer->readObjectId(id)) return status;
        if (!id.isNull()) entities.push_back(id);
    }
    PwDbObjectId layout;
    if (auto status = filer->readObjectId(layout)) return status;
    wstring pathName;
    if (auto status = filer->readString(pathName)) return status;
    bool unloaded = false;
    if (auto status = filer->readBool(unloaded)) return status;
    m_entities = std::move(entities);
    m_entityHandles = std::move(handles);
    m_namedEntities = named;
    m_entitiesAsHandles = asHandles;
    m_layout = layout;
    m_pathName = std::move(pathName);
    m_unloaded = unloaded;
    m_xrefDatabase = nullptr;
    m_resolution = PwDb::XrefFilePresentUnresolved;
    return Plotwright::StatusOk;
}

const std::vector<PwDbObjectId>& PwDbBlockTableRecord::entityIds() const {
    if (m_entitiesAsHandles) {
        // Read lazily, the record lives in the database it was read into.
        PwDbDatabase* drawing = database();
        m_entities.clear();
        m_entities.reserve(m_namedEntities);
        // The filer checked every number when it took them.
        uint64_t handle = 0;
        for (size_t at = 0; LodeUtil::ReadVarint(m_entityHandles, at, handle);) {
            if (handle == 0) continue;
            m_entities.push_back(drawing ? drawing->getPwDbObjectId(handle, true) : PwDbObjectId());
        }
        m_entityHandles = {};
        m_entitiesAsHandles = false;
    }
    return m_entities;
}

Plotwright::ErrorStatus PwDbBlockTableRecord::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbSymbolTableRecord::plwOutFields(filer)) return status;
    const std::vector<PwDbObjectId>& entities = entityIds();
    if (auto status = filer->writeInt32(static_cast<int32_t>(entities.size()))) return status;
    for (const PwDbObjectId id : entities) {
        if (auto status = filer->writeObjectId(id)) return status;
    }
    if (auto status = filer->writeObjectId(m_layout)) return status;
    if (auto status = filer->writeString(m_pathName)) return status;
    return filer->writeBool(m_unloaded);
}

Plotwright::ErrorStatus PwDbBlockTableRecord::setPathName(const char16_t* path) {
    const wstring text = path != nullptr ? wstring(path) : wstring();
    if (auto status = setField(m_pathName, text)) return status;
    m_xrefDatabase = nullptr;
    m_resolution = PwDb::XrefFilePresentUnresolved;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbBlockTableRecord::pathName(PwString& path) const {
    return path.assign(m_pathName.c_str(), m_pathName.size());
}

PwDbDatabase* PwDbBlockTableRecord::xrefDatabase(bool /*includeUnresolved*/) const {
    return xrefStatus() == PwDb::XrefResolved ? m_xrefDatabase : nullptr;
}

PwDb::XrefStatus PwDbBlockTableRecord::xrefStatus() const {
    if (m_pathName.empty()) return PwDb::XrefNotAnXref;
    if (m_unloaded) return PwDb::XrefUnloaded;
    return m_resolution;
}

Plotwright::ErrorStatus PwDbBlockTableRecord::setIsUnloaded(bool unloaded) {
    if (auto status = setField(m_unloaded, unloaded)) return status;
    if (unloaded) {
        m_xrefDatabase = nullptr;
        m_resolution = PwDb::XrefFilePresentUnresolved;
    }
    return Plotwright::StatusOk;
}

// --- PwDbBlockTableIterator and PwDbBlockTable -----------------------------------------------

PwDbBlockTableIterator::PwDbBlockTableIterator(std::vector<PwDbObjectId> ids)
    : PwDbSymbolTableIterator(std::move(ids)) {}

PwDbBlockTableIterator::~PwDbBlockTableIterator() = default;

Plotwright::ErrorStatus PwDbBlockTableIterator::getRecord(PwDbBlockTableRecord*& record,
                                                          PwDb::OpenMode mode,
                                                          bool openErased) const {
    return getTypedRecord(record, mode, openErased);
}

PwDbBlockTable::PwDbBlockTable() = default;

PwDbBlockTable::~PwDbBlockTable() = default;

PwRxClass* PwDbBlockTable::recordClass() const {
    return PwDbBlockTableRecord::desc();
}

Plotwright::ErrorStatus PwDbBlockTable::getAt(const char16_t* name, PwDbBlockTableRecord*& record,
                                              PwDb::OpenMode mode, bool openErased) const {
    return getTypedAt(name, record, mode, openErased);
}

Plotwright::ErrorStatus PwDbBlockTable::newIterator(PwDbBlockTableIterator*& iterator,
                                                    bool atBeginning, bool skipErased) const {
    return newTypedIterator(iterator, atBeginning, skipErased);
}

PwDbSymbolTableIterator* PwDbBlockTable::makeIterator(std::vector<PwDbObjectId> ids) const {
    return new PwDbBlockTableIterator(std::move(ids));
}
