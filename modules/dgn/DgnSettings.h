// DgnSettings: the host's "DgnSetups.ini", which says how DGN files are imported. It lies in
// the "Support" folder of the host services' root folder and is a file of sections and keys:
//
//   [IMPORTSECTION]
//   IsMasterUnits=1        ; 1: coordinates in master units, 0: in units of resolution
//
//   if (dgnImportInMasterUnits()) scale = 1.0 / units.uorPerMaster();
#pragma once

#include <optional>

#include <lodeqdb/lodeutil/WideString.h>

/// Where the settings file is: the root folder followed by "\Support\DgnSetups.ini" (a
/// backslash counts as '/' at the file system). Empty when there are no host services or
/// their root folder is empty.
wstring dgnSettingsPath();

/// The value of `key` in `section` of the section-and-key file `path`; names compare without
/// regard to case, blanks around names and values are dropped, lines starting with ';' or '#'
/// are comments. A UTF-8 file (with or without its byte order mark) or a UTF-16LE one with
/// its mark is read; files above 1 MiB are not. Nothing when the file, section or key is
/// missing.
std::optional<wstring> dgnReadSetting(const wstring& path, const wstring& section,
                                      const wstring& key);

/// True when "IsMasterUnits" in section "IMPORTSECTION" of the settings file reads as the
/// integer 1. Anything else (another number, a value that isn't an integer, a missing file,
/// section or key) means units of resolution: the library writes the file with 1 before its
/// first translation, so only a host that changed it, or a caller of the module that never
/// made it, gets units of resolution.
bool dgnImportInMasterUnits();
