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

bool PwDbObjectId::isValid() const {
    return m_stub != nullptr && m_stub->object != nullptr;
}

bool PwDbObjectId::isErased() const {
    return isValid() && m_stub->object->isErased();
}

bool PwDbObjectId::isEffectivelyErased() const {
    // Ownership has no cycles in a sound drawing; the bound keeps a broken one from hanging.
    PwDbObjectId current = *this;
    for (int depth = 0; depth < 1024; ++depth) {
        if (!current.isValid() || current.m_stub->object->isErased()) return true;
        current = current.m_stub->object->ownerId();
        if (current.isNull()) return false;
    }
    return true;
}
