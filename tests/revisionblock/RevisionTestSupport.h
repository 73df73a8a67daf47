// Shared by the revision block's tests: drawings with a revision block made with the authoring
// interface, the road through a file on disk (written, read, worked on, saved, read back) in
// either format, and the table's content read back directly from the toolkit.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <memory>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include "support/TempFolderTest.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>

namespace revblocktest {

using Cells = std::vector<std::vector<std::string>>;
using RowData = std::map<wstring, wstring>;

enum class Format { Native, Exchange };

std::string FormatName(const testing::TestParamInfo<Format>& info);

/// The usual revision table: a title row "REVISIONS", a header row of `headers`, one data row
/// per entry of `rows` (cells from column 0), every row 8 high.
PwDbAuthoring::TableDesign Design(const std::vector<wstring>& headers,
                                  const std::vector<std::vector<wstring>>& rows);
/// Design() with the headers "REV", "DATE", "DESCRIPTION", "BY".
PwDbAuthoring::TableDesign StandardDesign(const std::vector<std::vector<wstring>>& rows);

/// Adds the block "lode_RevBlock" holding a table of `design` (a PwTestSpyTable with `spy`)
/// and, with `placed`, one reference to it in the model space. Gives the block's id.
PwDbObjectId AddRevisionBlock(PwDbDatabase& drawing, const PwDbAuthoring::TableDesign& design,
                              bool placed = true, bool spy = false);

/// The first table of the drawing's revision block; null when there is none.
PwDbObjectId RevisionTableId(const PwDbDatabase& drawing);
/// The references to the drawing's revision block.
std::vector<PwDbObjectId> RevisionReferences(const PwDbDatabase& drawing);

/// The revision table's texts as stored (with their formatting codes), row by row, in UTF-8.
Cells StoredTexts(const PwDbDatabase& drawing);
/// The revision table's texts as people read them.
Cells PlainTexts(const PwDbDatabase& drawing);
/// The data rows' plain texts only.
Cells DataTexts(const PwDbDatabase& drawing);
std::vector<unsigned> RowKinds(const PwDbDatabase& drawing);
std::vector<double> RowHeights(const PwDbDatabase& drawing);
int CellState(const PwDbDatabase& drawing, unsigned row, unsigned column);
double CellTextHeight(const PwDbDatabase& drawing, unsigned row, unsigned column);
int CellAlignment(const PwDbDatabase& drawing, unsigned row, unsigned column);

/// True when any object of the drawing was changed since it was read.
bool AnyObjectModified(const PwDbDatabase& drawing);

/// A request over the standard columns: each row gives REV, DATE, DESCRIPTION, BY in order
/// (fewer leave the rest out), key REV.
RevisionBlock::UpdateContext StandardContext(const std::vector<std::vector<wstring>>& rows);

std::string Utf8(const wstring& text);

/// A fixture run once per file format.
class RevisionFiles : public lodeqdbtest::TempFolderTest,
                      public testing::WithParamInterface<Format> {
  protected:
    RevisionFiles() : TempFolderTest("lodeqdb-revblock") {}
    void SetUp() override;
    void TearDown() override;

    /// `name` with the fixture's extension.
    std::string FileName(const std::string& name) const;
    /// Writes `drawing` as `name` (extension added) in its own generation; gives the path.
    wstring WriteToDisk(PwDbDatabase& drawing, const std::string& name);
    /// The drawing file `path` read into a new database, holding nothing of the file.
    std::unique_ptr<PwDbDatabase> ReadFromDisk(const wstring& path);
    /// Saves `drawing` over `path` in the file's own generation, as a client does.
    void SaveToDisk(PwDbDatabase& drawing, const wstring& path);

    /// The road of a client's change: `made` written to disk as `name`, read, given to `work`
    /// (which makes its own manager and lets it go), saved over the file and read back.
    template <class Work>
    std::unique_ptr<PwDbDatabase> ThroughDisk(PwDbDatabase& made, const std::string& name,
                                              Work&& work) {
        const wstring path = WriteToDisk(made, name);
        std::unique_ptr<PwDbDatabase> read = ReadFromDisk(path);
        work(*read);
        SaveToDisk(*read, path);
        return ReadFromDisk(path);
    }
};

}  // namespace revblocktest
