// Proxies: objects and entities of classes this process doesn't have. A proxy keeps the
// data of the missing class untouched, so that writing the drawing again loses nothing.
//
//   PwDbObject* object = nullptr;
//   pwdbOpenObject(object, id, PwDb::OpenForRead);
//   if (auto* proxy = PwDbProxyObject::cast(object)) {
//       wstring missing = proxy->proxiedClassName();
//   }
//
// A proxy reads the data of the nearest class it knows (PwDbObject, or PwDbEntity for a
// proxy entity) and keeps every further item as it came; it writes them back in the same
// order. It can do so only from a filer whose items it can take over (PwDbMemoryFiler), as
// the readers of stored drawings give it.
#pragma once

#include <vector>

#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbMemoryFiler.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>

/// What a proxy keeps of the class it stands for.
struct PwDbProxiedData {
    /// The missing class and its bases, most derived first, as the drawing names them.
    std::vector<wstring> classChain;
    /// The items of the data beyond the part the proxy's own base reads.
    PwDbMemoryFiler rest;

    Plotwright::ErrorStatus takeRest(PwDbPlwFiler* filer);
};

/// What proxy objects and proxy entities share, over the known base class they read.
template <class Base>
class PwDbProxyOf : public Base {
  public:
    /// The name of the class the proxy stands for; "" when it was never set.
    virtual const char16_t* proxiedClassName() const {
        return m_data.classChain.empty() ? u"" : m_data.classChain.front().c_str();
    }
    const std::vector<wstring>& proxiedClassChain() const { return m_data.classChain; }
    void setProxiedClassChain(std::vector<wstring> chain) { m_data.classChain = std::move(chain); }
    /// The kept items beyond the part of the known base class.
    const PwDbMemoryFiler& proxiedData() const { return m_data.rest; }

    Plotwright::ErrorStatus plwInFields(PwDbPlwFiler* filer) override {
        if (auto status = Base::plwInFields(filer)) return status;
        return m_data.takeRest(filer);
    }
    Plotwright::ErrorStatus plwOutFields(PwDbPlwFiler* filer) const override {
        if (auto status = Base::plwOutFields(filer)) return status;
        return m_data.rest.copyTo(*filer, Base::database());
    }

  private:
    PwDbProxiedData m_data;
};

/// An object of a class this process lacks.
class PwDbProxyObject : public PwDbProxyOf<PwDbObject> {
    PWRX_DECLARE_MEMBERS(PwDbProxyObject);
};

/// An entity of a class this process lacks; its layer and colour are understood.
class PwDbProxyEntity : public PwDbProxyOf<PwDbEntity> {
    PWRX_DECLARE_MEMBERS(PwDbProxyEntity);
};
