// Bounds that keep a damaged drawing file from costing what its numbers claim. Internal to the
// toolkit.
#pragma once

#include <cstddef>

/// A count read from a filer says how many items follow; this much room is made at most before
/// the items are there, so that a damaged count can't ask for a huge block.
inline constexpr size_t kPwDbMaxReserveBeforeItems = 4096;
