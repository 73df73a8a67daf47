// The host's DGN import settings, "DgnSetups.ini" in the "Support" folder under the host's root
// folder. The DGN module reads the file for itself; the library only makes sure that it is
// there before a translation, with master units chosen:
//
//   [IMPORTSECTION]
//   IsMasterUnits=1
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeQDBUtil {

/// Makes the "Support" folder and the settings file when they are missing (a file that is there
/// is left as it is, whatever it holds) and gives the file's path: the root folder as the host
/// gives it, followed by "\Support\DgnSetups.ini". A folder or file that can't be made is
/// passed over in silence: the translation then goes on without it. A host with an empty root
/// folder gets the path "\Support\DgnSetups.ini" and nothing is made.
wstring EnsureDgnSetups();

}  // namespace LodeQDBUtil
