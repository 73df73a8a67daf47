// The sample project:
//   site.plw               the root: references, a photo, a PDF plan, layers with different
//                          flags, paper layouts with and without paper, named plot settings,
//                          a table of rooms in a text style of its own, a revision table of
//                          three entries
//   blocks/title.plw       referred to by site.plw and by floors/ground.plw (shared)
//   floors/ground.plw      refers to ../blocks/title.plw (written with '\') and upper.plw
//   floors/upper.plw       refers to furniture/chairs.plw (written with '/')
//   floors/furniture/chairs.plw   three levels below the root
//   loop/a.plw, loop/b.plw a cycle: a refers to b, b to a
//   site.plw also refers to a drawing that isn't there, missing/old.plw
//   images/photo.png       a real PNG, placed in site.plw
//   docs/plan.pdf          a small valid PDF, an underlay of site.plw
//   survey/site.dgn        a DGN V7 design file, an underlay of site.plw, which attaches
//   survey/terrain.dgn     another design file
//   site.plx               the root again, as an exchange file beside it
#include "tools/SampleProject.h"

#include "tools/SampleDesignFiles.h"

#include <stdexcept>
#include <vector>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/revisionblock/BlockMgr.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/table/PwDbTableAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include "tools/samplefolder/SampleFiles.h"
#include "tools/templates/RevisionBlockTemplate.h"

namespace lodeqdb::cli {
namespace {

void Check(Plotwright::ErrorStatus status, const std::string& what) {
    if (status != Plotwright::StatusOk)
        throw std::runtime_error(what + " failed with status " + std::to_string(status));
}

struct Drawing {
    std::unique_ptr<PwDbDatabase> database = PwDbAuthoring::createDrawing();

