// Preview images straight from a file's bytes.
#include <lodeqdb/toolkit/file/PwDbPreview.h>

#include <optional>
#include <string>
#include <vector>

#include "toolkit/file/PwDbPlwCodec.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>

struct PwBitmap {
    uint32_t width = 0;
    uint32_t height = 0;
    std::vector<uint32_t> pixels;
};

struct PwPalette {
    std::vector<uint32_t> colours;
};

bool pwdbGetPreviewBitmapFromPlw(const char16_t* path, HBITMAP* bitmap, HPALETTE* palette) {
    if (bitmap != nullptr) *bitmap = nullptr;
    if (palette != nullptr) *palette = nullptr;
    if (path == nullptr || bitmap == nullptr) return false;
    std::string bytes;
    namespace FileIO = Morvane::Plotwright::PAL::FileIO;
    if (FileIO::ReadWholeFileIfItStartsWell(path, FileIO::kShareRead, kPwDbPlwStartBytes,
                                            pwdbPlwStartFits, bytes) != Plotwright::StatusOk) {
        return false;
    }
    std::optional<PwDbPreviewImage> preview;
    if (pwdbDecodePlwPreview(bytes, preview) != Plotwright::StatusOk || !preview) return false;
    *bitmap = new PwBitmap{preview->width, preview->height, std::move(preview->pixels)};
    return true;
}

bool pwdbBitmapSize(HBITMAP bitmap, uint32_t& width, uint32_t& height) {
    if (bitmap == nullptr) return false;
    width = bitmap->width;
    height = bitmap->height;
    return true;
}

const uint32_t* pwdbBitmapPixels(HBITMAP bitmap) {
    return bitmap != nullptr ? bitmap->pixels.data() : nullptr;
}

uint32_t pwdbPaletteSize(HPALETTE palette) {
    return palette != nullptr ? static_cast<uint32_t>(palette->colours.size()) : 0;
}

void pwdbDeleteBitmap(HBITMAP bitmap) {
    delete bitmap;
}

void pwdbDeletePalette(HPALETTE palette) {
    delete palette;
}
