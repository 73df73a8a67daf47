// The revision block's name, set when the library is loaded.
#include <lodeqdb/revisionblock/RevisionBlockName.h>

namespace RevisionBlock {

const wstring RevisionBlockName = u"lode_RevBlock";

}  // namespace RevisionBlock