    Drawing& Line(double length) {
        Check(PwDbAuthoring::addLine(*database, database->modelSpaceId(), {0, 0, 0},
                                     {length, length / 2, 0}),
              "a line");
        return *this;
    }
    Drawing& Reference(const wstring& name, const wstring& path) {
        Check(PwDbAuthoring::addXref(*database, name, path), "a reference");
        return *this;
    }
    void Save(const std::string& path) {
        Check(database->saveAs(LodeUtil::Utf16FromNative(path).c_str(), false,
                               PwDb::PwDbPlwVersionCurrent),
              "saving " + path);
    }
};

// The revision table as a release tool makes it: the block imported from a drawing of the
// template's design, placed right of the plan, its rows written by an update. The manager is
// gone before the drawing is saved.
void AddRevisionTable(PwDbDatabase& drawing) {
    auto design = PwDbAuthoring::createDrawing();
    Check(templates::AddRevisionBlock(*design), "the revision block");
    RevisionBlock::BlockMgr manager(drawing);
    manager.ImportBlockDefinition(*design);
    manager.InsertBlockInstance(200.0, 0.0, 1.0);
    RevisionBlock::UpdateContext wanted;
    wanted.rows = {
        {{u"REV", u"A"},
         {u"DATE", u"2024-01-15"},
         {u"DESCRIPTION", u"First issue"},
         {u"BY", u"JM"}},
        {{u"REV", u"B"},
         {u"DATE", u"2024-03-02"},
         {u"DESCRIPTION", u"Stair moved to the east wall"},
         {u"BY", u"JM"}},
        {{u"REV", u"C"},
         {u"DATE", u"2024-06-20"},
         {u"DESCRIPTION", u"Survey of the site added"},
         {u"BY", u"AK"}},
    };
    wanted.keyColumns = {u"REV"};
    wanted.columns = {u"REV", u"DATE", u"DESCRIPTION", u"BY"};
    manager.Update(wanted);
}

}  // namespace

std::string WriteSampleProject(const std::string& folder) {
    for (const char* sub : {"blocks", "floors/furniture", "loop", "images", "docs", "survey"}) {
        if (!LodeUtil::Directory::CreateDirectory(LodeUtil::Utf16FromNative(folder + "/" + sub)))
            throw std::runtime_error("can't make " + folder + "/" + sub);
    }
    samples::WriteBytes(folder + "/images/photo.png", samples::PngBytes());
    samples::WriteBytes(folder + "/docs/plan.pdf", samples::PdfBytes());
    WriteSampleDesignFiles(folder + "/survey");

    Drawing().Line(10).Save(folder + "/floors/furniture/chairs.plw");
    Drawing()
        .Line(20)
        .Reference(u"CHAIRS", u"furniture/chairs.plw")
        .Save(folder + "/floors/upper.plw");
    Drawing().Line(5).Save(folder + "/blocks/title.plw");
    Drawing()
        .Line(30)
        .Reference(u"TITLE", u"..\\blocks\\title.plw")
        .Reference(u"UPPER", u"upper.plw")
        .Save(folder + "/floors/ground.plw");
    Drawing().Reference(u"B", u"b.plw").Save(folder + "/loop/a.plw");
    Drawing().Reference(u"A", u"a.plw").Save(folder + "/loop/b.plw");

    Drawing site;
    site.Line(100)
        .Reference(u"GROUND", u"floors\\ground.plw")
        .Reference(u"TITLE", u"blocks/title.plw")
        .Reference(u"LOOP", u"loop/a.plw")
        .Reference(u"OLD", u"missing/old.plw");
    PwDbDatabase& db = *site.database;
    // Layers with different flags: Walls is in use (a line lies on it), the others are not.
    PwDbAuthoring::LayerOptions frozen;
    frozen.frozen = true;
    frozen.description = u"Hidden furniture";
    PwDbAuthoring::LayerOptions lockedOff;
    lockedOff.locked = true;
    lockedOff.off = true;
    lockedOff.description = u"Notes, locked and off";
    PwDbAuthoring::LayerOptions hiddenReconciled;
    hiddenReconciled.hidden = true;
    hiddenReconciled.reconciled = true;
    PwDbObjectId walls;
    Check(PwDbAuthoring::addLayer(db, u"Walls", {}, &walls), "a layer");
    Check(PwDbAuthoring::addLayer(db, u"Furniture", frozen), "a layer");
    Check(PwDbAuthoring::addLayer(db, u"Annotations", lockedOff), "a layer");
    Check(PwDbAuthoring::addLayer(db, u"Existing", hiddenReconciled), "a layer");
    Check(PwDbAuthoring::addLine(db, db.modelSpaceId(), {0, 0, 0}, {50, 0, 0}, walls), "a wall");
    // Paper layouts with and without a paper size, filed out of tab order.
    Check(PwDbAuthoring::addLayout(db, u"Sketch", 3, 0, 0), "a layout");
    Check(PwDbAuthoring::addLayout(db, u"Plan A1", 2, 841, 594), "a layout");
    Check(PwDbAuthoring::addPlotSettings(db, u"Draft A3", false, 420, 297), "plot settings");
    Check(PwDbAuthoring::addPlotSettings(db, u"Model check", true, 297, 210), "plot settings");
    // A schedule of rooms as a table, in a text style of its own.
    PwDbObjectId heading;
    PwDbAuthoring::TextStyleOptions bold;
    bold.fontName = u"Sans Bold";
    bold.textHeight = 5.0;
    Check(PwDbAuthoring::addTextStyle(db, u"Heading", bold, &heading), "a text style");
    PwDbAuthoring::TableDesign rooms;
    rooms.position = {60, 0, 0};
    rooms.columnWidths = {20, 50, 25};
    rooms.rows.push_back({PwDb::RowKindTitle, 10.0, {PwDbAuthoring::TableCellDesign(u"ROOMS")}});
    rooms.rows.push_back({PwDb::RowKindHeader, 8.0, {u"No.", u"Name", u"Area"}});
    rooms.rows.push_back({PwDb::RowKindData, 8.0, {u"1", u"Entrance", u"12 m\u00b2"}});
    rooms.rows.push_back({PwDb::RowKindData, 8.0, {u"2", u"Hall", u"48 m\u00b2"}});
    rooms.rows[0].cells[0].textStyle = heading;
    Check(PwDbAuthoring::addTable(db, db.modelSpaceId(), rooms), "a table");
    AddRevisionTable(db);
    PwDbObjectId photo, plan;
    Check(PwDbAuthoring::addRasterImageDef(db, u"PHOTO", u"images/photo.png", &photo), "an image");
    Check(PwDbAuthoring::addRasterImage(db, db.modelSpaceId(), photo, {0, 0, 0}, 40, 40),
          "an image");
    Check(PwDbAuthoring::addUnderlayDefinition(db, PwDbPdfDefinition::desc(), u"PLAN",
                                               u"docs\\plan.pdf", u"1", &plan),
          "an underlay");
    Check(PwDbAuthoring::addUnderlayReference(db, db.modelSpaceId(), plan, {0, 0, 0}),
          "an underlay");
    PwDbObjectId survey;
    Check(PwDbAuthoring::addUnderlayDefinition(db, PwDbDgnDefinition::desc(), u"SURVEY",
                                               u"survey\\site.dgn", u"Default", &survey),
          "an underlay");
    Check(PwDbAuthoring::addUnderlayReference(db, db.modelSpaceId(), survey, {0, 0, 0}),
          "an underlay");
    const std::string root = folder + "/site.plw";
    site.Save(root);
    Check(db.plxOut(LodeUtil::Utf16FromNative(folder + "/site.plx").c_str(), 16,
                    PwDb::PwDbPlwVersionCurrent),
          "the exchange copy");
    return LodeUtil::NativeFromUtf16(
               LodeUtil::AbsoluteFilePath(LodeUtil::Utf16FromNative(root)).FullPath())
        .value_or(root);
}

}  // namespace lodeqdb::cli
