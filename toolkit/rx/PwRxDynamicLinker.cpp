// The dynamic linker entry of the system registry: for now, the product's locale.
#include "toolkit/rx/PwRxDynamicLinker.h"

#include "toolkit/rx/PwRxClass.h"

PWRX_DEFINE_MEMBERS(PwRxDynamicLinker, PwRxObject, u"PwRxDynamicLinker");

namespace {
// The environment is read when the locale is first asked for, not when the registry is
// made, so that a host may still set its environment early in main().
constexpr int kNotYetKnown = -1;
}  // namespace

PwRxDynamicLinker::PwRxDynamicLinker() : m_productLocale(kNotYetKnown) {}

PwRxDynamicLinker::~PwRxDynamicLinker() = default;

PwLocale PwRxDynamicLinker::productLocale() const {
    int id = m_productLocale.load();
    if (id == kNotYetKnown) id = PwLocale().id();
    return PwLocale(id);
}

void PwRxDynamicLinker::setProductLocale(const PwLocale& locale) {
    m_productLocale = locale.id();
}
