// PwRxDynamicLinker: the registry's entry "DynamicLinker", which knows the product's locale
// (and, as the toolkit grows, loads modules by name and finds their services).
//
//   auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
//   linker->setProductLocale(PwLocale::fromTag(u"de-DE"));
//   int localeId = linker->productLocale();
#pragma once

#include <atomic>

#include "toolkit/pal/PwLocale.h"
#include "toolkit/rx/PwRxObject.h"

class PwRxDynamicLinker : public PwRxObject {
    PWRX_DECLARE_MEMBERS(PwRxDynamicLinker);

  public:
    PwRxDynamicLinker();
    ~PwRxDynamicLinker() override;

    /// The locale in which the product shows its texts: what the host set, or the locale
    /// of the process's environment.
    PwLocale productLocale() const;
    /// Makes `locale` the product's locale. Texts already loaded keep their language.
    void setProductLocale(const PwLocale& locale);

  private:
    std::atomic<int> m_productLocale;
};
