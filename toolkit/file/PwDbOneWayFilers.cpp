// The refusals of the one-way filers.
#include "toolkit/file/PwDbOneWayFilers.h"

Plotwright::ErrorStatus PwDbWriteOnlyFiler::readString(char16_t*& text) {
    text = nullptr;
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbWriteOnlyFiler::readInt32(int32_t&) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbWriteOnlyFiler::readInt64(int64_t&) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbWriteOnlyFiler::readDouble(double&) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbWriteOnlyFiler::readBool(bool&) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbWriteOnlyFiler::readBytes(void*, size_t) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbWriteOnlyFiler::readObjectId(PwDbObjectId& id) {
    id = PwDbObjectId();
    return Plotwright::StatusFilerError;
}

Plotwright::ErrorStatus PwDbReadOnlyFiler::writeString(const char16_t*) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbReadOnlyFiler::writeInt32(int32_t) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbReadOnlyFiler::writeInt64(int64_t) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbReadOnlyFiler::writeDouble(double) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbReadOnlyFiler::writeBool(bool) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbReadOnlyFiler::writeBytes(const void*, size_t) {
    return Plotwright::StatusFilerError;
}
Plotwright::ErrorStatus PwDbReadOnlyFiler::writeObjectId(PwDbObjectId) {
    return Plotwright::StatusFilerError;
}
