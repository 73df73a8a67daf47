// Object ids: queries through the database's record of the object.
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

#include <lodeqdb/toolkit/db/PwDbObject.h>
#include "toolkit/db/PwDbStub.h"

const PwDbObjectId PwDbObjectId::kNull;

PwDbDatabase* PwDbObjectId::database() const {
    return m_stub ? m_stub->database : nullptr;
}

PwDbHandle PwDbObjectId::handle() const {
    return m_stub ? m_stub->handle : 0;
}

// A record still pending in the file counts as an object: the file's index promises it, and
// says whether it is erased, so neither question decodes it.
bool PwDbObjectId::isValid() const {
    return m_stub != nullptr && (m_stub->object != nullptr || m_stub->pending);
}

bool PwDbObjectId::isErased() const {
    if (m_stub != nullptr && m_stub->pending) return m_stub->storedErased;
    return isValid() && m_stub->object->isErased();
}

bool PwDbObjectId::isEffectivelyErased() const {
    // Ownership has no cycles in a sound drawing; the bound keeps a broken one from hanging.
    PwDbObjectId current = *this;
    for (int depth = 0; depth < 1024; ++depth) {
        const PwDbObject* object = current.m_stub ? pwdbStubObject(*current.m_stub) : nullptr;
        if (object == nullptr || object->isErased()) return true;
        current = object->ownerId();
        if (current.isNull()) return false;
    }
    return true;
}
