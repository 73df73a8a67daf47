// Where on disk a file lies that a drawing depends on, as the library looks for it: the
// stored path (made absolute against the host drawing's folder), then the bare file name in
// that folder. Nothing else is searched.
//
//   wstring full;
//   if (LodeQDBUtil::FindDependentFullName(full, storedPath, &host) == Plotwright::StatusOk)
//       use(full);
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbDatabase;

namespace LodeQDBUtil {

/// Looks for the dependent `dependentPath` of `host` (may be null). StatusOk when a file was
/// found, StatusFileNotFound otherwise; `fullPath` holds the last path tried either way.
/// `fullPath` and `dependentPath` may be one string.
Plotwright::ErrorStatus FindDependentFullName(wstring& fullPath, const wstring& dependentPath,
                                              PwDbDatabase* host);

}  // namespace LodeQDBUtil
