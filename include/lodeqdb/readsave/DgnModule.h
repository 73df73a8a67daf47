// Whether a file is a DGN design file, as the DGN module "PwDgnIO.qdb" tells: the module is
// loaded on the first DGN question and its entries are bound once each (see DgnBinding.h).
//
//   if (LodeQDBUtil::IsDGNFile(u"/srv/site.dgn")) { ... }   // lode::InkstoneError without it
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeQDBUtil {

/// Whether the module takes `path` for a DGN file. lode::InkstoneError when the module can't
/// be bound; false when the module's probe faults.
bool IsDGNFile(const wstring& path);

}  // namespace LodeQDBUtil
