// Enumerations shared by the toolkit's database classes.
#pragma once

#include <cstdint>

/// The toolkit's 64-bit object handle: unique within one database, never reused, kept
/// through save and load. 0 is no handle.
using PwDbHandle = uint64_t;

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

}  // namespace PwDb
