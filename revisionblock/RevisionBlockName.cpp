// The revision block's name, set when the library is loaded.
#include "revisionblock/RevisionBlockName.h"

namespace RevisionBlock {

const wstring RevisionBlockName = u"lode_RevBlock";

}  // namespace RevisionBlock
