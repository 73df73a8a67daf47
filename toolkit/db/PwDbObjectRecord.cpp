// Objects to records and back; unknown classes become proxies here.
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>

#include <algorithm>
#include <memory>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>
#include "toolkit/db/PwDbObjectMaking.h"

namespace {

bool Names(const std::vector<wstring>& chain, const char16_t* name) {
    return std::find(chain.begin(), chain.end(), name) != chain.end();
}

}  // namespace

std::vector<wstring> pwdbClassChainOf(const PwDbObject& object) {
    if (const auto* proxy = PwDbProxyObject::cast(&object)) return proxy->proxiedClassChain();
    if (const auto* proxy = PwDbProxyEntity::cast(&object)) return proxy->proxiedClassChain();
    std::vector<wstring> chain;
    for (const PwRxClass* cls = object.runtimeClass(); cls != nullptr; cls = cls->myParent()) {
        chain.emplace_back(cls->name());
        if (cls == PwDbObject::desc()) break;
    }
    return chain;
}

PwRxClass* pwdbClassForChain(const std::vector<wstring>& chain) {
    return chain.empty() ? nullptr : pwrxFindClass(chain.front().c_str());
}

// The object to read a record into: of its own class when this process can make one, else a
// proxy of the right kind.
PwDbObject* pwdbMakeObjectForChain(const std::vector<wstring>& chain, PwRxClass* cls) {
    if (cls != nullptr) {
        PwRxObject* made = cls->create();
        if (PwDbObject* object = PwDbObject::cast(made)) return object;
        delete made;
    }
    if (Names(chain, u"PwDbEntity")) {
        auto* proxy = new PwDbProxyEntity;
        proxy->setProxiedClassChain(chain);
        return proxy;
    }
    auto* proxy = new PwDbProxyObject;
    proxy->setProxiedClassChain(chain);
    return proxy;
}

PwDbObject* pwdbMakeObjectLearning(const std::vector<wstring>& chain, PwDbChainClass& learnt) {
    if (!learnt.known) {
        learnt.cls = pwdbClassForChain(chain);
        PwDbObject* made = pwdbMakeObjectForChain(chain, learnt.cls);
        learnt.proxies =
            PwDbProxyObject::cast(made) != nullptr || PwDbProxyEntity::cast(made) != nullptr;
        learnt.known = true;
        return made;
    }
    if (!learnt.proxies) return PwDbObject::cast(learnt.cls->create());
    return pwdbMakeObjectForChain(chain, learnt.cls);
}

Plotwright::ErrorStatus pwdbRecordObject(const PwDbObject& object, PwDbObjectRecord& record) {
    PwDbMemoryFiler filer(object.database());
    if (auto status = object.plwOutFields(&filer)) return status;
    record.classChain = pwdbClassChainOf(object);
    record.handle = object.handle();
    record.erased = object.isErased();
    record.data = filer.items();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus pwdbObjectFromRecordLearning(const PwDbObjectRecord& record,
                                                     PwDbDatabase* database, PwDbChainClass& learnt,
                                                     PwDbObject*& object) {
    object = nullptr;
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    if (record.classChain.empty() || !Names(record.classChain, u"PwDbObject")) {
        return Plotwright::StatusFilerError;
    }
    std::unique_ptr<PwDbObject> made(pwdbMakeObjectLearning(record.classChain, learnt));
    if (made == nullptr) return Plotwright::StatusFilerError;
    PwDbMemoryFiler filer(database);
    for (const PwDbMemoryFiler::Item& item : record.data) filer.append(item);
    if (auto status = made->plwInFields(&filer)) return status;
    // Data left over means the record and the class disagree on the layout.
    if (filer.remaining() != 0) return Plotwright::StatusFilerError;
    if (auto status = database->addPwDbObjectWithHandle(made.get(), record.handle)) return status;
    object = made.release();
    if (record.erased) object->erase();
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus pwdbObjectFromRecord(const PwDbObjectRecord& record, PwDbDatabase* database,
                                             PwDbObject*& object) {
    PwDbChainClass learnt;
    return pwdbObjectFromRecordLearning(record, database, learnt, object);
}
