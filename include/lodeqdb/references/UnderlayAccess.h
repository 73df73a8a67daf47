// Underlay definitions for the library: their file names, their load state, and the
// placements that show them. `UnderlayRef` takes the id of a definition, not of a placement.
//
//   wstring file = LodeQDBUtil::UnderlayDef::FileName(definition);
//   LodeQDBUtil::UnderlayRef::Reload(definitionId);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;
class PwDbUnderlayDefinition;

namespace LodeQDBUtil {

namespace UnderlayDef {

/// The active file name; when the toolkit can't give one, the file found on disk for the
/// source name; when none is found, or the toolkit fails otherwise, the source name. Empty
/// for null.
wstring FileName(PwDbUnderlayDefinition* definition);

}  // namespace UnderlayDef

namespace UnderlayRef {

/// Whether the definition `id` is loaded; false for the null id or one that can't be reached.
bool IsLoaded(const PwDbObjectId& id);
/// Opens the definition `id` for write and reloads it: StatusNullObjectId for the null id, the
/// status of a failed open, else that of the reload.
Plotwright::ErrorStatus Reload(const PwDbObjectId& id);
/// Unloads the definition when loaded, loads it, and marks it and each placement that shows it
/// as changed, so that a host redraws them. StatusNullDatabase for null, StatusNoHostServices
/// without host services; a failed load's status, with no placement touched.
Plotwright::ErrorStatus Reload(PwDbUnderlayDefinition* definition);

}  // namespace UnderlayRef

namespace UnderlayDictionary {

/// The id filed under `key` in `database`'s root dictionary; null for an empty key or on any
/// failure.
PwDbObjectId GetDictId(const PwString& key, PwDbDatabase* database);

}  // namespace UnderlayDictionary

/// The active file name of `definition` into `name`; on StatusFileNotFound from the toolkit,
/// the source name found on disk (FindDependentFullName) and its status.
Plotwright::ErrorStatus ResolveUnderlayFileName(PwDbUnderlayDefinition* definition, PwString& name);

/// The placements of `definition`, found through its persistent reactors: every reactor that
/// isn't erased and is a PwDbUnderlayReference showing this definition. StatusNullDatabase for
/// null or a definition without a reactor list, StatusNullObjectId for one not in a database.
Plotwright::ErrorStatus CollectUnderlayReferences(PwDbUnderlayDefinition* definition,
                                                  PwArray<PwDbObjectId>& placements);

}  // namespace LodeQDBUtil
