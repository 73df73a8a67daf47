// What a database keeps of the file it was read from; internal to the toolkit.
#pragma once

#include <vector>

#include "toolkit/db/PwDbDatabase.h"
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/pal/PwFileIO.h"

struct PwDbDatabase::Input {
    /// The open file and its lock; the null file once the hold ended or for OpenModeAlternate.
    Morvane::Plotwright::PAL::FileIO::File file;
    wstring path;
    OpenMode mode = OpenModeAlternate;
};

struct PwDbDatabase::AppInfoKept {
    std::vector<PwDbAppInfoEntry> entries;
};
