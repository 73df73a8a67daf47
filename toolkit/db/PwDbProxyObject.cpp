// Proxies keep the items of a missing class and write them back unchanged.
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbProxyObject, PwDbObject, u"PwDbProxyObject");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbProxyEntity, PwDbEntity, u"PwDbProxyEntity");

Plotwright::ErrorStatus PwDbProxiedData::takeRest(PwDbPlwFiler* filer) {
    auto* source = dynamic_cast<PwDbMemoryFiler*>(filer);
    if (source == nullptr) return Plotwright::StatusNotApplicable;
    // The kept items name no database: the one a proxy is read into may be a scratch
    // database that is gone by the time the proxy is written, so handles are resolved in
    // the proxy's own database when it is written.
    PwDbMemoryFiler kept;
    kept.takeRemaining(*source);
    rest = std::move(kept);
    return Plotwright::StatusOk;
}
