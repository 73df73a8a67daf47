// The kinds of files and drawings that every part of the library names: what kind of file a
// dependency is, how old a drawing's format is, and which kind of application made it. Their
// values are part of the library's interface and never change.
#pragma once

namespace lode {

/// The kind of a file. The values are part of the library's interface; 5 and 6 are reserved.
enum FileType : int {
    Unknown = 0,
    Plw = 1,
    Image = 2,
    /// By name an exchange file, by object a PLF underlay.
    PlxOrPlf = 3,
    Dgn = 4,
    Pdf = 7,
};

/// The generations. The values are part of the library's interface.
enum PlotwrightFileFormat : int {
    FormatUnsupported = 0,
    /// Version 16, in an exchange file only.
    FormatOldestPlx = 1,
    /// Version 21, in a native file only.
    FormatOldestPlw = 2,
    FormatGeneration3 = 3,
    FormatGeneration4 = 4,
    FormatGeneration5 = 5,
    FormatGeneration6 = 6,
    FormatGeneration7 = 7,
    FormatCurrent = 8,
};

/// The kinds. The values are part of the library's interface.
enum PlwFileType : int {
    PlwTypeUnknown = 0,
    PlwTypePlain = 1,
    PlwTypeMarkerBlock = 2,
    PlwTypeGearmark = 3,
    PlwTypeScope = 4,
    PlwTypeScopeMaster = 5,
    PlwTypeTreeNode = 6,
};

}  // namespace lode
