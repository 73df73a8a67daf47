// Writing the relocation tests' trees, and reading the nested walk by relative names.
#include "relocate/RelocateTrees.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/service/TreeWalks.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include "tools/dgnwriter/DgnV7Writer.h"

namespace lodeqdbtest {

void WriteDrawing(const std::string& path, const DrawingDesign& design,
                  PwDb::PwDbPlwVersion version) {
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    auto drawing = PwDbAuthoring::createDrawing();
    PwDbDatabase& db = *drawing;
    ASSERT_EQ(PwDbAuthoring::addLine(db, db.modelSpaceId(), {0, 0, 0}, {10, 5, 0}), 0);
    for (const auto& [name, stored] : design.references)
        ASSERT_EQ(PwDbAuthoring::addXref(db, name, stored), 0);
    for (const auto& [key, stored] : design.images) {
        PwDbObjectId id;
        ASSERT_EQ(PwDbAuthoring::addRasterImageDef(db, key, stored, &id), 0);
        ASSERT_EQ(PwDbAuthoring::addRasterImage(db, db.modelSpaceId(), id, {0, 0, 0}, 4, 4), 0);
    }
    auto underlays = [&](PwRxClass* kind, const std::vector<std::pair<wstring, wstring>>& list) {
        for (const auto& [key, stored] : list) {
            PwDbObjectId id;
            ASSERT_EQ(PwDbAuthoring::addUnderlayDefinition(db, kind, key, stored, u"1", &id), 0);
            ASSERT_EQ(PwDbAuthoring::addUnderlayReference(db, db.modelSpaceId(), id, {0, 0, 0}),
                      0);
        }
    };
    underlays(PwDbPdfDefinition::desc(), design.pdfs);
    underlays(PwDbDgnDefinition::desc(), design.dgns);
    const wstring wide = LodeUtil::Utf16FromUtf8(path);
    if (path.size() > 4 && path.substr(path.size() - 4) == ".plx")
        ASSERT_EQ(db.plxOut(wide.c_str(), 16, version), 0) << path;
    else
        ASSERT_EQ(db.saveAs(wide.c_str(), false, version), 0) << path;
}

std::vector<std::string> WriteProjectTree(const std::string& base, bool absolute) {
    const std::string proj = base + "/proj";
    auto name = [&](const std::string& full, const std::string& relative) {
        return LodeUtil::Utf16FromUtf8(absolute ? full : relative);
    };
    std::filesystem::create_directories(proj + "/img");
    std::filesystem::create_directories(proj + "/docs");
    std::filesystem::create_directories(proj + "/survey");
    std::ofstream(proj + "/img/pic.png", std::ios::binary)
        << std::string("\x89PNG\r\n\x1a\n", 8) << "not a whole picture";
    std::ofstream(proj + "/docs/plan.pdf", std::ios::binary) << "%PDF-1.4\n%%EOF\n";
    DgnWriter::DgnV7Writer terrain(false);
    terrain.addLine(1, {0, 0, 0}, {100, 100, 0});
    EXPECT_TRUE(terrain.save(proj + "/survey/terrain.dgn"));
    DgnWriter::DgnV7Writer site(false);
    site.addLine(1, {0, 0, 0}, {50, 50, 0});
    DgnWriter::Attachment attachment;
    attachment.fileName = "terrain.dgn";
    attachment.logicalName = "TERRAIN";
    site.addAttachment(attachment);
    EXPECT_TRUE(site.save(proj + "/survey/site.dgn"));

    DrawingDesign root;
    root.references = {{u"A", name(proj + "/sub/a.plw", "sub/a.plw")},
                       {u"SELF", name(proj + "/root.plw", "root.plw")},
                       {u"GONE", name(proj + "/gone/nothere.plw", "gone/nothere.plw")}};
    root.images = {{u"PIC", name(proj + "/img/pic.png", "img/pic.png")}};
    root.pdfs = {{u"PLAN", name(proj + "/docs/plan.pdf", "docs\\plan.pdf")}};
    root.dgns = {{u"SURVEY", name(proj + "/survey/site.dgn", "survey/site.dgn")}};
    DrawingDesign a;
    a.references = {{u"B", name(proj + "/sub/b.plw", "b.plw")},
                    {u"LIB", name(base + "/lib/shared.plw", "../../lib/shared.plw")}};
    DrawingDesign b;
    b.references = {{u"A", name(proj + "/sub/a.plw", "a.plw")}};
    const std::vector<std::string> drawings = {proj + "/root.plw", proj + "/sub/a.plw",
                                               proj + "/sub/b.plw", base + "/lib/shared.plw"};
    WriteDrawing(drawings[0], root);
    WriteDrawing(drawings[1], a);
    WriteDrawing(drawings[2], b);
    WriteDrawing(drawings[3], {});
    return drawings;
}

std::map<std::string, int> TreeByRelativeName(const std::string& root, const std::string& base,
                                              bool whole) {
    std::map<std::string, int> tree;
    LodeQDBService::Request::WalkStop stop;
    const auto records = LodeQDBService::Request::PlotwrightNestedChildren(
        LodeUtil::Utf16FromUtf8(root), true, stop);
    if (whole) {
        EXPECT_FALSE(stop.stopped) << root;
    }
    const std::string prefix =
        LodeUtil::Utf8FromUtf16(LodeUtil::AbsoluteFilePath(LodeUtil::Utf16FromUtf8(base)).FullPath()) +
        "/";
    for (const auto& record : records) {
        std::string name = LodeUtil::Utf8FromUtf16(
            LodeUtil::AbsoluteFilePath(record.GetFullname()).FullPath());
        if (name.rfind(prefix, 0) == 0) name = name.substr(prefix.size());
        tree[name] = static_cast<int>(record.GetXrefStatus());
    }
    return tree;
}

}  // namespace lodeqdbtest
