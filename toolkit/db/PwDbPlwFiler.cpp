// Filer conveniences built from the typed items.
#include <lodeqdb/toolkit/db/PwDbPlwFiler.h>

#include <algorithm>
#include <iterator>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>

PwDbPlwFiler::~PwDbPlwFiler() = default;

Plotwright::ErrorStatus PwDbPlwFiler::readHandle(PwDbHandle& handle) {
    handle = 0;
    return Plotwright::StatusNotApplicable;
}

Plotwright::ErrorStatus PwDbPlwFiler::readPackedHandles(size_t, std::string& packed,
                                                        size_t& named) {
    packed.clear();
    named = 0;
    return Plotwright::StatusNotApplicable;
}

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

namespace {

// Three doubles read into `values` only when all three could be read.
Plotwright::ErrorStatus ReadThree(PwDbPlwFiler& filer, double (&values)[3]) {
    double read[3] = {};
    for (double& value : read) {
        if (auto status = filer.readDouble(value)) return status;
    }
    std::copy(std::begin(read), std::end(read), std::begin(values));
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus WriteThree(PwDbPlwFiler& filer, double a, double b, double c) {
    for (double value : {a, b}) {
        if (auto status = filer.writeDouble(value)) return status;
    }
    return filer.writeDouble(c);
}

}  // namespace

Plotwright::ErrorStatus PwDbPlwFiler::readPoint3d(PwGePoint3d& point) {
    double values[3];
    if (auto status = ReadThree(*this, values)) return status;
    point = PwGePoint3d(values[0], values[1], values[2]);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwFiler::writePoint3d(const PwGePoint3d& point) {
    return WriteThree(*this, point.x, point.y, point.z);
}

Plotwright::ErrorStatus PwDbPlwFiler::readScale3d(PwGeScale3d& scale) {
    double values[3];
    if (auto status = ReadThree(*this, values)) return status;
    scale = PwGeScale3d(values[0], values[1], values[2]);
    return Plotwright::StatusOk;
}

Plotwright::ErrorStatus PwDbPlwFiler::writeScale3d(const PwGeScale3d& scale) {
    return WriteThree(*this, scale.sx, scale.sy, scale.sz);
}
