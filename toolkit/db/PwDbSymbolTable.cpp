// Symbol tables: records, their names, the table's look-up and its iterator.
#include <lodeqdb/toolkit/db/PwDbSymbolTable.h>

#include <algorithm>
#include <utility>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>
#include "toolkit/db/PwDbStub.h"
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>

#include "toolkit/db/PwDbReadLimits.h"

PWRX_DEFINE_MEMBERS(PwDbSymbolTableRecord, PwDbObject, u"PwDbSymbolTableRecord");
PWRX_DEFINE_MEMBERS(PwDbSymbolTable, PwDbObject, u"PwDbSymbolTable");

namespace {

// An id the walkers pass over when asked to skip erased records: erased, or naming no object.
bool isSkippable(PwDbObjectId id) {
    const PwDbStub* stub = id.stub();
    if (stub == nullptr) return true;
    if (stub->pending) return stub->storedErased;
    return stub->object == nullptr || stub->object->isErased();
}

}  // namespace

// --- PwDbObjectIdCursor ----------------------------------------------------------------------

PwDbObjectIdCursor::PwDbObjectIdCursor(std::vector<PwDbObjectId> ids) : m_ids(std::move(ids)) {}

void PwDbObjectIdCursor::start(bool atBeginning, bool skipErased) {
    m_position = atBeginning ? 0 : static_cast<std::ptrdiff_t>(m_ids.size()) - 1;
    if (skipErased) pass(atBeginning);
}

bool PwDbObjectIdCursor::done() const {
    return m_position < 0 || m_position >= static_cast<std::ptrdiff_t>(m_ids.size());
}

void PwDbObjectIdCursor::step(bool forward, bool skipErased) {
    const auto end = static_cast<std::ptrdiff_t>(m_ids.size());
    if (forward && m_position < end) ++m_position;
    if (!forward && m_position >= 0) --m_position;
    if (skipErased) pass(forward);
}

void PwDbObjectIdCursor::pass(bool forward) {
    while (!done() && isSkippable(m_ids[static_cast<size_t>(m_position)])) {
        m_position += forward ? 1 : -1;
    }
}

PwDbObjectId PwDbObjectIdCursor::current() const {
    return done() ? PwDbObjectId() : m_ids[static_cast<size_t>(m_position)];
}

bool PwDbObjectIdCursor::seek(PwDbObjectId id) {
    const auto found = std::find(m_ids.begin(), m_ids.end(), id);
    if (found == m_ids.end()) return false;
    m_position = found - m_ids.begin();
    return true;
}

// --- PwDbSymbolTableRecord -------------------------------------------------------------------

PwDbSymbolTableRecord::PwDbSymbolTableRecord() = default;

PwDbSymbolTableRecord::~PwDbSymbolTableRecord() = default;

Plotwright::ErrorStatus PwDbSymbolTableRecord::getName(const char16_t*& name) const {
    name = m_name.c_str();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTableRecord::getName(PwString& name) const {
    return name.assign(m_name.data(), m_name.size());
}

bool PwDbSymbolTableRecord::acceptsName(const wstring& name) const {
    return PwDbSymbolUtilities::isValidSymbolName(name, false);
}

Plotwright::ErrorStatus PwDbSymbolTableRecord::setName(const char16_t* name) {
    if (name == nullptr) return Plotwright::StatusInvalidKey;
    wstring text(name);
    if (!acceptsName(text)) return Plotwright::StatusInvalidKey;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    wstring folded = LodeUtil::FoldCase(text);
    const PwDbSymbolTable* table = owningTable();
    if (table != nullptr && !table->find(folded, objectId(), false).isNull()) {
        return Plotwright::StatusDuplicateKey;
    }
    assertWriteEnabled();
    takeName(std::move(text), std::move(folded));
    return Plotwright::StatusOk;
}

PwDbSymbolTable* PwDbSymbolTableRecord::owningTable() const {
    const PwDbObjectId self = objectId();
    const PwDbObjectId owner = ownerId();
    if (self.isNull() || owner.isNull()) return nullptr;
    PwDbSymbolTable* table = PwDbSymbolTable::cast(pwdbStubObject(*owner.stub()));
    if (table == nullptr || table->m_positions.count(self) == 0) return nullptr;
    return table;
}

void PwDbSymbolTableRecord::takeName(wstring name, wstring folded) {
    wstring oldFolded = std::move(m_folded);
    m_name = std::move(name);
    m_folded = std::move(folded);
    if (PwDbSymbolTable* table = owningTable()) table->noteRename(objectId(), oldFolded, m_folded);
}

Plotwright::ErrorStatus PwDbSymbolTableRecord::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    wstring name;
    if (auto status = filer->readString(name)) return status;
    wstring folded = LodeUtil::FoldCase(name);
    takeName(std::move(name), std::move(folded));
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTableRecord::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    return filer->writeString(m_name);
}

