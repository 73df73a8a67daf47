// Authoring underlays: definitions in their kind's dictionary, placements that show them.
//
//   PwDbObjectId plan;
//   PwDbAuthoring::addUnderlayDefinition(drawing, PwDbPdfDefinition::desc(), u"PLAN",
//                                        u"docs\\plan.pdf", u"1", &plan);
//   PwDbAuthoring::addUnderlayReference(drawing, drawing.modelSpaceId(), plan, {0, 0, 0});
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/ge/PwGeGeometry.h>

class PwDbDatabase;
class PwRxClass;

namespace PwDbAuthoring {

/// Files a new definition of the kind `kind` (PwDbPdfDefinition, PwDbDgnDefinition or
/// PwDbPlfDefinition) under `key` in that kind's dictionary, which is made when missing.
/// StatusInvalidInput for any other class, StatusDuplicateKey for a key that is taken.
Plotwright::ErrorStatus addUnderlayDefinition(PwDbDatabase& drawing, PwRxClass* kind,
                                              const wstring& key, const wstring& sourcePath,
                                              const wstring& itemName, PwDbObjectId* id = nullptr);

/// Shows the definition `definition` in the block `block` and adds the placement to the
/// definition's persistent reactors.
Plotwright::ErrorStatus addUnderlayReference(PwDbDatabase& drawing, PwDbObjectId block,
                                             PwDbObjectId definition, const PwGePoint3d& position,
                                             const PwGeScale3d& scale = {}, PwDbObjectId layer = {},
                                             PwDbObjectId* id = nullptr);

}  // namespace PwDbAuthoring
