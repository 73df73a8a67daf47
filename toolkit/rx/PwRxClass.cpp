// Class records: a name and a parent, and the derivation test over the parent chain.
#include <lodeqdb/toolkit/rx/PwRxClass.h>

PWRX_DEFINE_MEMBERS(PwRxClass, PwRxObject, u"PwRxClass");

PwRxClass::PwRxClass(const char16_t* name, PwRxClass* parent, PwRxConstructor constructor)
    : m_name(name ? name : u""), m_parent(parent), m_constructor(constructor) {}

PwRxClass::~PwRxClass() = default;

bool PwRxClass::isDerivedFrom(const PwRxClass* base) const {
    return isDerivedFrom(this, base);
}

bool PwRxClass::isDerivedFrom(const PwRxClass* cls, const PwRxClass* base) {
    if (base == nullptr) return false;
    for (const PwRxClass* current = cls; current != nullptr; current = current->m_parent) {
        if (current == base) return true;
    }
    return false;
}
