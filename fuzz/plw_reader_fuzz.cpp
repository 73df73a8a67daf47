// Feeds arbitrary bytes to the native drawing reader, whole and lazily: the codec, the
// database loading what it accepts, and a database reading the bytes as a file, then
// decoding every record and saving the drawing again.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObject.h>
#include "toolkit/db/PwDbStub.h"
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"

namespace {

const std::string& ScratchFile(const char* suffix) {
    static const std::string base = "/tmp/plw-fuzz-" + std::to_string(getpid());
    static std::string names[2] = {base + "-in.plw", base + "-out.plw"};
    return names[suffix[0] == 'o' ? 1 : 0];
}

void ReadLazily(std::string_view bytes) {
    const std::string& in = ScratchFile("in");
    std::ofstream(in, std::ios::binary | std::ios::trunc).write(bytes.data(),
                                                               static_cast<std::streamsize>(bytes.size()));
    PwDbDatabase database(false, true);
    if (database.readPlwFile(LodeUtil::Utf16FromUtf8(in).c_str(),
                             PwDbDatabase::OpenModeShareRead) != Plotwright::StatusOk) {
        return;
    }
    // Saved first, while records are still pending: they go out from their stored bytes.
    database.saveAs(LodeUtil::Utf16FromUtf8(ScratchFile("out")).c_str(), false,
                    PwDb::PwDbPlwVersionCurrent);
    pwdbForEachStub(database, [](const PwDbStub& stub) {
        if (stub.object != nullptr) (void)stub.object->isErased();
    });
    database.closeInput(true);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);
    PwDbDrawingImage image;
    if (pwdbDecodePlw(bytes, image) == Plotwright::StatusOk) {
        PwDbDatabase database;
        database.loadImage(image);
    }
    std::optional<PwDbPreviewImage> preview;
    pwdbDecodePlwPreview(bytes, preview);
    ReadLazily(bytes);
    return 0;
}
