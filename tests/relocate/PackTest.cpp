// Packing: the archive unpacked elsewhere holds the same tree by relative names, its manifest's
// sizes and digests match the bytes, the originals stay byte for byte, cycles and shared files
// go in once, and a pack that fails leaves no archive.
#include <lodeqdb/relocate/Pack.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>
#include <set>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "relocate/RelocateTrees.h"
#include "support/Archives.h"
#include "support/TempFolderTest.h"

namespace {

using LodeUtil::Utf16FromUtf8;
using LodeUtil::Utf8FromUtf16;

class Pack : public lodeqdbtest::TempFolderTest {
  protected:
    Pack() : TempFolderTest("lodeqdb-pack") {}

    nlohmann::json ReadManifest(const std::string& unpacked) {
        std::ifstream in(unpacked + "/manifest.json");
        return nlohmann::json::parse(in);
    }
};

TEST_F(Pack, TheArchiveOpensElsewhereWithTheSameTree) {
    const std::string base = folder + "/disk";
    const auto drawings = lodeqdbtest::WriteProjectTree(base, true);
    const auto originals = lodeqdbtest::FilesBelow(base);
    const auto expected = lodeqdbtest::TreeByRelativeName(drawings[0], base);

    const auto report = LodeQDBRelocate::Pack(Utf16FromUtf8(drawings[0]), Path("out.zip"));
    EXPECT_EQ(Utf8FromUtf16(report.baseFolder), base);
    EXPECT_EQ(report.root, "proj/root.plw");
    const std::string unpacked = folder + "/unpacked";
    const auto names = lodeqdbtest::ExtractZip(folder + "/out.zip", unpacked);

    // Every file once: the cycle a-b-a and the self-reference don't repeat anything.
    const std::set<std::string> wanted = {
        "manifest.json",         "proj/root.plw",        "proj/sub/a.plw",
        "proj/sub/b.plw",        "lib/shared.plw",       "proj/img/pic.png",
        "proj/docs/plan.pdf",    "proj/survey/site.dgn", "proj/survey/terrain.dgn"};
    EXPECT_EQ(std::set<std::string>(names.begin(), names.end()), wanted);
    EXPECT_EQ(names.size(), wanted.size());
    EXPECT_EQ(names.front(), "proj/root.plw");

    // The drawings that stored absolute paths were saved anew; the one that stored none not.
    const nlohmann::json manifest = ReadManifest(unpacked);
    ASSERT_EQ(manifest["files"].size(), wanted.size() - 1);
    for (const auto& file : manifest["files"]) {
        const std::string path = file["path"];
        EXPECT_EQ(file["sha256"], lodeqdbtest::FileSha256(unpacked + "/" + path)) << path;
        EXPECT_EQ(file["size"], std::filesystem::file_size(unpacked + "/" + path)) << path;
        const bool rewritten = file["rewritten"];
        EXPECT_EQ(rewritten, path == "proj/root.plw" || path == "proj/sub/a.plw" ||
                                 path == "proj/sub/b.plw")
            << path;
        if (!rewritten) {
            EXPECT_EQ(file["sha256"], lodeqdbtest::FileSha256(file["original"])) << path;
        }
    }
    ASSERT_EQ(manifest["missing"].size(), 1u);
    EXPECT_EQ(manifest["missing"][0]["referrer"], "proj/root.plw");
    EXPECT_EQ(manifest["missing"][0]["kind"], "reference");
    EXPECT_EQ(manifest["missing"][0]["storedPath"], base + "/proj/gone/nothere.plw");

    // Gone from its first place, the tree still finds everything it found there.
    EXPECT_EQ(lodeqdbtest::FilesBelow(base), originals);
    std::filesystem::rename(base, folder + "/gone-away");
    EXPECT_EQ(lodeqdbtest::TreeByRelativeName(unpacked + "/proj/root.plw", unpacked), expected);
}

TEST_F(Pack, ARelativeTreeGoesInUnchanged) {
    const auto drawings = lodeqdbtest::WriteProjectTree(folder + "/disk", false);
    const auto report = LodeQDBRelocate::Pack(Utf16FromUtf8(drawings[1]), Path("a.zip"));
    EXPECT_EQ(report.root, "proj/sub/a.plw");
    // From a.plw: b.plw, shared.plw, and back to a.plw through b.
    ASSERT_EQ(report.files.size(), 3u);
    for (const auto& file : report.files) EXPECT_FALSE(file.rewritten) << file.archivePath;
    EXPECT_TRUE(report.missing.empty());
}

TEST_F(Pack, ADesignFileRootTakesWhatItAttaches) {
    lodeqdbtest::WriteProjectTree(folder + "/disk", false);
    const auto report =
        LodeQDBRelocate::Pack(Path("disk/proj/survey/site.dgn"), Path("survey.zip"));
    ASSERT_EQ(report.files.size(), 2u);
    EXPECT_EQ(report.files[0].kind, "design-file");
    EXPECT_EQ(report.files[1].archivePath, "terrain.dgn");
}

TEST_F(Pack, APackThatFailsLeavesTheOldArchiveAndNoScratch) {
    lodeqdbtest::DrawingDesign design;
    design.images = {{u"M", u"manifest.json"}};
    lodeqdbtest::WriteDrawing(folder + "/host.plw", design);
    Write("manifest.json", "{}");
    Write("out.zip", "an older archive");
    EXPECT_THROW(LodeQDBRelocate::Pack(Path("host.plw"), Path("out.zip")),
                 LodeQDBRelocate::PackError);
    EXPECT_EQ(Read("out.zip"), "an older archive");
    EXPECT_THROW(LodeQDBRelocate::Pack(Path("host.plw"), Path("no/such/folder/out.zip")),
                 LodeQDBRelocate::PackError);
    EXPECT_THROW(LodeQDBRelocate::Pack(Path("nothing.plw"), Path("x.zip")), lode::NotFound);
    const auto left = lodeqdbtest::FilesBelow(folder);
    ASSERT_EQ(left.size(), 3u);
    for (const auto& [name, bytes] : left) EXPECT_EQ(name.find("staging"), std::string::npos);
}

}  // namespace
