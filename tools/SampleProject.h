// A sample project of drawings that depend on one another, written with the toolkit's
// authoring interface, for trying the client and for its tests.
#pragma once

#include <string>

namespace lodeqdb::cli {

/// Writes the project into `folder` (made when missing) and gives the root drawing's full
/// path. Throws std::runtime_error when a file can't be written.
std::string WriteSampleProject(const std::string& folder);

}  // namespace lodeqdb::cli
