// The DGN module "PwDgnIO.qdb" as the toolkit, the library and the module itself see it: its
// file name, its service, and the entry points it exports under plain names. The module
// defines these functions and its compiler checks them against the declarations here; callers
// bind them by name at run time (pwrxBindModuleEntry) and never link against the module, so a
// process that meets no DGN file never loads it.
//
//   auto isDgn = reinterpret_cast<PwDgnIsDgnFileEntry>(
//       pwrxBindModuleEntry(kPwDgnModuleName, kPwDgnIsDgnFileEntryName));
#pragma once

#include <cstdint>

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertOptions.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnConvertReport.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnRefFileData.h>

class PwDbDatabase;

/// The module's file name and the service it registers.
inline constexpr char16_t kPwDgnModuleName[] = u"PwDgnIO.qdb";
inline constexpr char16_t kPwDgnServiceName[] = u"PwDgnIO";

extern "C" {

/// Whether `path` names a DGN design file.
bool DGNIsDgnFile(const PwString& path);
/// Opens a design file; a handle for the other calls, null when it can't be read.
void* DGNLoadFile(const char16_t* path, int openMode, uint32_t flags, int loadAll);
void DGNCloseFile(void* file);
/// The number of models (items) of an open file.
uint32_t DGNGetItemCount(void* file);
/// A handle for model `index` of an open file, closed with DGNCloseItem.
void* DGNGetItem(void* file, uint32_t index);
void DGNCloseItem(void* item);
Plotwright::ErrorStatus DGNGetItemName(void* item, PwString* name);
/// Translates a model into `target` as `options` say.
Plotwright::ErrorStatus DGNConvertItemEx(void* item, PwDbDgnConvertOptions* options,
                                         PwDbDatabase* target);
/// Copies up to `capacity` rows of the report of `item`'s last conversion into `rows`, and the
/// number of rows there are into `*rowCount` (see PwDbDgnConvertReport.h).
Plotwright::ErrorStatus DGNGetConvertReport(void* item, PwDbDgnConvertReportRow* rows,
                                            uint32_t capacity, uint32_t* rowCount);
/// Appends one new record per reference attachment of the design file `path`.
Plotwright::ErrorStatus DGNGetFileReferences(const char16_t* path, const char16_t* unused,
                                             PwArray<PwDbDgnRefFileData*>& references);

}  // extern "C"

// The entries' names and the types of their addresses, taken from the declarations above.
inline constexpr char kPwDgnIsDgnFileEntryName[] = "DGNIsDgnFile";
inline constexpr char kPwDgnLoadFileEntryName[] = "DGNLoadFile";
inline constexpr char kPwDgnCloseFileEntryName[] = "DGNCloseFile";
inline constexpr char kPwDgnGetItemCountEntryName[] = "DGNGetItemCount";
inline constexpr char kPwDgnGetItemEntryName[] = "DGNGetItem";
inline constexpr char kPwDgnCloseItemEntryName[] = "DGNCloseItem";
inline constexpr char kPwDgnGetItemNameEntryName[] = "DGNGetItemName";
inline constexpr char kPwDgnConvertItemExEntryName[] = "DGNConvertItemEx";
inline constexpr char kPwDgnGetConvertReportEntryName[] = "DGNGetConvertReport";
inline constexpr char kPwDgnGetFileReferencesEntryName[] = "DGNGetFileReferences";

using PwDgnIsDgnFileEntry = decltype(&DGNIsDgnFile);
using PwDgnLoadFileEntry = decltype(&DGNLoadFile);
using PwDgnCloseFileEntry = decltype(&DGNCloseFile);
using PwDgnGetItemCountEntry = decltype(&DGNGetItemCount);
using PwDgnGetItemEntry = decltype(&DGNGetItem);
using PwDgnCloseItemEntry = decltype(&DGNCloseItem);
using PwDgnGetItemNameEntry = decltype(&DGNGetItemName);
using PwDgnConvertItemExEntry = decltype(&DGNConvertItemEx);
using PwDgnGetConvertReportEntry = decltype(&DGNGetConvertReport);
using PwDgnGetFileReferencesEntry = decltype(&DGNGetFileReferences);