// --- PwDbSymbolTableIterator -----------------------------------------------------------------

PwDbSymbolTableIterator::PwDbSymbolTableIterator(std::vector<PwDbObjectId> ids)
    : m_cursor(std::move(ids)) {}

PwDbSymbolTableIterator::~PwDbSymbolTableIterator() = default;

void PwDbSymbolTableIterator::start(bool atBeginning, bool skipErased) {
    m_cursor.start(atBeginning, skipErased);
}

bool PwDbSymbolTableIterator::done() const {
    return m_cursor.done();
}

void PwDbSymbolTableIterator::step(bool forward, bool skipErased) {
    m_cursor.step(forward, skipErased);
}

Plotwright::ErrorStatus PwDbSymbolTableIterator::getRecordId(PwDbObjectId& id) const {
    id = m_cursor.current();
    return id.isNull() ? Plotwright::StatusIteratorDone : Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTableIterator::getRecord(PwDbSymbolTableRecord*& record,
                                                           PwDb::OpenMode mode,
                                                           bool openErased) const {
    record = nullptr;
    if (m_cursor.done()) return Plotwright::StatusIteratorDone;
    return pwdbOpenObject(record, m_cursor.current(), mode, openErased);
}

Plotwright::ErrorStatus PwDbSymbolTableIterator::seek(PwDbObjectId id) {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    return m_cursor.seek(id) ? Plotwright::StatusOk : Plotwright::StatusKeyNotFound;
}

// --- PwDbSymbolTable -------------------------------------------------------------------------

PwDbSymbolTable::PwDbSymbolTable() = default;

PwDbSymbolTable::~PwDbSymbolTable() = default;

Plotwright::ErrorStatus PwDbSymbolTable::getIdAt(const char16_t* name, PwDbObjectId& id,
                                                 bool getErasedRecord) const {
    id = PwDbObjectId();
    if (name == nullptr || name[0] == u'\0') return Plotwright::StatusInvalidKey;
    id = find(LodeUtil::FoldCase(wstring(name)), PwDbObjectId(), getErasedRecord);
    return id.isNull() ? Plotwright::StatusKeyNotFound : Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTable::getAt(const char16_t* name, PwDbSymbolTableRecord*& record,
                                               PwDb::OpenMode mode, bool openErased) const {
    record = nullptr;
    PwDbObjectId id;
    if (auto status = getIdAt(name, id, openErased)) return status;
    return pwdbOpenObject(record, id, mode, openErased);
}

bool PwDbSymbolTable::has(const char16_t* name) const {
    PwDbObjectId id;
    return getIdAt(name, id) == Plotwright::StatusOk;
}

bool PwDbSymbolTable::has(PwDbObjectId id) const {
    return !id.isNull() && m_positions.count(id) > 0 && !isSkippable(id);
}

PwDbObjectId PwDbSymbolTable::find(const wstring& folded, PwDbObjectId except, bool erased) const {
    ensureIndex();
    const auto named = m_byName.find(folded);
    if (named == m_byName.end()) return PwDbObjectId();
    PwDbObjectId firstErased;
    for (const PwDbObjectId id : named->second) {
        if (id == except || !id.isValid()) continue;
        if (!id.isErased()) return id;
        if (firstErased.isNull()) firstErased = id;
    }
    return erased ? firstErased : PwDbObjectId();
}

Plotwright::ErrorStatus PwDbSymbolTable::checkAddable(const PwDbSymbolTableRecord* record) const {
    if (record == nullptr) return Plotwright::StatusNullDatabase;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() == nullptr) return Plotwright::StatusNotInDatabase;
    if (!record->isKindOf(recordClass())) return Plotwright::StatusNotThatKindOfClass;
    if (!record->acceptsName(record->m_name)) return Plotwright::StatusInvalidKey;
    if (record->database() != nullptr) {
        if (record->database() != database()) return Plotwright::StatusWrongDatabase;
        if (!record->ownerId().isNull()) return Plotwright::StatusAlreadyInDatabase;
        if (!record->isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    }
    if (!find(record->m_folded, PwDbObjectId(), false).isNull()) {
        return Plotwright::StatusDuplicateKey;
    }
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTable::add(PwDbObjectId& id, PwDbSymbolTableRecord* record) {
    id = PwDbObjectId();
    if (auto status = checkAddable(record)) return status;
    if (record->database() == nullptr) {
        if (auto status = database()->addPwDbObject(record)) return status;
    }
    record->setOwnerId(objectId());
    assertWriteEnabled();
    const PwDbObjectId recordId = record->objectId();
    m_positions.emplace(recordId, m_records.size());
    m_records.push_back(recordId);
    // The new record stands last in table order, so it goes last among its namesakes.
    if (m_indexComplete) m_byName[record->m_folded].push_back(recordId);
    id = recordId;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTable::add(PwDbSymbolTableRecord* record) {
    PwDbObjectId ignored;
    return add(ignored, record);
}

PwDbSymbolTableIterator* PwDbSymbolTable::makeIterator(std::vector<PwDbObjectId> ids) const {
    return new PwDbSymbolTableIterator(std::move(ids));
}

Plotwright::ErrorStatus PwDbSymbolTable::newIterator(PwDbSymbolTableIterator*& iterator,
                                                     bool atBeginning, bool skipErased) const {
    iterator = makeIterator(m_records);
    iterator->start(atBeginning, skipErased);
    return Plotwright::StatusOk;
}

void PwDbSymbolTable::noteRename(PwDbObjectId record, const wstring& oldFolded,
                                 const wstring& newFolded) {
    // An incomplete look-up is rebuilt from the records' names on its next use anyway.
    if (!m_indexComplete) return;
    if (const auto named = m_byName.find(oldFolded); named != m_byName.end()) {
        auto& ids = named->second;
        ids.erase(std::remove(ids.begin(), ids.end(), record), ids.end());
        if (ids.empty()) m_byName.erase(named);
    }
    // Namesakes stay in table order, so that "the first erased record" means the same
    // whichever way the look-up came to be.
    auto& ids = m_byName[newFolded];
    const auto before = std::upper_bound(
        ids.begin(), ids.end(), positionOf(record),
        [this](size_t position, PwDbObjectId id) { return position < positionOf(id); });
    ids.insert(before, record);
}

size_t PwDbSymbolTable::positionOf(PwDbObjectId record) const {
    const auto found = m_positions.find(record);
    return found == m_positions.end() ? m_records.size() : found->second;
}

void PwDbSymbolTable::rebuildIndex() const {
    m_byName.clear();
    m_indexComplete = true;
    for (const PwDbObjectId id : m_records) {
        const PwDbObject* object = pwdbStubObject(*id.stub());
        if (object == nullptr) {
            // Named before it was read; its name is learnt when the look-up is next used.
            m_indexComplete = false;
            continue;
        }
        if (const auto* record = PwDbSymbolTableRecord::cast(object)) {
            m_byName[record->m_folded].push_back(id);
        }
    }
}

void PwDbSymbolTable::ensureIndex() const {
    if (!m_indexComplete) rebuildIndex();
}

Plotwright::ErrorStatus PwDbSymbolTable::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    int32_t count = 0;
    if (auto status = filer->readInt32(count)) return status;
    if (count < 0) return Plotwright::StatusFilerError;
    std::vector<PwDbObjectId> records;
    std::unordered_map<PwDbObjectId, size_t> positions;
    records.reserve(std::min(static_cast<size_t>(count), kPwDbMaxReserveBeforeItems));
    for (int32_t i = 0; i < count; ++i) {
        PwDbObjectId id;
        if (auto status = filer->readObjectId(id)) return status;
        // A null id names nothing, and a record is listed once.
        if (id.isNull() || !positions.emplace(id, records.size()).second) continue;
        records.push_back(id);
    }
    m_records = std::move(records);
    m_positions = std::move(positions);
    rebuildIndex();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbSymbolTable::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeInt32(static_cast<int32_t>(m_records.size()))) return status;
    for (const PwDbObjectId id : m_records) {
        if (auto status = filer->writeObjectId(id)) return status;
    }
    return Plotwright::StatusOk;
}
