// The one translation of a toolkit status about a file into the library's exceptions.
//
//   Plotwright::ErrorStatus status = database.readPlwFile(path, ...);
//   LodeQDBUtil::ThrowLodeExceptionOnFile(status, path);   // returns only for StatusOk
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

namespace LodeQDBUtil {

/// Returns for StatusOk and touches nothing else. Otherwise throws, with `file` as the
/// message argument: StatusFileNotFound -> lode::NotFound; StatusBadFileFormat ->
/// lode::InvalidFormat; the ten security statuses (1001-1003, 1101-1104, 1201-1203) ->
/// lode::SecurityError; every other value, negative ones included -> lode::ReadError.
void ThrowLodeExceptionOnFile(Plotwright::ErrorStatus status, const wstring& file);

}  // namespace LodeQDBUtil
