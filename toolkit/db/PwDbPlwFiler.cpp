// Filer conveniences built from the typed items.
#include "toolkit/db/PwDbPlwFiler.h"

#include "toolkit/core/PwString.h"
#include "toolkit/core/PwStringBuffer.h"

PwDbPlwFiler::~PwDbPlwFiler() = default;

Plotwright::ErrorStatus PwDbPlwFiler::readString(wstring& text) {
    char16_t* buffer = nullptr;
    if (auto status = readString(buffer)) return status;
    text = buffer ? wstring(buffer) : wstring();
    pwutDelBuffer(buffer);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwFiler::readString(PwString& text) {
    wstring value;
    if (auto status = readString(value)) return status;
    return text.assign(value.data(), value.size());
}

Plotwright::ErrorStatus PwDbPlwFiler::writeString(const wstring& text) {
    return writeString(text.c_str());
}

Plotwright::ErrorStatus PwDbPlwFiler::readPoint3d(PwGePoint3d& point) {
    PwGePoint3d value;
    if (auto status = readDouble(value.x)) return status;
    if (auto status = readDouble(value.y)) return status;
    if (auto status = readDouble(value.z)) return status;
    point = value;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwFiler::writePoint3d(const PwGePoint3d& point) {
    writeDouble(point.x);
    writeDouble(point.y);
    return writeDouble(point.z);
}

Plotwright::ErrorStatus PwDbPlwFiler::readScale3d(PwGeScale3d& scale) {
    PwGeScale3d value;
    if (auto status = readDouble(value.sx)) return status;
    if (auto status = readDouble(value.sy)) return status;
    if (auto status = readDouble(value.sz)) return status;
    scale = value;
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwFiler::writeScale3d(const PwGeScale3d& scale) {
    writeDouble(scale.sx);
    writeDouble(scale.sy);
    return writeDouble(scale.sz);
}
