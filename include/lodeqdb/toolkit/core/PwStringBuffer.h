// Plain zero-terminated wide buffers on the toolkit heap, for interfaces that hand out text.
//
// Defines pwutNewString and pwutDelBuffer.
//
//   char16_t* copy = nullptr;
//   if (pwutNewString(u"host.plw", copy) != Plotwright::StatusOk) return;
//   ...
//   pwutDelBuffer(copy);   // copy is null afterwards
#pragma once

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

/// Copies the zero-terminated `text` into a new buffer from pwHeapAlloc; `out` receives it and
/// the caller owns it until it goes back through pwutDelBuffer.
/// A null `text` gives StatusInvalidInput; a buffer that cannot be had gives
/// StatusOutOfMemory. On any failure `out` is null (whatever it held before is not freed).
Plotwright::ErrorStatus pwutNewString(const char16_t* text, char16_t*& out);

/// Frees a buffer from pwutNewString and sets `buffer` to null. A null `buffer` is allowed
/// and does nothing.
void pwutDelBuffer(char16_t*& buffer);
