// Dictionary entries' names in wide strings.
//
//   PwDbObjectPointer<PwDbDictionary> layouts(drawing.layoutDictionaryId(), PwDb::OpenForRead);
//   wstring name = LodeQDBUtil::Dictionary::NameAt(layouts, layoutId);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace LodeQDBUtil::Dictionary {

/// The key of the entry holding `id`; empty when there is none, and for an empty pointer.
wstring NameAt(const PwDbObjectPointer<PwDbDictionary>& dictionary, const PwDbObjectId& id);
/// Renames an entry; the dictionary must be open for write. The toolkit's answer.
bool SetName(PwDbObjectPointer<PwDbDictionary>& dictionary, const wstring& oldName,
             const wstring& newName);
/// Renames through a read open: upgraded, renamed, downgraded; false when the upgrade fails.
bool SetName(const PwDbObjectPointer<PwDbDictionary>& dictionary, const wstring& oldName,
             const wstring& newName);

}  // namespace LodeQDBUtil::Dictionary
