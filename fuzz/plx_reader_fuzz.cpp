// Feeds arbitrary text to the exchange file readers: the codec and the database loading what
// it accepts, and a database reading the text as a file object by object. The two must accept
// the same texts and read them as the same drawing, and what is read saves as a file that reads
// back to it.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlxCodec.h"

namespace {

wstring ScratchFile(const char* name) {
    static const std::string base = "/tmp/plx-fuzz-" + std::to_string(getpid()) + "-";
    return LodeUtil::Utf16FromUtf8(base + name);
}

// The objects and roots of a drawing, which two reads of one text must agree on.
std::string Contents(const PwDbDatabase& drawing) {
    PwDbDrawingImage image;
    if (drawing.captureImage(image, PwDb::PwDbPlwVersionCurrent) != Plotwright::StatusOk) {
        std::abort();
    }
    image.appInfo.clear();
    image.preview.reset();
    std::string text;
    if (pwdbEncodePlx(image, 17, text) != Plotwright::StatusOk) std::abort();
    return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    PwDbDrawingImage image;
    PwDbDatabase fromImage;
    const bool decoded = pwdbDecodePlx(text, image) == Plotwright::StatusOk &&
                         fromImage.loadImage(image) == Plotwright::StatusOk;

    const wstring in = ScratchFile("in.plx");
    std::ofstream(LodeUtil::Utf8FromUtf16(in), std::ios::binary | std::ios::trunc)
        .write(text.data(), static_cast<std::streamsize>(text.size()));
    PwDbDatabase fromFile;
    const Plotwright::ErrorStatus status = fromFile.plxIn(in.c_str());
    if (status != Plotwright::StatusOk && status != Plotwright::StatusBadFileFormat) std::abort();
    if ((status == Plotwright::StatusOk) != decoded) std::abort();
    if (!decoded) return 0;
    const std::string contents = Contents(fromFile);
    if (contents != Contents(fromImage)) std::abort();

    const wstring out = ScratchFile("out.plx");
    if (fromFile.plxOut(out.c_str(), 17, PwDb::PwDbPlwVersionCurrent) != Plotwright::StatusOk) {
        std::abort();
    }
    PwDbDatabase again;
    if (again.plxIn(out.c_str()) != Plotwright::StatusOk || Contents(again) != contents) {
        std::abort();
    }
    return 0;
}
