// The public entry points of reference resolution.
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

#include <set>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/xref/PwDbXrefResolver.h"

Plotwright::ErrorStatus pwdbResolveCurrentXRefs(PwDbDatabase* database, bool /*useThreadEngine*/,
                                                bool doNewOnly) {
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    PwDbXrefResolver::resolveTree(*database, !doNewOnly);
    return Plotwright::StatusOk;
}

const char16_t* pwdbOriginalXrefFullPathFor(const PwDbDatabase* database) {
    if (database == nullptr) return u"";
    return PwDbXrefResolver::originalPath(*database).c_str();
}

PwDbDatabase* pwdbXrefHostFor(const PwDbDatabase* database) {
    return database != nullptr ? PwDbXrefResolver::loadedFor(*database) : nullptr;
}

Plotwright::ErrorStatus pwdbReloadXrefs(const PwArray<PwDbObjectId>& blockIds) {
    Plotwright::ErrorStatus first = Plotwright::StatusOk;
    std::set<PwDbDatabase*> hosts;
    for (size_t i = 0; i < blockIds.length(); ++i) {
        const PwDbObjectId id = blockIds[i];
        const Plotwright::ErrorStatus status = PwDbXrefResolver::prepareReload(id);
        if (status != Plotwright::StatusOk && first == Plotwright::StatusOk) first = status;
        if (id.isValid()) hosts.insert(&PwDbXrefResolver::hostOf(*id.database()));
    }
    for (PwDbDatabase* host : hosts) PwDbXrefResolver::resolveTree(*host, false);
    return first;
}
