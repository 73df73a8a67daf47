// Proxies keep the items of a missing class and write them back unchanged.
#include "toolkit/db/PwDbProxyObject.h"

PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbProxyObject, PwDbObject, u"PwDbProxyObject");
PWRX_DEFINE_DYNAMIC_MEMBERS(PwDbProxyEntity, PwDbEntity, u"PwDbProxyEntity");

Plotwright::ErrorStatus PwDbProxiedData::takeRest(PwDbPlwFiler* filer) {
    auto* source = dynamic_cast<PwDbMemoryFiler*>(filer);
    if (source == nullptr) return Plotwright::StatusNotApplicable;
    PwDbMemoryFiler kept(source->database());
    kept.takeRemaining(*source);
    rest = std::move(kept);
    return Plotwright::StatusOk;
}

namespace {

const char16_t* FirstName(const std::vector<wstring>& chain) {
    return chain.empty() ? u"" : chain.front().c_str();
}

}  // namespace

PwDbProxyObject::PwDbProxyObject() = default;

PwDbProxyObject::~PwDbProxyObject() = default;

const char16_t* PwDbProxyObject::proxiedClassName() const {
    return FirstName(m_data.classChain);
}

Plotwright::ErrorStatus PwDbProxyObject::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbObject::plwInFields(filer)) return status;
    return m_data.takeRest(filer);
}

Plotwright::ErrorStatus PwDbProxyObject::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbObject::plwOutFields(filer)) return status;
    return m_data.rest.copyTo(*filer);
}

PwDbProxyEntity::PwDbProxyEntity() = default;

PwDbProxyEntity::~PwDbProxyEntity() = default;

const char16_t* PwDbProxyEntity::proxiedClassName() const {
    return FirstName(m_data.classChain);
}

Plotwright::ErrorStatus PwDbProxyEntity::plwInFields(PwDbPlwFiler* filer) {
    if (auto status = PwDbEntity::plwInFields(filer)) return status;
    return m_data.takeRest(filer);
}

Plotwright::ErrorStatus PwDbProxyEntity::plwOutFields(PwDbPlwFiler* filer) const {
    if (auto status = PwDbEntity::plwOutFields(filer)) return status;
    return m_data.rest.copyTo(*filer);
}
