// Opening references again from disk, through the service "PlotwrightXopen" of the module
// "PwXopen.qmx", which is loaded on first use and bound by name at every call.
//
//   Plotwright::ErrorStatus status = pwdb::OpenXrefFile(referenceBlockId, false);
#pragma once

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

namespace pwdb {

/// Opens the reference of the block `blockId` again. StatusNullObjectId for the null id,
/// without loading anything; otherwise as OpenXrefFiles.
Plotwright::ErrorStatus OpenXrefFile(const PwDbObjectId& blockId, bool quiet);

/// Hands a copy of `blockIds` to the service's function "pwdbOpenXrefFile" and gives its
/// status; StatusXopenUnavailable when the module can't be loaded, doesn't register the
/// service, or lacks the function. `quiet` goes to the service unchanged.
Plotwright::ErrorStatus OpenXrefFiles(const PwArray<PwDbObjectId>& blockIds, bool quiet);

}  // namespace pwdb
