// Status to exception, in a fixed order of tests.
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>

#include <lodeqdb/platform/LodeExceptions.h>

namespace LodeQDBUtil {

void ThrowLodeExceptionOnFile(Plotwright::ErrorStatus status, const wstring& file) {
    if (status == Plotwright::StatusOk) return;
    if (status == Plotwright::StatusFileNotFound) throw lode::NotFound(file);
    if (status == Plotwright::StatusBadFileFormat) throw lode::InvalidFormat(file);
    if (Plotwright::IsSecurityStatus(status)) throw lode::SecurityError(file);
    throw lode::ReadError(file);
}

}  // namespace LodeQDBUtil
