// Named run-time objects, and the system registry built from them.
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>

#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>

PWRX_DEFINE_MEMBERS(PwRxDictionary, PwRxObject, u"PwRxDictionary");

PwRxDictionary::~PwRxDictionary() = default;

PwRxObject* PwRxDictionary::at(const char16_t* key) const {
    if (key == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_entries.find(key);
    return found == m_entries.end() ? nullptr : found->second;
}

PwRxObject* PwRxDictionary::atPut(const char16_t* key, PwRxObject* value) {
    if (key == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(m_mutex);
    PwRxObject*& slot = m_entries[key];
    PwRxObject* previous = slot;
    slot = value;
    if (value == nullptr) m_entries.erase(key);
    return previous;
}

PwRxObject* PwRxDictionary::putIfAbsent(const char16_t* key, PwRxObject* value) {
    if (key == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto [entry, inserted] = m_entries.emplace(key, value);
    return entry->second;
}

PwRxObject* PwRxDictionary::remove(const char16_t* key) {
    if (key == nullptr) return nullptr;
    std::lock_guard<std::mutex> lock(m_mutex);
    const auto found = m_entries.find(key);
    if (found == m_entries.end()) return nullptr;
    PwRxObject* removed = found->second;
    m_entries.erase(found);
    return removed;
}

size_t PwRxDictionary::numEntries() const {
    std::lock_guard<std::mutex> lock(m_mutex);
    return m_entries.size();
}

namespace {

// The registry and its standard entries are never destroyed: modules may still look them
// up while the process ends, after function-level statics are gone.
struct SystemRegistry {
    PwRxDictionary registry;
    PwRxDictionary classes;
    PwRxDynamicLinker linker;

    SystemRegistry() {
        registry.atPut(u"ClassDictionary", &classes);
        registry.atPut(u"DynamicLinker", &linker);
    }
};

SystemRegistry& systemRegistry() {
    static SystemRegistry* const instance = new SystemRegistry;
    return *instance;
}

}  // namespace

PwRxDictionary* pwrxSysRegistry() {
    return &systemRegistry().registry;
}

PwRxDictionary* pwrxClassDictionary() {
    return &systemRegistry().classes;
}
