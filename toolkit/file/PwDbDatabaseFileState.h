// What a database keeps of the file it was read from: the hold on it, the application
// information this toolkit doesn't write itself, the preview. Kept by the file layer in the
// database's extension slot; internal to the toolkit.
#pragma once

#include <memory>
#include <vector>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>

struct PwDbDatabaseFileState : PwDbDatabaseExtension {
    static const PwDbExtensionSlot slot;

    struct Input {
        /// The open file and its lock; the null file once the hold ended or for
        /// OpenModeAlternate.
        Morvane::Plotwright::PAL::FileIO::File file;
        wstring path;
        PwDbDatabase::OpenMode mode = PwDbDatabase::OpenModeAlternate;
    };
    /// The file the database was read from; null after closeInput and for exchange files.
    std::unique_ptr<Input> input;
    /// Application information entries read from a file that this toolkit doesn't write
    /// itself; saved again as they were.
    std::vector<PwDbAppInfoEntry> appInfoKept;
    /// The drawing was read whole, from a native file of layout revision 1 (whole records) or
    /// from an exchange file, and is saved in revision 1 again, so that an unchanged drawing
    /// saves to the bytes that file's image encodes to; a new drawing, or one read from a
    /// file of revision 2 (indexed records), is saved in revision 2.
    bool wholeRecordsLayout = false;
    /// The preview image saved with the drawing; null when there is none.
    std::unique_ptr<PwDbPreviewImage> preview;
};
