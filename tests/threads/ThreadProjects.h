// Small projects of drawings for the tests of several threads: each thread gets a folder of
// its own, with a chain of references, an image, a PDF and a chain of design files.
#pragma once

#include <string>

namespace lodeqdbtest {

/// Writes into `folder` (which exists): root.plw referring to d1.plw ... d<depth>.plw in a
/// chain, a PNG image and a PDF underlay placed in root.plw, a DGN underlay g0.dgn that
/// attaches g1.dgn, a damaged drawing broken.plw and an exchange copy root.plx. Throws
/// std::runtime_error when a file can't be written.
void WriteThreadProject(const std::string& folder, int depth);

}  // namespace lodeqdbtest
