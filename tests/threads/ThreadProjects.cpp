// Writing the small projects that the thread tests read, walk and classify.
#include "threads/ThreadProjects.h"

#include <zlib.h>

#include <fstream>
#include <stdexcept>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include "tools/dgnwriter/DgnV7Writer.h"

namespace lodeqdbtest {
namespace {

void Check(Plotwright::ErrorStatus status, const std::string& what) {
    if (status != Plotwright::StatusOk)
        throw std::runtime_error(what + " failed with status " + std::to_string(status));
}

void WriteBytes(const std::string& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary);
    out << bytes;
    if (!out) throw std::runtime_error("can't write " + path);
}

void BigEndian(std::string& out, uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) out.push_back(static_cast<char>(value >> shift));
}

// A PNG signature and header chunk: all that a definition's header check reads.
std::string PngHeader() {
    std::string png("\x89PNG\r\n\x1a\n", 8);
    std::string chunk("IHDR", 4);
    BigEndian(chunk, 8);
    BigEndian(chunk, 8);
    chunk += std::string("\x08\x00\x00\x00\x00", 5);
    BigEndian(png, 13);
    png += chunk;
    BigEndian(png, static_cast<uint32_t>(crc32(0, reinterpret_cast<const Bytef*>(chunk.data()),
                                               static_cast<uInt>(chunk.size()))));
    return png;
}

void Save(PwDbDatabase& drawing, const std::string& path) {
    Check(drawing.saveAs(LodeUtil::Utf16FromUtf8(path).c_str(), false,
                         PwDb::PwDbPlwVersionCurrent),
          "saving " + path);
}

}  // namespace

void WriteThreadProject(const std::string& folder, int depth) {
    for (int level = depth; level >= 1; --level) {
        auto drawing = PwDbAuthoring::createDrawing();
        Check(PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                     {double(level), 1, 0}),
              "a line");
        if (level < depth)
            Check(PwDbAuthoring::addXref(*drawing, u"NEXT",
                                         LodeUtil::Utf16FromUtf8("d" + std::to_string(level + 1) +
                                                                 ".plw")),
                  "a reference");
        Save(*drawing, folder + "/d" + std::to_string(level) + ".plw");
    }
    WriteBytes(folder + "/photo.png", PngHeader());
    WriteBytes(folder + "/plan.pdf", "%PDF-1.4\n1 0 obj\n<< /Type /Catalog >>\nendobj\n%%EOF\n");
    for (int i = 1; i >= 0; --i) {
        DgnWriter::DgnV7Writer dgn(false);
        dgn.addLine(1, {0, 0, 0}, {10, 10, 0});
        if (i == 0) {
            DgnWriter::Attachment attachment;
            attachment.fileName = "g1.dgn";
            dgn.addAttachment(attachment);
        }
        if (!dgn.save(folder + "/g" + std::to_string(i) + ".dgn"))
            throw std::runtime_error("can't write a design file");
    }
    WriteBytes(folder + "/broken.plw", "PW1032 and then nothing that a drawing holds");

    auto root = PwDbAuthoring::createDrawing();
    PwDbDatabase& db = *root;
    Check(PwDbAuthoring::addXref(db, u"FIRST", u"d1.plw"), "a reference");
    Check(PwDbAuthoring::addXref(db, u"GONE", u"missing.plw"), "a reference");
    PwDbObjectId photo, plan, survey;
    Check(PwDbAuthoring::addRasterImageDef(db, u"PHOTO", u"photo.png", &photo), "an image");
    Check(PwDbAuthoring::addRasterImage(db, db.modelSpaceId(), photo, {0, 0, 0}, 4, 4), "an image");
    Check(PwDbAuthoring::addUnderlayDefinition(db, PwDbPdfDefinition::desc(), u"PLAN", u"plan.pdf",
                                               u"1", &plan),
          "an underlay");
    Check(PwDbAuthoring::addUnderlayReference(db, db.modelSpaceId(), plan, {0, 0, 0}),
          "an underlay");
    Check(PwDbAuthoring::addUnderlayDefinition(db, PwDbDgnDefinition::desc(), u"SURVEY",
                                               u"g0.dgn", u"Default", &survey),
          "an underlay");
    Check(PwDbAuthoring::addUnderlayReference(db, db.modelSpaceId(), survey, {0, 0, 0}),
          "an underlay");
    Save(db, folder + "/root.plw");
    Check(db.plxOut(LodeUtil::Utf16FromUtf8(folder + "/root.plx").c_str(), 16,
                    PwDb::PwDbPlwVersionCurrent),
          "the exchange copy");
}

}  // namespace lodeqdbtest
