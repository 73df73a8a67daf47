// DGN files read through the DGN module "PwDgnIO.qdb": their models, a model translated into a
// drawing, and their reference attachments handed to the toolkit's repath object.
//
//   for (const wstring& model : LodeQDBUtil::GetModelViewNamesFromDGN(u"/srv/site.dgn")) ...
//   PwDbDatabase drawing(false, true);
//   LodeQDBUtil::ReadDGNToPlwDatabase(u"/srv/site.dgn", u"", drawing);   // the first model
//
// lode::InkstoneError when the module can't be loaded or lacks an entry; lode::InvalidFormat
// for a file the module doesn't load; lode::NotFound for a model that isn't there.
#pragma once

#include <cstdint>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>

class PwDbDatabase;
class PwDbDgnRefFileRepath;

namespace LodeQDBUtil {

/// The record of translation options the module receives: 88 bytes, laid out as the module
/// was built. The library fills it with 1, 2, 1, "", 0, "" (cells as blocks, units as the
/// host's settings say, attachments as underlays, default layer and block names, into the
/// model space).
using DgnConvertOptions = PwDbDgnConvertOptions;

/// One row of a translation's report: `count` entities of class `className` made from elements
/// of type `elementType`, or, with an empty class name, `count` elements of that type left out
/// (for type -1: bytes after the last whole element of a file cut short).
struct DgnConvertRow {
    int32_t elementType = 0;
    wstring className;
    uint32_t count = 0;
};

/// The names of the file's models, in the module's order; models without a readable name are
/// left out.
std::vector<wstring> GetModelViewNamesFromDGN(const wstring& path);

/// Translates the model `modelName` of the DGN file (the first model when the name is empty;
/// names compare exactly, case included) into `database`, after EnsureDgnSetups. Throws
/// lode::PlotwrightException with the module's status when the translation fails.
void ReadDGNToPlwDatabase(const wstring& path, const wstring& modelName, PwDbDatabase& database);

/// ReadDGNToPlwDatabase, and the translation's report in `report` (translated rows first, by
/// element type, then the rows of what was left out).
void ReadDGNToPlwDatabase(const wstring& path, const wstring& modelName, PwDbDatabase& database,
                          std::vector<DgnConvertRow>& report);

/// Attaches `repath` to the DGN file; the status of its setFile becomes an exception with the
/// path (ThrowLodeExceptionOnFile).
void ReadDGNFile(const wstring& path, PwDbDgnRefFileRepath& repath);

}  // namespace LodeQDBUtil
