// Drawings on disk that refer to one another, written by the toolkit, for the reference
// tests.
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDb.h>

class PwDbBlockTableRecord;
class PwDbDatabase;

namespace pwdbxreftest {

/// One reference of a drawing: the block's name and the path stored in it.
struct Reference {
    wstring block;
    wstring path;
};

class XrefFolderTest : public lodeqdbtest::TempFolderTest {
  protected:
    XrefFolderTest() : TempFolderTest("pwdb-xrefs") {}

    /// Writes the drawing `name` (a ".plx" name as an exchange file) with a text that says
    /// `marker` and the references `references`.
    void WriteDrawing(const std::string& name, const std::vector<Reference>& references,
                      const wstring& marker = u"");
    /// Reads `name` into a new database and resolves its references.
    std::unique_ptr<PwDbDatabase> OpenResolved(const std::string& name);
    void MakeFolder(const std::string& name) const;
};

/// The text written by WriteDrawing into `database`; empty when there is none.
wstring MarkerOf(const PwDbDatabase* database);
/// The block `name` of `database`, read while it stays in memory (the toolkit keeps it); null
/// when there is none.
PwDbBlockTableRecord* Block(const PwDbDatabase& database, const wstring& name);
PwDb::XrefStatus StatusOf(const PwDbDatabase& database, const wstring& name);
PwDbDatabase* LoadedFor(const PwDbDatabase& database, const wstring& name);

}  // namespace pwdbxreftest
