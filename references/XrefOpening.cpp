// Reopening references from disk through the service of the reference module.
#include <lodeqdb/references/XrefOpening.h>

#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>

namespace pwdb {

namespace {

constexpr char16_t kService[] = u"PlotwrightXopen";
constexpr char16_t kModule[] = u"PwXopen.qmx";

// The service takes its array by value and disposes of it.
using OpenXrefFileFunction = Plotwright::ErrorStatus (*)(PwArray<PwDbObjectId>, bool);

}  // namespace

Plotwright::ErrorStatus OpenXrefFile(const PwDbObjectId& blockId, bool quiet) {
    if (blockId.isNull()) return Plotwright::StatusNullObjectId;
    PwArray<PwDbObjectId> ids(0, 8);
    ids.append(blockId);
    return OpenXrefFiles(ids, quiet);
}

Plotwright::ErrorStatus OpenXrefFiles(const PwArray<PwDbObjectId>& blockIds, bool quiet) {
    if (!pwrxServiceIsRegistered(kService)) {
        pwrxLoadModule(kModule, false, true);
        if (!pwrxServiceIsRegistered(kService)) return Plotwright::StatusXopenUnavailable;
    }
    PwRxDynamicLinker* linker = pwrxDynamicLinker();
    // Asked anew at every call; the module, once it handed out its function, stays loaded.
    auto open = linker != nullptr ? reinterpret_cast<OpenXrefFileFunction>(
                                        linker->getSymbolAddress(kService, "pwdbOpenXrefFile"))
                                  : nullptr;
    if (open == nullptr) return Plotwright::StatusXopenUnavailable;
    pwrxPinModule(kModule);
    PwArray<PwDbObjectId> copy(blockIds);
    return open(std::move(copy), quiet);
}

}  // namespace pwdb
