// The copy constructor of RowNotFoundException, out of line so that it is exported with the
// library.
#include <lodeqdb/revisionblock/RowNotFoundException.h>

namespace RevisionBlock {

RowNotFoundException::RowNotFoundException(const RowNotFoundException& other) = default;

}  // namespace RevisionBlock
