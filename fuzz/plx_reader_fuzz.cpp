// Feeds arbitrary text to the exchange file reader, and what it accepts to the database.
#include <cstddef>
#include <cstdint>
#include <string_view>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlxCodec.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    PwDbDrawingImage image;
    if (pwdbDecodePlx(text, image) == Plotwright::StatusOk) {
        PwDbDatabase database;
        database.loadImage(image);
    }
    return 0;
}
