// BlockMgrImpl: the working part of RevisionBlock::BlockMgr, internal to the library. It
// exists only while the block has been found, and holds the block's record and its table open
// for read for its whole life.
//
// Its sources, by concern: BlockMgrImpl.cpp finding the table; CellReading.cpp and
// TableReading.cpp reading; TableUpdate.cpp, RowPlacement.cpp and CellWriting.cpp updating;
// ColumnHeaders.cpp the title and header row; ReferenceTouching.cpp marking the references.
#pragma once

#include <cstddef>
#include <map>
#include <utility>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/revisionblock/UpdateContext.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

class PwDbBlockTableRecord;
class PwDbTable;

namespace RevisionBlock {

/// A wanted column name, as written in UpdateContext::columns, to its column in the table.
using ColumnMap = std::map<wstring, int>;
/// The key column: one entry of the ColumnMap.
using KeyEntry = ColumnMap::value_type;
/// An index into UpdateContext::rows to the table row that holds that entry now.
using RowMap = std::map<size_t, unsigned>;

class BlockMgrImpl {
  public:
    /// Takes over `record`, open for read, and finds its table (LoadTable). On a throw the
    /// record is closed and nothing stays open.
    explicit BlockMgrImpl(PwDbObjectPointer<PwDbBlockTableRecord>&& record);
    /// Closes the table, then the record (the reverse order of the fields).
    ~BlockMgrImpl();
    BlockMgrImpl(const BlockMgrImpl&) = delete;
    BlockMgrImpl& operator=(const BlockMgrImpl&) = delete;

    PwDbObjectId BlockRecordId() const;
    /// True when some reference places the block and the list of them could be had.
    bool HasInstance() const;

    std::vector<wstring> GetColumnHeaders() const;
    std::vector<std::map<wstring, wstring>> GetData() const;
    void ApplyColumnHeaders(const std::vector<wstring>& headers);
    bool Update(const UpdateContext& context);

    // Text rules, stateless, shared by reading and updating.

    /// `text` without blanks at either end.
    static wstring TrimmedCopy(const wstring& text);
    /// Equal after trimming, unit by unit: the comparison of cell texts.
    static bool TrimmedEquals(const wstring& a, const wstring& b);
    /// Equal after trimming, case ignored: the comparison of a wanted column name with a
    /// header's text.
    static bool ColumnNameMatches(const wstring& name, const wstring& headerText);
    /// Plain text as stored formatted text that reads back as itself: "\", "{" and "}"
    /// escaped, the backslash first.
    static wstring EscapeCellText(const wstring& text);
    /// Each unit through the upper case of the user's environment locale; one unit to one.
    static wstring ToUpperUserLocale(const wstring& text);
    /// True when `rowData` has an entry under `keyName` (exactly) whose text TrimmedEquals
    /// `cellText`.
    static bool RowKeyMatches(const std::map<wstring, wstring>& rowData, const wstring& keyName,
                              const wstring& cellText);

  private:
    void LoadTable();
    /// The first row of `kind`; RowNotFoundException when none.
    unsigned FindFirstRowOfKind(unsigned kind) const;
    /// True when a data row stands below `row`.
    bool HasDataRowBelow(unsigned row) const;

    // Reading (CellReading.cpp).
    wstring ReadCell(unsigned row, unsigned column) const;
    static wstring StripCellText(const wstring& text, PwDbObjectId style);

    // Updating (TableUpdate.cpp, RowPlacement.cpp, CellWriting.cpp).
    ColumnMap ResolveColumns(const std::vector<wstring>& columns) const;
    bool ClearRows(const ColumnMap& columns, const KeyEntry& keyEntry);
    bool PruneRows(const UpdateContext& context, const KeyEntry& keyEntry, RowMap& rowMap);
    /// Deletes the data row `row` and moves `row` to the row the walk goes on with: the same
    /// index when the row went, the next one when the table kept it (it refused, or a table of
    /// a derived kind answered 0 without deleting), so that no walk stays on one row.
    Plotwright::ErrorStatus DeleteDataRow(unsigned& row);
    bool PlaceRows(const UpdateContext& context, const ColumnMap& columns, const KeyEntry& keyEntry,
                   RowMap& rowMap);
    unsigned FirstDataRow() const;
    unsigned ChooseFormatRow(size_t index, const RowMap& rowMap, size_t entryCount) const;
    void InsertRowFrom(unsigned target, unsigned source, bool copyText, RowMap& rowMap);
    void RemoveRow(unsigned row, RowMap& rowMap);
    bool UpdateRow(unsigned row, const std::map<wstring, wstring>& rowData,
                   const ColumnMap& columns, const KeyEntry& keyEntry, bool writeEmpty);
    bool UpdateCell(unsigned row, unsigned column, const wstring& wanted);
    bool WriteCell(unsigned row, unsigned column, const wstring& text);

    // Marking the references changed (ReferenceTouching.cpp).
    struct BlockWalk;
    void TouchReferences();
    /// Marks the references to the block `id` changed and queues the blocks that hold them.
    static void TouchOwnerReferences(PwDbObjectId id, BlockWalk& walk);

    /// Held open for read for the object's life.
    PwDbObjectPointer<PwDbBlockTableRecord> blockRecord;
    /// The first table among the block's entities, held open for read for the object's life.
    PwDbObjectPointer<PwDbTable> table;
    /// The height of the first header row when the table was found; changed data rows go back
    /// to it.
    double headerRowHeight = 0.0;
};

}  // namespace RevisionBlock
