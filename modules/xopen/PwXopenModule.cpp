// The module "PwXopen.qmx": opens references again from disk, on behalf of callers that bind
// it by name (the service "PlotwrightXopen").
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

extern "C" {

bool pwrxModuleInitialize() {
    return pwrxRegisterService(u"PlotwrightXopen");
}

/// Loads again from disk the references whose blocks are `blockIds`, in their host drawings
/// (see pwdbReloadXrefs). The array is the caller's gift: it is taken by value and freed here
/// when the call ends. `quiet` is accepted for callers that pass it; nothing is printed
/// either way.
Plotwright::ErrorStatus pwdbOpenXrefFile(PwArray<PwDbObjectId> blockIds, bool /*quiet*/) {
    return pwdbReloadXrefs(blockIds);
}

}  // extern "C"
