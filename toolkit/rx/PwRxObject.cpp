// The root class, class records and their registration.
#include <lodeqdb/toolkit/rx/PwRxObject.h>

#include <memory>
#include <mutex>
#include <vector>

#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>

namespace {

// Class records live as long as the process: objects of a class may outlive any one module
// that uses them, and the class dictionary only points at the records.
struct ClassRecords {
    std::mutex mutex;
    std::vector<std::unique_ptr<PwRxClass>> records;
};

ClassRecords& classRecords() {
    static ClassRecords* const records = new ClassRecords;
    return *records;
}

}  // namespace

PwRxClass* pwrxRegisterClass(const char16_t* name, PwRxClass* parent, PwRxConstructor constructor) {
    ClassRecords& all = classRecords();
    std::lock_guard<std::mutex> lock(all.mutex);
    if (PwRxClass* existing = pwrxFindClass(name)) return existing;
    all.records.push_back(std::make_unique<PwRxClass>(name, parent, constructor));
    PwRxClass* record = all.records.back().get();
    pwrxClassDictionary()->atPut(name, record);
    return record;
}

PwRxClass* pwrxFindClass(const char16_t* name) {
    return static_cast<PwRxClass*>(pwrxClassDictionary()->at(name));
}

PwRxObject::~PwRxObject() = default;

PwRxClass* PwRxObject::desc() {
    static PwRxClass* const record = pwrxRegisterClass(u"PwRxObject", nullptr);
    return record;
}

PwRxClass* PwRxObject::runtimeClass() const {
    return PwRxObject::desc();
}

bool PwRxObject::isKindOf(const PwRxClass* cls) const {
    return PwRxClass::isDerivedFrom(runtimeClass(), cls);
}
