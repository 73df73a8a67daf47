// PwRxClass: the run-time record of one class: its name and its parent.
//
//   if (PwRxClass::isDerivedFrom(object->runtimeClass(), PwRxDictionary::desc())) { ... }
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/rx/PwRxObject.h>

class PwRxClass : public PwRxObject {
    PWRX_DECLARE_MEMBERS(PwRxClass);

  public:
    PwRxClass(const char16_t* name, PwRxClass* parent, PwRxConstructor constructor = nullptr);
    ~PwRxClass() override;

    /// The class's name as registered; never null.
    const char16_t* name() const { return m_name.c_str(); }
    /// The parent class; null for the root.
    PwRxClass* myParent() const { return m_parent; }

    /// A new object of this class, owned by the caller; null for a class that can't be made
    /// by name.
    PwRxObject* create() const { return m_constructor ? m_constructor() : nullptr; }

    /// True when this class is `base` or derives from it; false for a null `base`.
    bool isDerivedFrom(const PwRxClass* base) const;
    /// True when `cls` is `base` or derives from it; false when either is null.
    static bool isDerivedFrom(const PwRxClass* cls, const PwRxClass* base);

  private:
    wstring m_name;
    PwRxClass* m_parent;
    PwRxConstructor m_constructor;
};

/// The class record registered under `name`, or null.
PwRxClass* pwrxFindClass(const char16_t* name);
