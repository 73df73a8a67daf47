// Loading toolkit modules by file name, and the registry of the services they provide.
#include <lodeqdb/toolkit/rx/PwRxModules.h>

#include <map>
#include <mutex>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Path.h>

namespace {

enum class ModuleState { Initializing, Loaded, Uninitializing };

struct ModuleRecord {
    LodeUtil::ModuleHandle handle = nullptr;
    ModuleState state = ModuleState::Initializing;
    // Someone keeps addresses inside the module: it stays until the process ends.
    bool pinned = false;
};

struct ModuleRegistry {
    // Recursive, because a module's initialization runs under the lock and registers its
    // services, and may load other modules, on the same thread.
    std::recursive_mutex mutex;
    // By the module's normalised absolute path, so that every spelling of a path that the
    // text alone can tell apart finds the same record.
    std::map<wstring, ModuleRecord> modules;
    // Other paths that reached a loaded file (through a link, say), to the path it is kept by.
    std::map<wstring, wstring> aliases;
    // Service name to the path of the module that registered it.
    std::map<wstring, wstring> services;

    using Entry = std::map<wstring, ModuleRecord>::iterator;
    // The module loaded from `path` or known under it as an alias; modules.end() for none.
    Entry find(const wstring& path) {
        const auto alias = aliases.find(path);
        return modules.find(alias == aliases.end() ? path : alias->second);
    }
};

// Never destroyed: modules that stay loaded at the end of the process may still call in from
// their own static destructors, after the toolkit's function-level statics are gone.
ModuleRegistry& registry() {
    static ModuleRegistry* const instance = new ModuleRegistry;
    return *instance;
}

// The path of the module whose pwrxModuleInitialize runs on this thread, for
// pwrxRegisterService; null outside an initialization.
thread_local const wstring* t_initializingModule = nullptr;
thread_local wstring t_loadError;

// Any object of pwdb tells the system which file holds the library.
const char kLibraryAnchor = 0;

wstring findModuleFolder() {
    const LodeUtil::ModuleHandle library = LodeUtil::Module::Containing(&kLibraryAnchor);
    const wstring file = LodeUtil::Module::FileName(library);
    const wstring folder = LodeUtil::Path::GetDirectoryName(file);
    // The loader reports the path it was given, which may be relative or hold "..".
    return folder.empty() ? wstring() : LodeUtil::AbsoluteFilePath(folder).FullPath();
}

// Empty when the name can't name a module: null, empty, or relative with no module folder.
wstring modulePath(const char16_t* moduleName) {
    if (moduleName == nullptr || moduleName[0] == u'\0') return {};
    const wstring name(moduleName);
    if (LodeUtil::Path::IsPathRooted(name)) return LodeUtil::AbsoluteFilePath(name).FullPath();
    const wstring folder = pwrxModuleFolder();
    if (folder.empty()) return {};
    return LodeUtil::AbsoluteFilePath(LodeUtil::CombineRelative(folder, name)).FullPath();
}

Plotwright::ErrorStatus failLoad(Plotwright::ErrorStatus status, const wstring& reason) {
    t_loadError = reason;
    return status;
}

Plotwright::ErrorStatus succeedLoad() {
    t_loadError.clear();
    return Plotwright::StatusOk;
}

constexpr char16_t kBusyReason[] = u": the module is being initialized or uninitialized";

// The address of `symbol` defined by `module` itself. The system's lookup also searches the
// libraries a module uses, and one of them may be another module with the same entry points.
void* ownSymbol(LodeUtil::ModuleHandle module, const char* symbol) {
    void* const address = LodeUtil::Module::Symbol(module, symbol);
    if (address == nullptr || LodeUtil::Module::Containing(address) != module) return nullptr;
    return address;
}

// The caller holds the registry's lock.
ModuleRegistry::Entry findByHandle(ModuleRegistry& modules, LodeUtil::ModuleHandle handle) {
    for (auto entry = modules.modules.begin(); entry != modules.modules.end(); ++entry) {
        if (entry->second.handle == handle) return entry;
    }
    return modules.modules.end();
}

// Forgets the services and other paths of the module kept under `path`. The caller holds the
// registry's lock.
void dropReferences(ModuleRegistry& modules, const wstring& path) {
    const auto isThatModule = [&path](const auto& entry) { return entry.second == path; };
    std::erase_if(modules.services, isThatModule);
    std::erase_if(modules.aliases, isThatModule);
}

// Runs the freshly loaded module's initialization and keeps it, or unloads it again. The
// caller holds the registry's lock.
Plotwright::ErrorStatus initializeModule(ModuleRegistry& modules, const wstring& path,
                                         LodeUtil::ModuleHandle handle) {
    const auto initialize = reinterpret_cast<PwrxModuleInitializeFunction>(
        ownSymbol(handle, kPwrxModuleInitializeSymbol));
    if (initialize == nullptr) {
        LodeUtil::Module::Free(handle);
        return failLoad(Plotwright::StatusModuleNotFound,
                        path + u": no pwrxModuleInitialize, not a module of the toolkit");
    }
    modules.modules[path] = ModuleRecord{handle, ModuleState::Initializing};
    const wstring* const outer = t_initializingModule;
    t_initializingModule = &path;
    bool ready = false;
    try {
        ready = initialize();
    } catch (...) {
        // The toolkit reports failures as statuses; a module's exception ends its load.
        ready = false;
    }
    t_initializingModule = outer;
    if (!ready) {
        dropReferences(modules, path);
        modules.modules.erase(path);
        LodeUtil::Module::Free(handle);
        return failLoad(Plotwright::StatusModuleNotFound, path + u": initialization failed");
    }
    modules.modules[path].state = ModuleState::Loaded;
    return succeedLoad();
}

}  // namespace

