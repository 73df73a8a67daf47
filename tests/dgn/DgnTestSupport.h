// What the DGN tests share: translating written design files, reading the drawing back entity
// by entity, a temporary host root folder, and the module's entries bound by name.
#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include "modules/dgn/DgnConvertReport.h"
#include "modules/dgn/DgnV7DesignFile.h"
#include "modules/dgn/DgnV7Translator.h"
#include "support/DrawingReadBack.h"
#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertReport.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"
#include "tools/dgnwriter/DgnV7Writer.h"

namespace dgntest {

/// The document over what `writer` wrote; fails the test when it doesn't load.
std::shared_ptr<const DgnV7DesignFile> Document(const DgnWriter::DgnV7Writer& writer,
                                                const wstring& path = u"");

/// Translates `writer`'s file into `drawing` with `translation`; the status of the translation.
Plotwright::ErrorStatus Translate(const DgnWriter::DgnV7Writer& writer,
                                  const DgnTranslation& translation, PwDbDatabase& drawing,
                                  DgnConvertReport& report);

using lodeqdbtest::BlockNamed;
using lodeqdbtest::ClassName;
using lodeqdbtest::Entities;
using lodeqdbtest::LayerNames;
using lodeqdbtest::RecordName;
using lodeqdbtest::ScopedRootFolder;

/// The module's entries, bound through pwrxServiceSymbol after loading "PwDgnIO.qdb".
struct DgnModule {
    PwDgnIsDgnFileEntry isDgnFile = nullptr;
    PwDgnLoadFileEntry loadFile = nullptr;
    PwDgnCloseFileEntry closeFile = nullptr;
    PwDgnGetItemCountEntry getItemCount = nullptr;
    PwDgnGetItemEntry getItem = nullptr;
    PwDgnCloseItemEntry closeItem = nullptr;
    PwDgnGetItemNameEntry getItemName = nullptr;
    PwDgnConvertItemExEntry convertItemEx = nullptr;
    PwDgnGetFileReferencesEntry getFileReferences = nullptr;
    PwDgnGetConvertReportEntry getConvertReport = nullptr;

    /// Loads the module and binds every entry; false (with a test failure) when any is missing.
    bool bind();
};

/// Bytes of a small compound document (the V8 container) whose directory names `entry`.
std::vector<uint8_t> CompoundDocument(const std::u16string& entry);

/// A 2D line element written by hand (level 1, words to follow 24) from (x1, y1) to (x2, y2).
std::vector<uint8_t> LineElement(int32_t x1, int32_t y1, int32_t x2, int32_t y2);

}  // namespace dgntest
