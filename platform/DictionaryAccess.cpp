// Dictionary entries' names in wide strings.
#include <lodeqdb/platform/DictionaryAccess.h>

#include <lodeqdb/lodeutil/Strings.h>
#include "platform/UpgradedWrite.h"
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>

namespace LodeQDBUtil::Dictionary {

wstring NameAt(const PwDbObjectPointer<PwDbDictionary>& dictionary, const PwDbObjectId& id) {
    // An empty pointer has no entries to name.
    if (dictionary.object() == nullptr) return wstring();
    PwString name;
    if (dictionary->nameAt(id, name) != Plotwright::StatusOk) return wstring();
    char16_t* copy = nullptr;
    if (pwutNewString(name.kwszPtr(), copy) != Plotwright::StatusOk) return wstring();
    wstring result = LodeUtil::MakeWideString(copy);
    pwutDelBuffer(copy);
    return result;
}

bool SetName(PwDbObjectPointer<PwDbDictionary>& dictionary, const wstring& oldName,
             const wstring& newName) {
    return dictionary->setName(LodeUtil::MakeWideString(oldName).c_str(),
                               LodeUtil::MakeWideString(newName).c_str());
}

bool SetName(const PwDbObjectPointer<PwDbDictionary>& dictionary, const wstring& oldName,
             const wstring& newName) {
    return detail::WriteThroughReadOpen(*dictionary.object(), [&](PwDbDictionary& writable) {
        return writable.setName(LodeUtil::MakeWideString(oldName).c_str(),
                                LodeUtil::MakeWideString(newName).c_str());
    });
}

}  // namespace LodeQDBUtil::Dictionary
