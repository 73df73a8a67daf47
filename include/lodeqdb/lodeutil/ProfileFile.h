// Section-and-key settings files ("profiles"), the kind of file hosts keep their import options
// in:
//
//   [IMPORTSECTION]
//   IsMasterUnits=1
//
// Defines LodeUtil::Profile::WriteString, which does what the host system's profile writer
// does: it makes the file when it is missing, adds the section when the file lacks it, and
// replaces the key's value when the section has the key.
//
//   Profile::WriteString(u"IMPORTSECTION", u"IsMasterUnits", u"1", u"/opt/host\\Support\\x.ini");
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil::Profile {

/// Sets `key` to `value` in `[section]` of the file `path` (a backslash counts as '/'). Section
/// and key names compare without regard to case; every other line of the file is kept byte for
/// byte. The file's folder must exist. The new content replaces the old one by a rename, so a
/// failure leaves the old file as it was. False when a name is empty or holds a line break,
/// '=' ends up in a key or ']' in a section, the file can't be read, or the write fails.
bool WriteString(const wstring& section, const wstring& key, const wstring& value,
                 const wstring& path);

}  // namespace LodeUtil::Profile
