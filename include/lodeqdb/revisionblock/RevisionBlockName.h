// The name that identifies a drawing's revision block: the block definition of that name holds
// the revision table.
//
//   if (blocks->has(RevisionBlock::RevisionBlockName.c_str())) ...
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace RevisionBlock {

/// "lode_RevBlock". Set while the library is loaded and never changed afterwards, so any
/// thread may read it once the library is in.
extern const wstring RevisionBlockName;

}  // namespace RevisionBlock
