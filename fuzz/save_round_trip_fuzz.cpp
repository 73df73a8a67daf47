// Reads arbitrary bytes as a drawing (native when they start like a native file, else as an
// exchange file), then saves what was read in both formats and reads each save again. A
// drawing the toolkit wrote must read back, and saving it again must give the same bytes;
// anything else is a finding.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlxCodec.h"

namespace {

using Plotwright::StatusOk;

constexpr int kPrecision = 16;

bool Decode(std::string_view bytes, bool native, PwDbDrawingImage& image) {
    return (native ? pwdbDecodePlw(bytes, image) : pwdbDecodePlx(bytes, image)) == StatusOk;
}

// The bytes a save of `database` writes, in the current version.
bool Encode(const PwDbDatabase& database, bool native, std::string& bytes) {
    PwDbDrawingImage image;
    if (database.captureImage(image, PwDb::PwDbPlwVersionCurrent) != StatusOk) return false;
    return (native ? pwdbEncodePlw(image, bytes) : pwdbEncodePlx(image, kPrecision, bytes)) ==
           StatusOk;
}

// Saves `database` in one format, reads the save, saves that again: both saves must agree.
void RoundTrip(const PwDbDatabase& database, bool native) {
    std::string saved;
    if (!Encode(database, native, saved)) return;  // a status, not a crash: nothing to check
    PwDbDrawingImage image;
    if (!Decode(saved, native, image)) std::abort();  // the toolkit's own file didn't read
    PwDbDatabase again;
    if (again.loadImage(image) != StatusOk) std::abort();
    std::string savedAgain;
    if (!Encode(again, native, savedAgain) || savedAgain != saved) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PwDbDrawingImage image;
    // Native files open with their version signature, "PW" and four digits.
    const bool native = bytes.starts_with("PW");
    if (!Decode(bytes, native, image)) return 0;
    PwDbDatabase database;
    if (database.loadImage(image) != StatusOk) return 0;
    RoundTrip(database, true);
    RoundTrip(database, false);
    return 0;
}
