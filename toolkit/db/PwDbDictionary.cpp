// Dictionaries: keyed, ordered, owning containers of objects, and their iterator.
#include <lodeqdb/toolkit/db/PwDbDictionary.h>

#include <algorithm>
#include <utility>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

#include "toolkit/db/PwDbReadLimits.h"
#include "toolkit/db/PwDbStub.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbDictionary, PwDbObject, u"PwDbDictionary");

namespace {

bool isKey(const char16_t* key) {
    return key != nullptr && key[0] != u'\0';
}

wstring fold(const char16_t* key) {
    return LodeUtil::FoldCase(wstring(key));
}

// The object behind `id` when there is one, whether erased or not.
PwDbObject* objectOf(PwDbObjectId id) {
    return id.isNull() ? nullptr : pwdbStubObject(*id.stub());
}

// Ownership has no cycles in a sound drawing; the bound keeps a broken one from hanging.
constexpr int kMaxOwnerDepth = 1024;

// Gives `object` the owner `owner`, opening it for write for the moment when it isn't
// writable already. The status of that open when it is refused.
Plotwright::ErrorStatus reown(PwDbObject* object, PwDbObjectId owner) {
    if (object->isWriteEnabled()) return object->setOwnerId(owner);
    PwDbObject* opened = nullptr;
    if (auto status = pwdbOpenObject(opened, object->objectId(), PwDb::OpenForWrite, true)) {
        return status;
    }
    opened->setOwnerId(owner);
    opened->close();
    return Plotwright::StatusOk;
}

}  // namespace

// --- PwDbDictionaryIterator ------------------------------------------------------------------

PwDbDictionaryIterator::PwDbDictionaryIterator(std::vector<Item> items)
    : m_items(std::move(items)) {
    passErased();
}

PwDbDictionaryIterator::~PwDbDictionaryIterator() = default;

void PwDbDictionaryIterator::passErased() {
    while (m_position < m_items.size()) {
        const PwDbObject* object = objectOf(m_items[m_position].id);
        if (object != nullptr && !object->isErased()) return;
        ++m_position;
    }
}

const char16_t* PwDbDictionaryIterator::name() const {
    return atEnd() ? nullptr : m_items[m_position].key.c_str();
}

Plotwright::ErrorStatus PwDbDictionaryIterator::getObject(PwDbObject*& object,
                                                          PwDb::OpenMode mode) {
    object = nullptr;
    if (atEnd()) return Plotwright::StatusIteratorDone;
    return pwdbOpenObject(object, m_items[m_position].id, mode);
}

Plotwright::ErrorStatus PwDbDictionaryIterator::entryId(PwDbObjectId& id) const {
    id = entryId();
    return atEnd() ? Plotwright::StatusIteratorDone : Plotwright::StatusOk;
}

bool PwDbDictionaryIterator::atEnd() const {
    return m_position >= m_items.size();
}

void PwDbDictionaryIterator::advance() {
    if (atEnd()) return;
    ++m_position;
    passErased();
}

PwDbObjectId PwDbDictionaryIterator::entryId() const {
    return atEnd() ? PwDbObjectId() : m_items[m_position].id;
}

// --- PwDbDictionary: look-ups ----------------------------------------------------------------

PwDbDictionary::PwDbDictionary() = default;

PwDbDictionary::~PwDbDictionary() = default;

size_t PwDbDictionary::indexOf(const wstring& folded) const {
    const auto found = m_index.find(folded);
    return found == m_index.end() ? m_entries.size() : found->second;
}

size_t PwDbDictionary::indexOf(PwDbObjectId id) const {
    const auto found = std::find_if(m_entries.begin(), m_entries.end(),
                                    [id](const Entry& entry) { return entry.id == id; });
    return static_cast<size_t>(found - m_entries.begin());
}

void PwDbDictionary::reindex() {
    m_index.clear();
    for (size_t i = 0; i < m_entries.size(); ++i) m_index.emplace(m_entries[i].folded, i);
}

