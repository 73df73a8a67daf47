// An object's persistent data in wide strings and integers: one filer item each.
//
//   Plotwright::ErrorStatus MyRecord::plwInFields(PwDbPlwFiler* filer) {
//       if (auto status = pwdb::readItem(*filer, m_title)) return status;
//       return pwdb::readItem(*filer, m_revision);
//   }
//
// A text is one string item of the filer (the filer decides how it is stored; no length of our
// own goes with it); an integer is one 32-bit item. A failed read leaves the value as it was.
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

class PwDbPlwFiler;

namespace pwdb {

Plotwright::ErrorStatus readItem(PwDbPlwFiler& filer, int& value);
Plotwright::ErrorStatus readItem(PwDbPlwFiler& filer, wstring& value);
Plotwright::ErrorStatus writeItem(PwDbPlwFiler& filer, int value);
Plotwright::ErrorStatus writeItem(PwDbPlwFiler& filer, const wstring& value);

}  // namespace pwdb
