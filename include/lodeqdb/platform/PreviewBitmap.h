// The preview image of a native drawing file, read without opening it as a database.
//
//   HBITMAP bitmap = nullptr;
//   HPALETTE palette = nullptr;
//   if (pwdb::GetPreviewBitmapFromPlw(path, bitmap, palette)) { ...; pwdbDeleteBitmap(bitmap); }
#pragma once

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/file/PwDbPreview.h>

namespace pwdb {

/// True with a bitmap (and a palette, null for true colour) that pass to the caller; false
/// for a file without a preview or that can't be read.
bool GetPreviewBitmapFromPlw(const wstring& path, HBITMAP& bitmap, HPALETTE& palette);

}  // namespace pwdb
