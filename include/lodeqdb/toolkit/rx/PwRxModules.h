// Run-time modules: pwrxLoadModule and its companions load toolkit modules by file name, and
// pwrxRegisterService lets a module say which services it provides.
//
// The loading side:
//   if (pwrxLoadModule(u"PwDgnIO.qdb", false, false) && pwrxServiceIsRegistered(u"PwDgnIO")) {
//       // Binding pins the module: the address stays callable for the rest of the process.
//       void* load = pwrxBindModuleEntry(u"PwDgnIO.qdb", "DGNLoadFile");
//   }
//
// The module's side (a shared object linked against pwdb):
//   extern "C" bool pwrxModuleInitialize() { return pwrxRegisterService(u"PwDgnIO"); }
//   extern "C" void pwrxModuleUninitialize() { /* optional */ }
//
// A module is found in the toolkit's module folder, the folder of the file that holds the pwdb
// library (lib/ in the build tree and after installing), under exactly the name given. Loading
// runs the module's pwrxModuleInitialize once; a module without it, or whose initialization
// answers false, is unloaded again. Modules still loaded when the process ends stay loaded:
// the system takes them down, the toolkit never unloads them from a static destructor.
//
// Every function here may be called from any thread. Loads and unloads run one at a time, and
// a module's initialization and uninitialization run inside them: they may load and unload
// other modules on their own thread, but must not wait for another thread that does.
#pragma once

#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

/// The name under which a module exports its initialization, `extern "C" bool ()`.
inline constexpr char kPwrxModuleInitializeSymbol[] = "pwrxModuleInitialize";
/// The name under which a module may export its uninitialization, `extern "C" void ()`.
inline constexpr char kPwrxModuleUninitializeSymbol[] = "pwrxModuleUninitialize";

/// The type of a module's pwrxModuleInitialize: registers the module's services and answers
/// whether the module is ready for use.
using PwrxModuleInitializeFunction = bool (*)();
/// The type of a module's pwrxModuleUninitialize: runs just before the module is unloaded,
/// while its services are still registered.
using PwrxModuleUninitializeFunction = void (*)();

/// Loads the module with the file name `moduleName` from pwrxModuleFolder(), or from the path
/// itself when `moduleName` is rooted (a relative name with folders is taken below the module
/// folder), and initializes it. True when the module is loaded afterwards: a module loaded
/// already, under this name or another path to the same file, is not initialized again.
/// False for a null or empty name, a missing file, a file that is no loadable module, a
/// module without pwrxModuleInitialize or one whose initialization answers false; such a
/// module is not left loaded. Also false when the module is itself in the middle of being
/// initialized or uninitialized (a module that loads itself).
/// `printIt` is accepted for callers that ask for a message: the toolkit never prints, so it
/// changes nothing. `asCommand` has no meaning here and changes nothing either.
bool pwrxLoadModule(const char16_t* moduleName, bool printIt = false, bool asCommand = false);

/// As pwrxLoadModule, with the reason for a failure: StatusInvalidInput for a null or empty
/// name, StatusFileNotFound when no file is there, StatusModuleNotFound for a file that does
/// not load as a module of the toolkit (see pwrxModuleLoadError for the system's words).
Plotwright::ErrorStatus pwrxLoadModuleStatus(const char16_t* moduleName);

/// Why the calling thread's last failed load failed, in words for a log; empty when that
/// thread's last load succeeded or it loaded nothing yet.
wstring pwrxModuleLoadError();

/// Runs the module's pwrxModuleUninitialize (when it has one), drops the services it
/// registered and unloads it. False when no module of that name (resolved as pwrxLoadModule
/// does) is loaded, when it is being initialized or uninitialized right now, or when it is
/// pinned: then nothing happens.
bool pwrxUnloadModule(const char16_t* moduleName);

/// Keeps the loaded module `moduleName` in the process until it ends: every later unload
/// request is refused. Whoever keeps addresses of a module's functions or data pins it first,
/// so that no kept address ever points into an unloaded module. False when no module of that
/// name is loaded (or it is still initializing).
bool pwrxPinModule(const char16_t* moduleName);

/// The address of the entry `entryName` that the loaded module `moduleName` exports: the one
/// way the toolkit and the library bind a module's functions. The module is pinned before the
/// address is handed out, so a bound entry stays callable for the rest of the process. Null
/// when the module isn't loaded (or still initializing) or lacks the entry; then nothing is
/// pinned.
void* pwrxBindModuleEntry(const char16_t* moduleName, const char* entryName);

/// True when the module of that name (resolved as pwrxLoadModule does, or another path that
/// pwrxLoadModule found to reach the same file) is loaded and initialized.
bool pwrxIsModuleLoaded(const char16_t* moduleName);

/// Registers the service `serviceName` as provided by the module whose pwrxModuleInitialize
/// runs on the calling thread; a module calls it from there. True when the service is bound
/// to that module (also when it was already). False for a null or empty name, when called
/// outside a module's initialization, and when another module holds the name: the first
/// module keeps it.
bool pwrxRegisterService(const char16_t* serviceName);

/// True when a loaded module (or one being initialized) has registered `serviceName`.
bool pwrxServiceIsRegistered(const char16_t* serviceName);

/// The folder modules are loaded from: that of the file holding the pwdb library, absolute
/// and without a trailing separator. Empty when the system can't tell, and then only rooted
/// module names load.
wstring pwrxModuleFolder();

/// The system handle of the loaded module `moduleName` (resolved as pwrxLoadModule does);
/// null when it is not loaded. The handle stays valid while the module stays loaded.
LodeUtil::ModuleHandle pwrxModuleHandle(const char16_t* moduleName);

/// The address of `symbol` exported by the module that registered `serviceName` itself (not
/// by a library that module uses); null for an unknown service, a missing symbol or a null
/// argument. The address stays valid while that module stays loaded.
void* pwrxServiceSymbol(const char16_t* serviceName, const char* symbol);
