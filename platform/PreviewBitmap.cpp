// A drawing file's preview image as a bitmap, read without opening the drawing.
#include <lodeqdb/platform/PreviewBitmap.h>

#include <lodeqdb/lodeutil/BStr.h>

namespace pwdb {

bool GetPreviewBitmapFromPlw(const wstring& path, HBITMAP& bitmap, HPALETTE& palette) {
    const LodeUtil::BStr text = LodeUtil::ToBstr(path);
    return pwdbGetPreviewBitmapFromPlw(text, &bitmap, &palette);
}

}  // namespace pwdb
