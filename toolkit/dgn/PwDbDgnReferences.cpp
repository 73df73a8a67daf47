// Reading a design file's attachments through the DGN module: loaded on the first call, its
// entry bound once (binding pins the module, so the address stays callable).
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>

#include <atomic>

#include "toolkit/dgn/PwDgnIOEntryPoints.h"
#include <lodeqdb/toolkit/rx/PwRxModules.h>

namespace {

std::atomic<PwDgnGetFileReferencesEntry> g_getFileReferences{nullptr};

}  // namespace

Plotwright::ErrorStatus pwdbGetDgnFileReferences(const char16_t* fileName, const char16_t* unused,
                                                 PwArray<PwDbDgnRefFileData*>& references) {
    if (fileName == nullptr || fileName[0] == u'\0') return Plotwright::StatusInvalidInput;
    PwDgnGetFileReferencesEntry read = g_getFileReferences.load(std::memory_order_acquire);
    if (read == nullptr) {
        if (!pwrxIsModuleLoaded(kPwDgnModuleName) && !pwrxLoadModule(kPwDgnModuleName, false, true))
            return Plotwright::StatusModuleNotFound;
        read = reinterpret_cast<PwDgnGetFileReferencesEntry>(
            pwrxBindModuleEntry(kPwDgnModuleName, kPwDgnGetFileReferencesEntryName));
        if (read == nullptr) return Plotwright::StatusModuleNotFound;
        g_getFileReferences.store(read, std::memory_order_release);
    }
    return read(fileName, unused, references);
}
void pwdbDeleteDgnFileReferences(PwArray<PwDbDgnRefFileData*>& references) {
    for (size_t i = 0; i < references.length(); ++i) delete references[i];
    references.removeAll();
}
