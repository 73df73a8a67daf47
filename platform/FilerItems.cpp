// Reading and writing one filer item at a time in wide strings and integers.
#include <lodeqdb/platform/FilerItems.h>

#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

namespace pwdb {

Plotwright::ErrorStatus readItem(PwDbPlwFiler& filer, int& value) {
    int32_t read = value;
    if (auto status = filer.readInt32(read)) return status;
    value = read;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus readItem(PwDbPlwFiler& filer, wstring& value) {
    char16_t* text = nullptr;
    if (auto status = filer.readString(text)) return status;
    value = text != nullptr ? wstring(text) : wstring();
    pwutDelBuffer(text);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus writeItem(PwDbPlwFiler& filer, int value) {
    return filer.writeInt32(value);
}

Plotwright::ErrorStatus writeItem(PwDbPlwFiler& filer, const wstring& value) {
    return filer.writeString(value.c_str());
}

}  // namespace pwdb
