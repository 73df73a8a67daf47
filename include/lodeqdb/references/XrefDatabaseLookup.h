// Finding the loaded drawing of a reference in a host's reference graph: by the path it was
// loaded from (or, for one loaded without a path, its stored path), or by its block.
//
//   PwDbDatabase* loaded = LodeQDBUtil::FindXrefDatabase(&host, LodeUtil::AbsoluteFilePath(path));
//
// Each lookup from a host builds the host's graph anew; callers that hold a graph use the form
// that takes it. The drawings found belong to the host.
#pragma once

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbDatabase;
class PwDbXrefGraph;

namespace LodeQDBUtil {

/// The first loaded reference below the graph's host, depth first in the graph's order, whose
/// path is `path`; null when there is none or the graph has fewer than two nodes.
PwDbDatabase* FindXrefDatabase(const LodeUtil::AbsoluteFilePath& path, const PwDbXrefGraph& graph);
/// As above in `host`'s graph of loaded references.
PwDbDatabase* FindXrefDatabase(PwDbDatabase* host, const LodeUtil::AbsoluteFilePath& path);
/// The drawing loaded for the reference block `blockId` below `host`; null when the block has
/// no node in the graph or nothing is loaded for it.
PwDbDatabase* FindXrefDatabase(PwDbDatabase* host, const PwDbObjectId& blockId);

}  // namespace LodeQDBUtil
