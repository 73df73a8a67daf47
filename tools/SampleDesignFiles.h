// The DGN design files of the sample project, written with the DGN V7 writer.
#pragma once

#include <string>

namespace lodeqdb::cli {

/// Writes `folder`/site.dgn (a 2D site plan: lines, a text, a cell, and an attachment of
/// terrain.dgn) and `folder`/terrain.dgn (3D contour lines); the folder must exist. Throws
/// std::runtime_error when a file can't be written.
void WriteSampleDesignFiles(const std::string& folder);

}  // namespace lodeqdb::cli
