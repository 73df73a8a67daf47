// RevisionBlock::BlockMgr: a drawing's revision table, held in the block "lode_RevBlock":
// found, imported from a template drawing, placed, read and updated row by row.
//
//   RevisionBlock::BlockMgr manager(drawing);
//   if (!manager.HasBlockDefinition()) manager.ImportBlockDefinition(templateDrawing);
//   if (!manager.HasBlockInstance()) manager.InsertBlockInstance(0.0, 0.0, 1.0);
//   manager.ApplyColumnHeaders({u"Rev", u"Date", u"Description", u"By"});
//   bool changed = manager.Update(wanted);    // see UpdateContext
//   // destroy the manager, then save the drawing
//
// A manager that found the block holds the block's record and its table open for read for its
// whole life (Update and ApplyColumnHeaders upgrade the table to write while they run), so it
// must be destroyed before its drawing, and the drawing is saved after it is gone. One thread
// at a time.
//
// Errors. A drawing without the block is no error: HasBlockDefinition says so. Failures throw:
// lode::PlotwrightException with the toolkit's status; a bare lode::LodeException with a code
// of RevisionBlockCodes.h (no message: the caller supplies words); RowNotFoundException when
// the table has lost its header row. Nothing is rolled back: an update that throws half-way
// leaves what it had done in the drawing, and the caller decides whether to save.
#pragma once

#include <map>
#include <memory>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/revisionblock/RevisionBlockCodes.h>
#include <lodeqdb/revisionblock/RevisionBlockName.h>
#include <lodeqdb/revisionblock/RowNotFoundException.h>
#include <lodeqdb/revisionblock/UpdateContext.h>

class PwDbDatabase;

namespace RevisionBlock {

class BlockMgrImpl;

class BlockMgr {
  public:
    /// Looks for the block in `database`, which must outlive the manager. Throws what the
    /// search throws for a block that is there but unusable: lode::LodeException 402 when it
    /// holds no table, RowNotFoundException when its table has no header row,
    /// lode::PlotwrightException when its entities can't be walked.
    explicit BlockMgr(PwDbDatabase& database);
    /// Closes the table and the block's record.
    ~BlockMgr();
    BlockMgr(const BlockMgr&) = delete;
    BlockMgr& operator=(const BlockMgr&) = delete;

    /// Lets go of what is held and looks for the block again: the way to pick up a block that
    /// reached the drawing by other means. Throws as the constructor.
    void Reset();
    /// True when the drawing has the block and its table.
    bool HasBlockDefinition() const;
    /// True when some block reference places the block; false without a block, and when the
    /// references can't be listed.
    bool HasBlockInstance() const;

    /// Copies the block from `source` into this drawing (its text styles and layers with it;
    /// records of the same name that the drawing has already are kept as they are and used
    /// instead), then looks for it again. False, with nothing done, when the drawing has the
    /// block already; else true, and HasBlockDefinition tells whether the copy is usable.
    /// Throws lode::PlotwrightException when `source` has no such block or the copy fails
    /// (this drawing is then unchanged), and what the search throws after the copy (the
    /// drawing then holds the copy).
    bool ImportBlockDefinition(PwDbDatabase& source);
    /// Places the block at (x, y, 0), scaled by `scale` on every axis, not turned, in the
    /// drawing's current layout. Each call adds one more reference. Throws
    /// lode::LodeException 401 without a block, lode::PlotwrightException for a point or scale
    /// that the toolkit refuses (not finite, a scale of 0) or a layout block that can't take
    /// the reference; the drawing is unchanged then.
    void InsertBlockInstance(const double& x, const double& y, const double& scale);

    /// The header row's texts, left to right, as people read them; empty when the table has
    /// lost its header row. Throws lode::LodeException 301 for a cell that can't be read, and
    /// 401 without a block (a caller's error: ask HasBlockDefinition first).
    std::vector<wstring> GetColumnHeaders() const;
    /// One map per data row, top first, from each distinct header text to the cell's text
    /// (for headers that repeat, the rightmost column's). Empty without a block. Throws
    /// RowNotFoundException when the table has lost its header row, lode::LodeException 301
    /// for a cell that can't be read.
    std::vector<std::map<wstring, wstring>> GetData() const;

    /// Writes the title (text 105 of the library's messages) and `headers` into the header
    /// row from the left; in a drawing whose measurement() is 0 both in upper case. Names past
    /// the last column are dropped. Cells that refuse the text (locked ones) keep theirs,
    /// without a failure. Throws lode::PlotwrightException when the table can't be written,
    /// lode::LodeException 401 without a block (a caller's error).
    void ApplyColumnHeaders(const std::vector<wstring>& headers);
    /// Makes the table's data rows what `context` asks for (see docs/revision-block.md):
    /// rows matched by their key are kept and moved, cells written only where their text
    /// differs, rows no longer wanted deleted, new ones formatted like a neighbour. True when
    /// anything changed; then every reference to the block, up through the blocks that place
    /// them, is marked changed. Throws lode::LodeException 401 without a block or a reference
    /// to it, 403 when no column or no key column resolves, RowNotFoundException without a
    /// header row, lode::PlotwrightException when the toolkit refuses a change.
    bool Update(const UpdateContext& context);

  private:
    void Init();
    /// The block's manager; throws 401 when there is none.
    BlockMgrImpl& RequireDefinition() const;

    /// Null while the drawing has no usable block.
    std::unique_ptr<BlockMgrImpl> impl;
    PwDbDatabase& database;
};

}  // namespace RevisionBlock
