// The DGN design files of the sample project, written with the DGN V7 writer.
#include "tools/SampleDesignFiles.h"

#include <stdexcept>

#include "tools/dgnwriter/DgnV7Writer.h"

namespace lodeqdb::cli {

void WriteSampleDesignFiles(const std::string& folder) {
    // 10 units of resolution a millimetre, 1000 millimetres a metre.
    DgnWriter::DgnV7Writer terrain(true);
    for (int32_t height = 0; height < 4; ++height) {
        const int32_t inset = height * 5000;
        terrain.addShape(20 + height, {{inset, inset, height * 10000},
                                       {200000 - inset, inset, height * 10000},
                                       {200000 - inset, 150000 - inset, height * 10000},
                                       {inset, 150000 - inset, height * 10000}});
    }
    if (!terrain.save(folder + "/terrain.dgn"))
        throw std::runtime_error("can't write " + folder + "/terrain.dgn");

    DgnWriter::DgnV7Writer site(false);
    site.addShape(1, {{0, 0}, {200000, 0}, {200000, 150000}, {0, 150000}});
    site.addLineString(2, {{20000, 20000}, {90000, 20000}, {90000, 60000}});
    site.addText(3, {20000, 140000}, "SITE PLAN", 4000);
    site.beginCell("TREE", {120000, 90000}, 4);
    site.addEllipse(4, 120000, 90000, 0, 3000, 3000, 0);
    site.endComplex();
    DgnWriter::Attachment attachment;
    attachment.fileName = "terrain.dgn";
    attachment.logicalName = "TERRAIN";
    attachment.description = "Contours of the survey";
    site.addAttachment(attachment);
    if (!site.save(folder + "/site.dgn"))
        throw std::runtime_error("can't write " + folder + "/site.dgn");
}

}  // namespace lodeqdb::cli
