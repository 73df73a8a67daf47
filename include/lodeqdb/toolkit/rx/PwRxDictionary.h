// PwRxDictionary: a thread-safe map from names to run-time objects, the shape of the system
// registry and of the class dictionary.
//
//   PwRxObject* linker = pwrxSysRegistry()->at(u"DynamicLinker");
#pragma once

#include <map>
#include <mutex>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/rx/PwRxObject.h>

/// Holds pointers it does not own: an entry must stay alive while it is registered.
class PwRxDictionary : public PwRxObject {
    PWRX_DECLARE_MEMBERS(PwRxDictionary);

  public:
    PwRxDictionary() = default;
    ~PwRxDictionary() override;

    /// The entry under `key`, or null (also for a null key).
    PwRxObject* at(const char16_t* key) const;
    /// Puts `value` under `key` and gives the entry it replaces, or null.
    PwRxObject* atPut(const char16_t* key, PwRxObject* value);
    /// Puts `value` under `key` unless an entry is there; gives the entry that stays.
    PwRxObject* putIfAbsent(const char16_t* key, PwRxObject* value);
    /// Removes the entry under `key` and gives it, or null.
    PwRxObject* remove(const char16_t* key);
    bool has(const char16_t* key) const { return at(key) != nullptr; }
    size_t numEntries() const;

  private:
    mutable std::mutex m_mutex;
    std::map<wstring, PwRxObject*> m_entries;
};

/// The process's system registry. It holds at least "DynamicLinker" (a PwRxDynamicLinker)
/// and "ClassDictionary" (a PwRxDictionary of every registered PwRxClass by name).
PwRxDictionary* pwrxSysRegistry();

/// The class dictionary of the system registry.
PwRxDictionary* pwrxClassDictionary();
