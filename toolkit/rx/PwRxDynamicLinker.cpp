// The dynamic linker entry of the system registry: the product's locale, and modules.
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>

#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>

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

bool PwRxDynamicLinker::loadModule(const char16_t* moduleName, bool printIt, bool asCommand) {
    return pwrxLoadModule(moduleName, printIt, asCommand);
}

bool PwRxDynamicLinker::unloadModule(const char16_t* moduleName) {
    return pwrxUnloadModule(moduleName);
}

void* PwRxDynamicLinker::getSymbolAddress(const char16_t* serviceName, const char* symbol) const {
    return pwrxServiceSymbol(serviceName, symbol);
}

LodeUtil::ModuleHandle PwRxDynamicLinker::moduleHandle(const char16_t* moduleName) const {
    return pwrxModuleHandle(moduleName);
}

PwRxDynamicLinker* pwrxDynamicLinker() {
    return PwRxDynamicLinker::cast(pwrxSysRegistry()->at(kPwRxDynamicLinkerKey));
}
