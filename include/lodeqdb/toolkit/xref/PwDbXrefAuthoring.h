// Authoring external references.
//
//   PwDbObjectId block;
//   PwDbAuthoring::addXref(*site, u"TITLE", u"..\\lib\\title.plw", {0, 0, 0}, &block);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbDatabase;

namespace PwDbAuthoring {

/// Attaches the drawing stored as `path` (kept as given) under the block name `name`, and
/// places the block in the model space at `position`. The reference is unresolved until
/// pwdbResolveCurrentXRefs. StatusDuplicateKey or StatusInvalidKey for a block name that is
/// taken or not allowed; StatusInvalidInput for an empty path.
Plotwright::ErrorStatus addXref(PwDbDatabase& drawing, const wstring& name, const wstring& path,
                                const PwGePoint3d& position = {}, PwDbObjectId* id = nullptr);

}  // namespace PwDbAuthoring
