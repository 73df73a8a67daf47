// Writing large sample folders: drawings built with the authoring interface and written
// straight from the toolkit's encoder (a save flushes every file to the disk, which would
// make a folder of 100,000 drawings take minutes for nothing a test needs).
#include "tools/samplefolder/SampleFolder.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <system_error>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include "toolkit/file/PwDbDrawingImage.h"
#include "toolkit/file/PwDbPlwIndexed.h"
#include "tools/dgnwriter/DgnV7Writer.h"
#include "tools/samplefolder/SampleFiles.h"

namespace lodeqdb::samples {
namespace {

constexpr size_t kTitles = 3;
constexpr size_t kLibraries = 5;
constexpr size_t kPerProject = 50;

void Check(Plotwright::ErrorStatus status, const std::string& what) {
    if (status != Plotwright::StatusOk)
        throw std::runtime_error(what + " failed with status " + std::to_string(status));
}

std::string Numbered(const std::string& stem, size_t number, int width) {
    std::string digits = std::to_string(number);
    if (digits.size() < static_cast<size_t>(width)) digits.insert(0, width - digits.size(), '0');
    return stem + digits;
}

void MakeFolder(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) throw std::runtime_error("can't make " + path + ": " + error.message());
}

class Drawing {
  public:
    explicit Drawing(double size) {
        Check(PwDbAuthoring::addLine(*db_, db_->modelSpaceId(), {0, 0, 0}, {size, size / 2, 0}),
              "a line");
    }
    Drawing& Reference(const std::string& name, const std::string& path) {
        Check(PwDbAuthoring::addXref(*db_, LodeUtil::Utf16FromUtf8(name),
                                     LodeUtil::Utf16FromUtf8(path)),
              "a reference");
        return *this;
    }
    Drawing& Image(const std::string& path) {
        PwDbObjectId definition;
        Check(PwDbAuthoring::addRasterImageDef(*db_, u"PHOTO", LodeUtil::Utf16FromUtf8(path),
                                               &definition),
              "an image");
        Check(
            PwDbAuthoring::addRasterImage(*db_, db_->modelSpaceId(), definition, {0, 0, 0}, 40, 40),
            "an image");
        return *this;
    }
    Drawing& Underlay(PwRxClass* kind, const char16_t* key, const std::string& path,
                      const char16_t* item) {
        PwDbObjectId definition;
        Check(PwDbAuthoring::addUnderlayDefinition(*db_, kind, key, LodeUtil::Utf16FromUtf8(path),
                                                   item, &definition),
              "an underlay");
        Check(PwDbAuthoring::addUnderlayReference(*db_, db_->modelSpaceId(), definition, {0, 0, 0}),
              "an underlay");
        return *this;
    }
    void Write(const std::string& path) const {
        PwDbDrawingImage image;
        Check(db_->captureImage(image, PwDb::PwDbPlwVersionCurrent), "capturing " + path);
        // The layout every save of the toolkit writes, without the flush of a save: a folder of
        // ten thousand drawings is written in seconds.
        std::string bytes;
        Check(pwdbEncodePlwIndexed(image, bytes), "encoding " + path);
        WriteBytes(path, bytes);
    }

