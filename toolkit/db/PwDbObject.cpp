// Objects: identity, the open protocol, erasing, copying through a filer.
#include <lodeqdb/toolkit/db/PwDbObject.h>

#include <cassert>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include "toolkit/db/PwDbStub.h"

PWRX_DEFINE_MEMBERS(PwDbObject, PwRxObject, u"PwDbObject");

PwDbObject::PwDbObject() = default;

PwDbObject::~PwDbObject() = default;

PwDbObjectId PwDbObject::objectId() const {
    return PwDbObjectId(m_stub);
}

PwDbDatabase* PwDbObject::database() const {
    return m_stub ? m_stub->database : nullptr;
}

PwDbHandle PwDbObject::handle() const {
    return m_stub ? m_stub->handle : 0;
}

Plotwright::ErrorStatus PwDbObject::setOwnerId(PwDbObjectId owner) {
    if (m_stub != nullptr && !isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    m_owner = owner;
    return Plotwright::StatusOk;
}

bool PwDbObject::isReadEnabled() const {
    return m_stub == nullptr || m_readers > 0 || m_writer || m_transactionFetches > 0;
}

bool PwDbObject::isWriteEnabled() const {
    return m_stub == nullptr || m_writer || m_transactionWriteFetches > 0;
}

void PwDbObject::assertReadEnabled() const {
    assert(isReadEnabled() && "an object is read only while it is open");
}

void PwDbObject::assertWriteEnabled(bool /*autoUndo*/, bool recordModified) {
    assert(isWriteEnabled() && "an object is changed only while it is open for write");
    if (recordModified) m_modified = true;
    if (PwDbDatabase* db = database()) db->noteChange();
}

Plotwright::ErrorStatus PwDbObject::close() {
    if (m_stub == nullptr) return Plotwright::StatusNotInDatabase;
    if (m_writer) {
        m_writer = false;
        return Plotwright::StatusOk;
    }
    if (m_readers == 0) return Plotwright::StatusNotOpenForRead;
    --m_readers;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbObject::upgradeOpen() {
    if (m_stub == nullptr) return Plotwright::StatusNotInDatabase;
    if (m_writer) return Plotwright::StatusWasOpenForWrite;
    if (m_readers == 0) return Plotwright::StatusNotOpenForRead;
    if (m_readers > 1) return Plotwright::StatusWasOpenForRead;
    m_readers = 0;
    m_writer = true;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbObject::downgradeOpen() {
    if (m_stub == nullptr) return Plotwright::StatusNotInDatabase;
    if (!m_writer) return Plotwright::StatusNotOpenForWrite;
    m_writer = false;
    m_readers = 1;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbObject::erase(bool erasing) {
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (m_erased == erasing) return Plotwright::StatusOk;
    assertWriteEnabled();
    m_erased = erasing;
    return Plotwright::StatusOk;
}

namespace {

// A persistent reactor entry is the address of the reactor's database record with the low
// bit set; records are aligned, so no other pointer a reactor list could hold looks like one.
constexpr std::uintptr_t kPersistentReactorTag = 1;

void* PersistentReactorEntry(PwDbObjectId id) {
    return reinterpret_cast<void*>(id.asNumber() | kPersistentReactorTag);
}

}  // namespace

PwDbObjectId pwdbPersistentReactorObjectId(const void* entry) {
    const auto bits = reinterpret_cast<std::uintptr_t>(entry);
    if ((bits & kPersistentReactorTag) == 0) return PwDbObjectId();
    return PwDbObjectId(reinterpret_cast<PwDbStub*>(bits & ~kPersistentReactorTag));
}

bool PwDbObject::hasPersistentReactor(PwDbObjectId id) const {
    return !id.isNull() && m_reactors && m_reactors->contains(PersistentReactorEntry(id));
}

Plotwright::ErrorStatus PwDbObject::addPersistentReactor(PwDbObjectId id) {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    if (m_stub != nullptr && id.database() != m_stub->database)
        return Plotwright::StatusWrongDatabase;
    if (hasPersistentReactor(id)) return Plotwright::StatusOk;
    if (!m_reactors) m_reactors = std::make_unique<PwArray<void*>>();
    if (m_reactors->append(PersistentReactorEntry(id)) == PwArray<void*>::kNoIndex) {
        if (m_reactors->isEmpty()) m_reactors.reset();
        return Plotwright::StatusOutOfMemory;
    }
    assertWriteEnabled();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbObject::removePersistentReactor(PwDbObjectId id) {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    size_t index = 0;
    if (!m_reactors || !m_reactors->find(PersistentReactorEntry(id), index))
        return Plotwright::StatusKeyNotFound;
    assertWriteEnabled();
    m_reactors->removeAt(index);
    if (m_reactors->isEmpty()) m_reactors.reset();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbObject::plwInFields(PwDbPlwFiler* filer) {
    if (filer == nullptr) return Plotwright::StatusInvalidInput;
    if (!isWriteEnabled()) return Plotwright::StatusNotOpenForWrite;
    assertWriteEnabled();
    PwDbObjectId owner;
    if (auto status = filer->readObjectId(owner)) return status;
    int32_t count = 0;
    if (auto status = filer->readInt32(count)) return status;
    if (count < 0) return Plotwright::StatusFilerError;
    // Grown one entry at a time: a count that promises more than the filer holds fails at
    // the first missing id, before it could cost memory.
    std::unique_ptr<PwArray<void*>> reactors;
    for (int32_t i = 0; i < count; ++i) {
        PwDbObjectId reactor;
        if (auto status = filer->readObjectId(reactor)) return status;
        if (reactor.isNull()) continue;
        if (!reactors) reactors = std::make_unique<PwArray<void*>>();
        if (reactors->contains(PersistentReactorEntry(reactor))) continue;
        if (reactors->append(PersistentReactorEntry(reactor)) == PwArray<void*>::kNoIndex)
            return Plotwright::StatusOutOfMemory;
    }
    m_owner = owner;
    m_reactors = std::move(reactors);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbObject::plwOutFields(PwDbPlwFiler* filer) const {
    if (filer == nullptr) return Plotwright::StatusInvalidInput;
    if (auto status = filer->writeObjectId(m_owner)) return status;
    const size_t count = m_reactors ? m_reactors->length() : 0;
    if (auto status = filer->writeInt32(static_cast<int32_t>(count))) return status;
    for (size_t i = 0; i < count; ++i) {
        if (auto status = filer->writeObjectId(pwdbPersistentReactorObjectId(m_reactors->at(i))))
            return status;
    }
    return Plotwright::StatusOk;
}

PwDbObject* PwDbObject::clone() const {
    PwRxObject* made = runtimeClass()->create();
    PwDbObject* copy = PwDbObject::cast(made);
    if (copy == nullptr) {
        delete made;
        return nullptr;
    }
    PwDbMemoryFiler filer(database());
    if (plwOutFields(&filer) != Plotwright::StatusOk ||
        copy->plwInFields(&filer) != Plotwright::StatusOk) {
        delete copy;
        return nullptr;
    }
    // A proxy's class is not part of its data: it goes along by hand.
    if (const auto* proxy = PwDbProxyObject::cast(this)) {
        PwDbProxyObject::cast(copy)->setProxiedClassChain(proxy->proxiedClassChain());
    } else if (const auto* proxyEntity = PwDbProxyEntity::cast(this)) {
        PwDbProxyEntity::cast(copy)->setProxiedClassChain(proxyEntity->proxiedClassChain());
    }
    copy->m_modified = false;
    return copy;
}

// The open protocol lives here, next to the state it guards.
class PwDbObjectOpener {
  public:
    static Plotwright::ErrorStatus open(PwDbObject*& object, PwDbObjectId id, PwDb::OpenMode mode,
                                        bool openErased, const PwRxClass* cls) {
        object = nullptr;
        if (id.isNull()) return Plotwright::StatusNullObjectId;
        // A record pending in the file is decoded here; one that fails says why.
        Plotwright::ErrorStatus undecoded = Plotwright::StatusInvalidObjectId;
        PwDbObject* candidate = pwdbStubObject(*id.stub(), &undecoded);
        if (candidate == nullptr) return undecoded;
        if (candidate->m_erased && !openErased) return Plotwright::StatusWasErased;
        if (cls != nullptr && !candidate->isKindOf(cls))
            return Plotwright::StatusNotThatKindOfClass;
        if (candidate->m_writer) return Plotwright::StatusWasOpenForWrite;
        if (mode == PwDb::OpenForWrite) {
            if (candidate->m_readers > 0) return Plotwright::StatusWasOpenForRead;
            candidate->m_writer = true;
        } else {
            ++candidate->m_readers;
        }
        object = candidate;
        return Plotwright::StatusOk;
    }
};

Plotwright::ErrorStatus pwdbOpenObject(PwDbObject*& object, PwDbObjectId id, PwDb::OpenMode mode,
                                       bool openErased, const PwRxClass* cls) {
    return PwDbObjectOpener::open(object, id, mode, openErased, cls);
}

void pwdbReleaseObject(PwDbObject* object) {
    if (object == nullptr) return;
    if (object->objectId().isNull()) {
        delete object;
    } else {
        object->close();
    }
}
