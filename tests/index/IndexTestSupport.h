// Helpers of the folder index's tests: a folder to index, the index's whole content as text,
// and the library's own answers to compare with.
#pragma once

#include <string>
#include <vector>

#include "support/TempFolderTest.h"

namespace lodeqdbtest {

/// Everything the index `database` holds of its files and records, one line each, sorted,
/// without what differs between equal runs (row ids, run ids, stale marks).
std::string DumpIndex(const std::string& database);

/// Every file under `folder` with one of the extensions (".plw", ".dgn"), full paths, sorted;
/// the folder .lodeqdb is passed over.
std::vector<std::string> FilesWithExtension(const std::string& folder, const std::string& extension);

/// The index's records of `file` and the library's children of it (PlotwrightChildren by file
/// for a drawing, DGNChildren for a design file), each as text, for comparison.
std::string IndexedRecordsText(const std::string& database, const std::string& file);
std::string LibraryRecordsText(const std::string& file);

/// `name` with '\\' as '/' and lexically normal: the library leaves ".." in the names of
/// references that it didn't find and of images and underlays.
std::string Normal(const std::string& name);

/// Sets a file's modification time `seconds` later than it is.
void Touch(const std::string& path, int seconds);

/// A test that owns a temporary folder with a sample folder of drawings in `store`.
class IndexFolderTest : public TempFolderTest {
  protected:
    IndexFolderTest() : TempFolderTest("lodeqdb-index") {}
    void SetUp() override;
    /// The sample's size: smaller under the sanitizers, every feature still in it.
    static size_t SampleDrawings();
    std::string store;
};

}  // namespace lodeqdbtest