  private:
    std::unique_ptr<PwDbDatabase> db_ = PwDbAuthoring::createDrawing();
};

void WriteDesignFiles(const std::string& folder) {
    DgnWriter::DgnV7Writer terrain(true);
    terrain.addShape(20, {{0, 0, 0}, {200000, 0, 0}, {200000, 150000, 0}, {0, 150000, 0}});
    if (!terrain.save(folder + "/terrain.dgn"))
        throw std::runtime_error("can't write " + folder + "/terrain.dgn");
    DgnWriter::DgnV7Writer site(false);
    site.addLineString(2, {{20000, 20000}, {90000, 20000}, {90000, 60000}});
    DgnWriter::Attachment attachment;
    attachment.fileName = "terrain.dgn";
    attachment.logicalName = "TERRAIN";
    site.addAttachment(attachment);
    if (!site.save(folder + "/site.dgn"))
        throw std::runtime_error("can't write " + folder + "/site.dgn");
}

// One project: base.plw and `sheets` sheets.
void WriteProject(const std::string& folder, size_t project, size_t sheets,
                  SampleFolderCounts& counts) {
    MakeFolder(folder + "/sheets");
    // Odd projects write their paths as Windows does, with backslashes.
    const bool windows = project % 2 == 1;
    const auto path = [windows](std::string text) {
        if (windows)
            for (char& c : text)
                if (c == '/') c = '\\';
        return text;
    };
    Drawing(10)
        .Reference("LIB",
                   path("../shared/lib/" + Numbered("lib-", project % kLibraries, 1) + ".plw"))
        .Write(folder + "/base.plw");
    ++counts.drawings;
    if (sheets >= 10) {
        MakeFolder(folder + "/images");
        WriteBytes(folder + "/images/photo.png", PngBytes());
        ++counts.images;
    }
    if (sheets >= 15) {
        MakeFolder(folder + "/docs");
        WriteBytes(folder + "/docs/notes.pdf", PdfBytes());
        ++counts.pdfs;
    }
    if (sheets >= 20) {
        MakeFolder(folder + "/survey");
        WriteDesignFiles(folder + "/survey");
        counts.designFiles += 2;
    }
    for (size_t j = 1; j <= sheets; ++j) {
        Drawing sheet(static_cast<double>(j));
        sheet.Reference("BASE", path("../base.plw"))
            .Reference("TITLE", path("../../shared/titles/" +
                                     Numbered("title-", project % kTitles, 1) + ".plw"))
            .Reference("LIB", path("../../shared/lib/" +
                                   Numbered("lib-", (project + j) % kLibraries, 1) + ".plw"));
        if (j % 10 == 0) sheet.Image(path("../images/photo.png"));
        if (j % 15 == 0)
            sheet.Underlay(PwDbPdfDefinition::desc(), u"NOTES", path("../docs/notes.pdf"), u"1");
        if (j % 20 == 0)
            sheet.Underlay(PwDbDgnDefinition::desc(), u"SURVEY", path("../survey/site.dgn"),
                           u"Default");
        if (j % 25 == 0) {
            sheet.Reference("OLD", path("../old/" + Numbered("gone-", j, 3) + ".plw"));
            ++counts.missingReferences;
        }
        if (j % 40 == 0 && j < sheets) {
            sheet.Reference("NEXT", Numbered("sheet-", j + 1, 3) + ".plw");
            ++counts.cycles;
        }
        if (j % 40 == 1 && j > 1)
            sheet.Reference("PREVIOUS", Numbered("sheet-", j - 1, 3) + ".plw");
        sheet.Write(folder + "/sheets/" + Numbered("sheet-", j, 3) + ".plw");
        ++counts.drawings;
    }
}

}  // namespace

SampleFolderCounts WriteSampleFolder(const std::string& folder, size_t drawings) {
    if (drawings == 0) throw std::runtime_error("a sample folder needs at least one drawing");
    SampleFolderCounts counts;
    MakeFolder(folder + "/shared/titles");
    MakeFolder(folder + "/shared/lib");
    for (size_t t = 0; t < kTitles && counts.drawings < drawings; ++t) {
        Drawing(5).Write(folder + "/shared/titles/" + Numbered("title-", t, 1) + ".plw");
        ++counts.drawings;
    }
    for (size_t l = 0; l < kLibraries && counts.drawings < drawings; ++l) {
        Drawing(7)
            .Reference("TITLE", "../titles/" + Numbered("title-", l % kTitles, 1) + ".plw")
            .Write(folder + "/shared/lib/" + Numbered("lib-", l, 1) + ".plw");
        ++counts.drawings;
    }
    for (size_t project = 0; counts.drawings < drawings; ++project) {
        const size_t inProject = std::min(kPerProject, drawings - counts.drawings);
        WriteProject(folder + "/" + Numbered("proj-", project, 4), project, inProject - 1, counts);
    }
    return counts;
}

}  // namespace lodeqdb::samples
