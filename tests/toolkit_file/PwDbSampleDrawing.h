// A drawing that holds something of every class the toolkit knows, for the file tests.
#pragma once

#include <memory>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace pwdbfiletest {

/// Layers with every flag, a block with every kind of entity, placements, a second layout,
/// plot settings, dictionary entries, an erased entity and a preview image.
std::unique_ptr<PwDbDatabase> MakeSampleDrawing();

}  // namespace pwdbfiletest