Plotwright::ErrorStatus PwDbDictionary::getAt(const char16_t* key, PwDbObjectId& id) const {
    id = PwDbObjectId();
    if (!isKey(key)) return Plotwright::StatusInvalidKey;
    const size_t at = indexOf(fold(key));
    if (at == m_entries.size()) return Plotwright::StatusKeyNotFound;
    id = m_entries[at].id;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbDictionary::getAt(const char16_t* key, PwDbObject*& object,
                                              PwDb::OpenMode mode) const {
    object = nullptr;
    PwDbObjectId id;
    if (auto status = getAt(key, id)) return status;
    return pwdbOpenObject(object, id, mode);
}

Plotwright::ErrorStatus PwDbDictionary::nameAt(PwDbObjectId id, PwString& name) const {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    const size_t at = indexOf(id);
    if (at == m_entries.size()) return Plotwright::StatusKeyNotFound;
    const wstring& key = m_entries[at].key;
    return name.assign(key.data(), key.size());
}

bool PwDbDictionary::has(const char16_t* key) const {
    return isKey(key) && indexOf(fold(key)) < m_entries.size();
}

bool PwDbDictionary::has(PwDbObjectId id) const {
    return !id.isNull() && indexOf(id) < m_entries.size();
}

PwDbDictionaryIterator* PwDbDictionary::newIterator() const {
    std::vector<PwDbDictionaryIterator::Item> items;
    items.reserve(m_entries.size());
    for (const Entry& entry : m_entries) items.push_back({entry.key, entry.id});
    return new PwDbDictionaryIterator(std::move(items));
}

// --- PwDbDictionary: changes -----------------------------------------------------------------

bool PwDbDictionary::isOwnedBy(PwDbObjectId id) const {
    PwDbObjectId current = ownerId();
    for (int depth = 0; depth < kMaxOwnerDepth && !current.isNull(); ++depth) {
        if (current == id) return true;
        const PwDbObject* owner = objectOf(current);
        if (owner == nullptr) return false;
        current = owner->ownerId();
    }
    return false;
}

Plotwright::ErrorStatus PwDbDictionary::checkFileable(const PwDbObject* object) const {
    if (object == this) return Plotwright::StatusInvalidInput;
    // An object in no database may carry a stale owner (a copy does): it is no holder.
    if (object->database() == nullptr) return Plotwright::StatusOk;
    if (object->database() != database()) return Plotwright::StatusWrongDatabase;
    if (!object->ownerId().isNull()) return Plotwright::StatusAlreadyInDatabase;
    if (!object->isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (isOwnedBy(object->objectId())) return Plotwright::StatusInvalidInput;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbDictionary::setAt(const char16_t* key, PwDbObject* object,
                                              PwDbObjectId& id) {
    id = PwDbObjectId();
    if (!isKey(key)) return Plotwright::StatusInvalidKey;
    if (object == nullptr) return Plotwright::StatusNullDatabase;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (database() == nullptr) return Plotwright::StatusNotInDatabase;
    wstring folded = fold(key);
    const size_t at = indexOf(folded);
    const bool replacing = at < m_entries.size();
    if (replacing && !object->objectId().isNull() && m_entries[at].id == object->objectId()) {
        assertWriteEnabled();
        m_entries[at].key = key;
        id = object->objectId();
        return Plotwright::StatusOk;
    }
    if (auto status = checkFileable(object)) return status;

    // The replaced object is opened before anything changes, so that a refusal leaves all
    // as it was.
    PwDbObject* old = replacing ? objectOf(m_entries[at].id) : nullptr;
    bool openedOld = false;
    if (old != nullptr && old->ownerId() != objectId()) old = nullptr;
    if (old != nullptr && !old->isWriteEnabled()) {
        const PwDbObjectId oldId = old->objectId();
        if (auto status = pwdbOpenObject(old, oldId, PwDb::OpenForWrite, true)) return status;
        openedOld = true;
    }
    if (object->database() == nullptr) {
        if (auto status = database()->addPwDbObject(object)) {
            if (openedOld) old->close();
            return status;
        }
    }
    object->setOwnerId(objectId());
    if (old != nullptr) {
        old->erase();
        if (openedOld) old->close();
    }
    assertWriteEnabled();
    if (replacing) {
        m_entries[at].key = key;
        m_entries[at].id = object->objectId();
    } else {
        m_index.emplace(folded, m_entries.size());
        m_entries.push_back({wstring(key), std::move(folded), object->objectId()});
    }
    id = object->objectId();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbDictionary::remove(const char16_t* key) {
    PwDbObjectId ignored;
    return remove(key, ignored);
}

Plotwright::ErrorStatus PwDbDictionary::remove(const char16_t* key, PwDbObjectId& removedId) {
    removedId = PwDbObjectId();
    if (!isKey(key)) return Plotwright::StatusInvalidKey;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    const size_t at = indexOf(fold(key));
    if (at == m_entries.size()) return Plotwright::StatusKeyNotFound;
    const PwDbObjectId held = m_entries[at].id;
    PwDbObject* object = objectOf(held);
    if (object != nullptr && !objectId().isNull() && object->ownerId() == objectId()) {
        if (auto status = reown(object, PwDbObjectId())) return status;
    }
    assertWriteEnabled();
    m_entries.erase(m_entries.begin() + static_cast<std::ptrdiff_t>(at));
    reindex();
    removedId = held;
    return Plotwright::StatusOk;
}

bool PwDbDictionary::setName(const char16_t* oldName, const char16_t* newName) {
    if (!isWriteEnabled() || !isKey(oldName) || !isKey(newName)) return false;
    const size_t at = indexOf(fold(oldName));
    if (at == m_entries.size()) return false;
    wstring folded = fold(newName);
    const size_t other = indexOf(folded);
    if (other != m_entries.size() && other != at) return false;
    assertWriteEnabled();
    m_index.erase(m_entries[at].folded);
    m_index.emplace(folded, at);
    m_entries[at].key = newName;
    m_entries[at].folded = std::move(folded);
    return true;
}

// --- PwDbDictionary: persistent data ---------------------------------------------------------

Plotwright::ErrorStatus PwDbDictionary::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    int32_t count = 0;
    if (auto status = filer->readInt32(count)) return status;
    if (count < 0) return Plotwright::StatusFilerError;
    std::vector<Entry> entries;
    std::unordered_map<wstring, size_t> index;
    entries.reserve(std::min(static_cast<size_t>(count), kPwDbMaxReserveBeforeItems));
    for (int32_t i = 0; i < count; ++i) {
        Entry entry;
        if (auto status = filer->readString(entry.key)) return status;
        if (auto status = filer->readObjectId(entry.id)) return status;
        // An empty key, or two entries of one key, can't have been written by a dictionary.
        if (entry.key.empty()) return Plotwright::StatusFilerError;
        entry.folded = LodeUtil::FoldCase(entry.key);
        if (!index.emplace(entry.folded, entries.size()).second) {
            return Plotwright::StatusFilerError;
        }
        entries.push_back(std::move(entry));
    }
    m_entries = std::move(entries);
    m_index = std::move(index);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbDictionary::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    if (auto status = filer->writeInt32(static_cast<int32_t>(m_entries.size()))) return status;
    for (const Entry& entry : m_entries) {
        if (auto status = filer->writeString(entry.key)) return status;
        if (auto status = filer->writeObjectId(entry.id)) return status;
    }
    return Plotwright::StatusOk;
}