bool pwrxLoadModule(const char16_t* moduleName, bool /*printIt*/, bool /*asCommand*/) {
    return pwrxLoadModuleStatus(moduleName) == Plotwright::StatusOk;
}

Plotwright::ErrorStatus pwrxLoadModuleStatus(const char16_t* moduleName) {
    if (moduleName == nullptr || moduleName[0] == u'\0') {
        return failLoad(Plotwright::StatusInvalidInput, u"no module name");
    }
    const wstring path = modulePath(moduleName);
    if (path.empty()) {
        return failLoad(Plotwright::StatusModuleNotFound,
                        wstring(moduleName) + u": the module folder is unknown");
    }
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    if (const auto found = modules.find(path); found != modules.modules.end()) {
        if (found->second.state == ModuleState::Loaded) return succeedLoad();
        return failLoad(Plotwright::StatusModuleNotFound, path + kBusyReason);
    }
    if (!LodeUtil::File::Exists(path)) {
        return failLoad(Plotwright::StatusFileNotFound, path + u": no such file");
    }
    const LodeUtil::ModuleHandle handle = LodeUtil::Module::Load(path);
    if (handle == nullptr) {
        return failLoad(Plotwright::StatusModuleNotFound,
                        path + u": " + LodeUtil::Module::LastError());
    }
    // Another path to a file that is loaded already (a link, say) gives the same handle.
    if (const auto same = findByHandle(modules, handle); same != modules.modules.end()) {
        LodeUtil::Module::Free(handle);
        if (same->second.state != ModuleState::Loaded) {
            return failLoad(Plotwright::StatusModuleNotFound, path + kBusyReason);
        }
        modules.aliases.emplace(path, same->first);
        return succeedLoad();
    }
    return initializeModule(modules, path, handle);
}

wstring pwrxModuleLoadError() {
    return t_loadError;
}

bool pwrxUnloadModule(const char16_t* moduleName) {
    const wstring path = modulePath(moduleName);
    if (path.empty()) return false;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    const auto found = modules.find(path);
    if (found == modules.modules.end() || found->second.state != ModuleState::Loaded ||
        found->second.pinned) {
        return false;
    }
    // Marked so that the module's uninitialization can neither load nor unload it again.
    found->second.state = ModuleState::Uninitializing;
    const wstring keptUnder = found->first;
    const LodeUtil::ModuleHandle handle = found->second.handle;
    const auto uninitialize = reinterpret_cast<PwrxModuleUninitializeFunction>(
        ownSymbol(handle, kPwrxModuleUninitializeSymbol));
    if (uninitialize != nullptr) {
        try {
            uninitialize();
        } catch (...) {
            // The module goes regardless; its exception has nowhere to go.
        }
    }
    dropReferences(modules, keptUnder);
    modules.modules.erase(keptUnder);
    LodeUtil::Module::Free(handle);
    return true;
}

bool pwrxPinModule(const char16_t* moduleName) {
    const wstring path = modulePath(moduleName);
    if (path.empty()) return false;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    const auto found = modules.find(path);
    if (found == modules.modules.end() || found->second.state != ModuleState::Loaded) return false;
    found->second.pinned = true;
    return true;
}

void* pwrxBindModuleEntry(const char16_t* moduleName, const char* entryName) {
    if (entryName == nullptr) return nullptr;
    const wstring path = modulePath(moduleName);
    if (path.empty()) return nullptr;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    const auto found = modules.find(path);
    if (found == modules.modules.end() || found->second.state != ModuleState::Loaded)
        return nullptr;
    void* address = ownSymbol(found->second.handle, entryName);
    if (address != nullptr) found->second.pinned = true;
    return address;
}

bool pwrxIsModuleLoaded(const char16_t* moduleName) {
    return pwrxModuleHandle(moduleName) != nullptr;
}

bool pwrxRegisterService(const char16_t* serviceName) {
    if (serviceName == nullptr || serviceName[0] == u'\0') return false;
    const wstring* const module = t_initializingModule;
    if (module == nullptr) return false;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    const auto [entry, inserted] = modules.services.emplace(serviceName, *module);
    return inserted || entry->second == *module;
}

bool pwrxServiceIsRegistered(const char16_t* serviceName) {
    if (serviceName == nullptr) return false;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    return modules.services.count(serviceName) != 0;
}

wstring pwrxModuleFolder() {
    // Worked out once: the library does not move while it is loaded. Never destroyed, for
    // the same reason as the registry.
    static const wstring* const folder = new wstring(findModuleFolder());
    return *folder;
}

LodeUtil::ModuleHandle pwrxModuleHandle(const char16_t* moduleName) {
    const wstring path = modulePath(moduleName);
    if (path.empty()) return nullptr;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    const auto found = modules.find(path);
    if (found == modules.modules.end() || found->second.state != ModuleState::Loaded) {
        return nullptr;
    }
    return found->second.handle;
}

void* pwrxServiceSymbol(const char16_t* serviceName, const char* symbol) {
    if (serviceName == nullptr || symbol == nullptr || symbol[0] == '\0') return nullptr;
    ModuleRegistry& modules = registry();
    std::lock_guard<std::recursive_mutex> lock(modules.mutex);
    const auto service = modules.services.find(serviceName);
    if (service == modules.services.end()) return nullptr;
    const auto module = modules.modules.find(service->second);
    if (module == modules.modules.end()) return nullptr;
    return ownSymbol(module->second.handle, symbol);
}
