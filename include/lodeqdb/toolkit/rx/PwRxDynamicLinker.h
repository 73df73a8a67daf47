// PwRxDynamicLinker: the registry's entry "DynamicLinker", which knows the product's locale,
// loads modules by name and finds the functions of the services they register.
//
//   PwRxDynamicLinker* linker = pwrxDynamicLinker();
//   linker->setProductLocale(PwLocale::fromTag(u"de-DE"));
//   int localeId = linker->productLocale();
//
//   if (linker->loadModule(u"PwXopen.qmx", false, false)) {
//       using Open = Plotwright::ErrorStatus (*)(PwArray<PwDbObjectId>, bool);
//       auto open = reinterpret_cast<Open>(
//           linker->getSymbolAddress(u"PlotwrightXopen", "pwdbOpenXrefFile"));
//   }
//
// The module functions are those of PwRxModules.h; the linker is their object form.
#pragma once

#include <atomic>

#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/toolkit/pal/PwLocale.h>
#include <lodeqdb/toolkit/rx/PwRxObject.h>

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

    /// Loads and initializes the module `moduleName`, exactly as pwrxLoadModule does (see
    /// PwRxModules.h for where it is looked for); true when it is loaded afterwards.
    /// `printIt` and `asCommand` change nothing: the toolkit never prints.
    bool loadModule(const char16_t* moduleName, bool printIt, bool asCommand);
    /// Uninitializes and unloads the module, as pwrxUnloadModule does; false when it isn't
    /// loaded.
    bool unloadModule(const char16_t* moduleName);
    /// The address of the function `symbol` exported by the module that registered
    /// `serviceName`; null for an unknown service, a missing symbol or a null argument.
    void* getSymbolAddress(const char16_t* serviceName, const char* symbol) const;
    /// The system handle of the loaded module `moduleName`; null when it is not loaded.
    LodeUtil::ModuleHandle moduleHandle(const char16_t* moduleName) const;

  private:
    std::atomic<int> m_productLocale;
};

/// The key under which the system registry holds the linker.
inline constexpr char16_t kPwRxDynamicLinkerKey[] = u"DynamicLinker";

/// The system registry's linker: its entry "DynamicLinker", taken as a PwRxDynamicLinker only
/// when its class derives from that class; null otherwise (a registry that lacks it).
PwRxDynamicLinker* pwrxDynamicLinker();

