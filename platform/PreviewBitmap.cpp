#include "platform/PreviewBitmap.h"

#include "lodeutil/BStr.h"

namespace pwdb {

bool GetPreviewBitmapFromPlw(const wstring& path, HBITMAP& bitmap, HPALETTE& palette) {
    const LodeUtil::BStr text = LodeUtil::ToBstr(path);
    return pwdbGetPreviewBitmapFromPlw(text, &bitmap, &palette);
}

}  // namespace pwdb
