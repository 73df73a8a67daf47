// Writing reference chains and dense reference graphs for tests.
#include "support/ReferenceTrees.h"

#include <fstream>
#include <stdexcept>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwCodec.h"
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include "tools/dgnwriter/DgnV7Writer.h"

namespace lodeqdbtest {
namespace {

void Check(Plotwright::ErrorStatus status, const char* what) {
    if (status != Plotwright::StatusOk)
        throw std::runtime_error(std::string(what) + " failed with status " +
                                 std::to_string(static_cast<int>(status)));
}

void WriteDrawing(const PwDbDatabase& drawing, const std::string& path) {
    PwDbDrawingImage image;
    Check(drawing.captureImage(image, PwDb::PwDbPlwVersionCurrent), "captureImage");
    std::string bytes;
    Check(pwdbEncodePlw(image, bytes), "pwdbEncodePlw");
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    if (!out) throw std::runtime_error("can't write " + path);
}

wstring Wide(const std::string& text) {
    return LodeUtil::Utf16FromUtf8(text);
}

}  // namespace

void WriteReferenceChain(const std::string& folder, int count) {
    for (int i = 0; i < count; ++i) {
        auto drawing = PwDbAuthoring::createDrawing();
        if (i + 1 < count)
            Check(PwDbAuthoring::addXref(*drawing, u"NEXT",
                                         Wide("d" + std::to_string(i + 1) + ".plw")),
                  "addXref");
        WriteDrawing(*drawing, folder + "/d" + std::to_string(i) + ".plw");
    }
}

void WriteDenseReferences(const std::string& folder, int count) {
    for (int i = 0; i < count; ++i) {
        auto drawing = PwDbAuthoring::createDrawing();
        for (int j = 0; j < count; ++j) {
            if (j == i) continue;
            Check(PwDbAuthoring::addXref(*drawing, Wide("R" + std::to_string(j)),
                                         Wide("n" + std::to_string(j) + ".plw")),
                  "addXref");
        }
        WriteDrawing(*drawing, folder + "/n" + std::to_string(i) + ".plw");
    }
}

void WriteDesignFileChain(const std::string& folder, int count) {
    for (int i = 0; i < count; ++i) {
        DgnWriter::DgnV7Writer dgn(false);
        dgn.addLine(1, {0, 0, 0}, {10, 10, 0});
        if (i + 1 < count) {
            DgnWriter::Attachment attachment;
            attachment.fileName = "g" + std::to_string(i + 1) + ".dgn";
            dgn.addAttachment(attachment);
        }
        if (!dgn.save(folder + "/g" + std::to_string(i) + ".dgn"))
            throw std::runtime_error("can't write a design file");
    }
    auto root = PwDbAuthoring::createDrawing();
    Check(PwDbAuthoring::addUnderlayDefinition(*root, PwDbDgnDefinition::desc(), u"G0", u"g0.dgn",
                                               u""),
          "addUnderlayDefinition");
    WriteDrawing(*root, folder + "/root.plw");
}

}  // namespace lodeqdbtest
