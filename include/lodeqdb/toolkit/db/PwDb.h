// Enumerations shared by the toolkit's database classes.
#pragma once

#include <cstdint>

/// The toolkit's 64-bit object handle: unique within one database, never reused, kept
/// through save and load. 0 is no handle.
using PwDbHandle = uint64_t;
/// The largest handle, which no object has: the handle after it would be 0. An id read for it
/// is the null id, and an object can't be added under it.
inline constexpr PwDbHandle kPwDbNoHandleAfter = UINT64_MAX;

namespace PwDb {

/// How an object is opened. Another type than the file mode of PwDbDatabase.
enum OpenMode : int {
    OpenForRead = 0,
    OpenForWrite = 1,
};

/// The state of a block table record as a reference to another drawing.
enum XrefStatus : int {
    /// The record is no reference.
    XrefNotAnXref = 0,
    XrefResolved = 1,
    XrefUnloaded = 2,
    XrefUnreferenced = 3,
    XrefFileMissing = 4,
    /// A file is there but could not be loaded, or loading it would close a cycle.
    XrefFilePresentUnresolved = 5,
};

/// The format versions of drawing files: 16 (oldest) to 33 (newest); 0 is none.
enum PwDbPlwVersion : int {
    PwDbPlwVersionNone = 0,
    PwDbPlwVersionOldest = 16,
    PwDbPlwVersionCurrent = 33,
};

/// Units of a drawing.
enum MeasurementValue : int {
    Imperial = 0,
    Metric = 1,
};

/// The kind of a table row.
enum RowKind : unsigned {
    /// Rows that hold the table's entries.
    RowKindData = 1,
    /// The row of the table's title: its first cell spans all columns.
    RowKindTitle = 2,
    /// The row of the column names.
    RowKindHeader = 4,
};

/// The state of a table cell: flags. 0 takes every change; any other state refuses text
/// changes (StatusCellLocked), and CellStateFormatLocked refuses format changes as well.
enum CellState : int {
    CellStateNone = 0,
    CellStateContentLocked = 1,
    CellStateFormatLocked = 2,
    CellStateContentReadOnly = 4,
};

/// What PwDbTable::copyFrom copies of each cell.
enum TableCopyOption : int {
    /// Text and format (text style, text height, alignment, state).
    RowCopyAll = 0,
    /// Format without text: the target cells keep their text.
    RowCopyFormatOnly = 2,
};

/// Where a cell's text stands in the cell.
enum CellAlignment : int {
    TopLeft = 1,
    TopCenter = 2,
    TopRight = 3,
    MiddleLeft = 4,
    MiddleCenter = 5,
    MiddleRight = 6,
    BottomLeft = 7,
    BottomCenter = 8,
    BottomRight = 9,
};

/// What PwDbDatabase::wblockCloneObjects does with a named record (layer, text style, block)
/// whose name the target drawing already has. Layer "0" and text style "Standard", which
/// every drawing has, always stand for the target's own, whatever the mode.
enum DuplicateRecordCloning : int {
    /// The clone is refused with StatusDuplicateKey; the target is unchanged.
    DuplicateRecordRefuse = 0,
    /// The target's record is kept as it is, and the clones refer to it.
    DuplicateRecordKeepTarget = 1,
    /// The source's record comes across under a new name: its name followed by "$" and the
    /// lowest number from 1 up that makes it unique.
    DuplicateRecordRename = 2,
};

}  // namespace PwDb
