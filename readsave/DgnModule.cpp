// Binding the DGN module's entries, and asking it whether a file is a DGN file.
#include "readsave/DgnBinding.h"
#include <lodeqdb/readsave/DgnModule.h>

#include <atomic>

#include "platform/FaultGuard.h"
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>

namespace LodeQDBUtil {

namespace {

std::atomic<size_t> g_lookups{0};

std::atomic<PwDgnIsDgnFileEntry> g_isDgnFile{nullptr};

}  // namespace

void* BindDgnEntryPoint(const char* name) {
    ++g_lookups;
    LodeUtil::ModuleHandle module = pwrxModuleHandle(kPwDgnModuleName);
    if (module == nullptr) {
        PwRxDynamicLinker* linker = pwrxDynamicLinker();
        if (linker == nullptr || !linker->loadModule(kPwDgnModuleName, false, true))
            throw lode::InkstoneError();
        module = pwrxModuleHandle(kPwDgnModuleName);
        if (module == nullptr) throw lode::InkstoneError();
    }
    // Binding pins the module: the library keeps the entry for the rest of the process.
    void* address = pwrxBindModuleEntry(kPwDgnModuleName, name);
    if (address == nullptr) throw lode::InkstoneError();
    return address;
}

bool IsDGNFile(const wstring& path) {
    bool answer = false;
    const PwDgnIsDgnFileEntry probe = BindDgnEntryPointOnce(g_isDgnFile, kPwDgnIsDgnFileEntryName);
    // Made outside the guard: a fault jumps past destructors, and the text would leak.
    const PwString text(path.c_str(), path.size());
    RunGuarded([&] { answer = probe(text); });
    return answer;
}

namespace detail {
size_t DgnEntryLookups() {
    return g_lookups;
}
}  // namespace detail

}  // namespace LodeQDBUtil
