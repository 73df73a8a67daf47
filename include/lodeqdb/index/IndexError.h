// The one exception of the folder index: the index file itself can't be opened, read or
// written (a folder that can't be made, a full disk, a file that isn't an index).
//
//   try { LodeQDBIndex::UpdateIndex(options); }
//   catch (const LodeQDBIndex::IndexError& error) { report(error.what()); }
//
// Everything about the drawings themselves is an answer, never this exception: a drawing that
// can't be read is recorded in the index with its error, and the run goes on.
#pragma once

#include <stdexcept>
#include <string>

namespace LodeQDBIndex {

class IndexError : public std::runtime_error {
  public:
    explicit IndexError(const std::string& what) : std::runtime_error(what) {}
};

}  // namespace LodeQDBIndex
