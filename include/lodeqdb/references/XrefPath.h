// The full path of the drawing that a reference block stands for, in the context of a host
// drawing: what a loaded reference was loaded from, else the stored path made absolute
// against the host drawing's folder.
//
//   wstring full = LodeQDBUtil::GetXrefPath(host, block, hostPath, false);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

class PwDbBlockTableRecord;
class PwDbDatabase;

namespace LodeQDBUtil {

/// The full path of the reference `block` (not null) as seen from `host`, whose own file is
/// `hostPath`. Unless `storedPathOnly`, a loaded reference answers with the path its drawing
/// was loaded from, the block's own or, for a block of a drawing below the host, that of the
/// host's block of the same name. Otherwise the stored path: an absolute one as it stands; a
/// path rooted at one backslash under the root of `hostPath`; a relative one against the
/// folder of `hostPath`, every "\.." in it then dropped (not followed). When the block's own
/// stored path is relative or root-relative, a same-named block of the host has its stored
/// path used instead.
wstring GetXrefPath(const PwDbDatabase& host, const PwDbBlockTableRecord* block,
                    const wstring& hostPath, bool storedPathOnly);

}  // namespace LodeQDBUtil
