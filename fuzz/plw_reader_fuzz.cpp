// Feeds arbitrary bytes to the native drawing reader, and what it accepts to the database.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PwDbDrawingImage image;
    if (pwdbDecodePlw(bytes, image) == Plotwright::StatusOk) {
        PwDbDatabase database;
        database.loadImage(image);
    }
    std::optional<PwDbPreviewImage> preview;
    pwdbDecodePlwPreview(bytes, preview);
    return 0;
}
