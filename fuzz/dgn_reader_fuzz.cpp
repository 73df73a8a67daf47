// Feeds arbitrary bytes to the DGN V7 reader: the file test, the control block, the element
// stream with its complex components, the attachments, and the translation into a drawing.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "modules/dgn/DgnConvertReport.h"
#include "modules/dgn/DgnV7Attachments.h"
#include "modules/dgn/DgnV7DesignFile.h"
#include "modules/dgn/DgnV7Translator.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    std::vector<uint8_t> bytes(data, data + size);
    dgnClassifyBytes(bytes, bytes.size(), u"fuzz.dgn");
    std::shared_ptr<const DgnV7DesignFile> document;
    if (DgnV7DesignFile::fromBytes(std::move(bytes), u"", document) != Plotwright::StatusOk)
        return 0;
    dgnCollectAttachments(*document);
    for (bool cellsAsBlocks : {true, false}) {
        PwDbDatabase drawing;
        DgnTranslation translation;
        translation.cellsAsBlocks = cellsAsBlocks;
        translation.masterUnits = cellsAsBlocks;
        DgnConvertReport report;
        dgnTranslate(*document, translation, drawing, report);
        report.rows();
    }
    return 0;
}
