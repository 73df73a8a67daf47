// Trees of drawings and design files for tests of deep and dense reference graphs, written
// straight from the toolkit's encoder (no flush per file), so that 100,000 files take seconds.
#pragma once

#include <string>

namespace lodeqdbtest {

/// Writes d0.plw ... d<count-1>.plw into `folder`, each referring to the next by a relative
/// name; the last refers to nothing.
void WriteReferenceChain(const std::string& folder, int count);

/// Writes n0.plw ... n<count-1>.plw into `folder`, each referring to every other one.
void WriteDenseReferences(const std::string& folder, int count);

/// Writes root.plw with a DGN underlay of g0.dgn, and g0.dgn ... g<count-1>.dgn, each design
/// file attaching the next; the last attaches nothing.
void WriteDesignFileChain(const std::string& folder, int count);

}  // namespace lodeqdbtest
