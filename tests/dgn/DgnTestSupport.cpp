#include "dgn/DgnTestSupport.h"

#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>
#include <lodeqdb/toolkit/rx/PwRxModules.h>
#include "toolkit/dgn/PwDgnIOEntryPoints.h"

namespace dgntest {

std::shared_ptr<const DgnV7DesignFile> Document(const DgnWriter::DgnV7Writer& writer,
                                                const wstring& path) {
    std::shared_ptr<const DgnV7DesignFile> document;
    EXPECT_EQ(DgnV7DesignFile::fromBytes(writer.bytes(), path, document), Plotwright::StatusOk);
    return document;
}

Plotwright::ErrorStatus Translate(const DgnWriter::DgnV7Writer& writer,
                                  const DgnTranslation& translation, PwDbDatabase& drawing,
                                  DgnConvertReport& report) {
    const auto document = Document(writer);
    if (document == nullptr) return Plotwright::StatusBadFileFormat;
    return dgnTranslate(*document, translation, drawing, report);
}

namespace {

template <class F>
bool Bind(F& function, const char* name) {
    function = reinterpret_cast<F>(pwrxServiceSymbol(kPwDgnServiceName, name));
    EXPECT_NE(function, nullptr) << name;
    return function != nullptr;
}

}  // namespace

bool DgnModule::bind() {
    EXPECT_TRUE(pwrxLoadModule(kPwDgnModuleName, false, true)) << "PwDgnIO.qdb did not load";
    bool all = true;
    all &= Bind(isDgnFile, "DGNIsDgnFile");
    all &= Bind(loadFile, "DGNLoadFile");
    all &= Bind(closeFile, "DGNCloseFile");
    all &= Bind(getItemCount, "DGNGetItemCount");
    all &= Bind(getItem, "DGNGetItem");
    all &= Bind(closeItem, "DGNCloseItem");
    all &= Bind(getItemName, "DGNGetItemName");
    all &= Bind(convertItemEx, "DGNConvertItemEx");
    all &= Bind(getFileReferences, "DGNGetFileReferences");
    all &= Bind(getConvertReport, "DGNGetConvertReport");
    return all;
}

std::vector<uint8_t> CompoundDocument(const std::u16string& entry) {
    std::vector<uint8_t> bytes(1024, 0);
    const uint8_t signature[8] = {0xD0, 0xCF, 0x11, 0xE0, 0xA1, 0xB1, 0x1A, 0xE1};
    std::copy(std::begin(signature), std::end(signature), bytes.begin());
    bytes[0x1A] = 0x3E;  // minor and major version, byte order mark: as every such file has
    bytes[0x1C] = 0xFE;
    bytes[0x1D] = 0xFF;
    bytes[0x1E] = 9;  // 512-byte sectors
    // The directory starts in sector 0, right after the header.
    const auto putName = [&](size_t at, const std::u16string& name) {
        for (size_t i = 0; i < name.size(); ++i) {
            bytes[at + 2 * i] = static_cast<uint8_t>(name[i] & 0xFF);
            bytes[at + 2 * i + 1] = static_cast<uint8_t>(name[i] >> 8);
        }
        bytes[at + 0x40] = static_cast<uint8_t>(2 * (name.size() + 1));
    };
    putName(512, u"Root Entry");
    putName(512 + 128, entry);
    return bytes;
}

std::vector<uint8_t> LineElement(int32_t x1, int32_t y1, int32_t x2, int32_t y2) {
    std::vector<uint8_t> bytes(52, 0);
    bytes[0] = 1;  // level 1
    bytes[1] = 3;  // type 3
    bytes[2] = 24;
    const auto putLong = [&](size_t at, int32_t value) {
        const auto bits = static_cast<uint32_t>(value);
        bytes[at] = static_cast<uint8_t>(bits >> 16);
        bytes[at + 1] = static_cast<uint8_t>(bits >> 24);
        bytes[at + 2] = static_cast<uint8_t>(bits);
        bytes[at + 3] = static_cast<uint8_t>(bits >> 8);
    };
    putLong(36, x1);
    putLong(40, y1);
    putLong(44, x2);
    putLong(48, y2);
    return bytes;
}

}  // namespace dgntest
