// The special members of UpdateContext, out of line so that they are exported with the
// library.
#include <lodeqdb/revisionblock/UpdateContext.h>

#include <utility>

namespace RevisionBlock {

UpdateContext::UpdateContext() = default;

UpdateContext::UpdateContext(const UpdateContext& other) = default;

// Written out rather than defaulted: a moved-from vector is only "valid but unspecified" by
// the standard, and this record promises three empty ones.
UpdateContext::UpdateContext(UpdateContext&& other) noexcept
    : rows(std::exchange(other.rows, {})),
      keyColumns(std::exchange(other.keyColumns, {})),
      columns(std::exchange(other.columns, {})) {}

UpdateContext& UpdateContext::operator=(const UpdateContext& other) = default;

UpdateContext& UpdateContext::operator=(UpdateContext&& other) noexcept {
    // Assigning a record to itself keeps it whole rather than emptying it.
    if (this == &other) return *this;
    rows = std::exchange(other.rows, {});
    keyColumns = std::exchange(other.keyColumns, {});
    columns = std::exchange(other.columns, {});
    return *this;
}

UpdateContext::~UpdateContext() = default;

}  // namespace RevisionBlock
