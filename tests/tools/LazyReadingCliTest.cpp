// Every query of the client gives the same answers on drawings read lazily (indexed files) and
// on the same drawings read whole (the same project in the layout of whole records), on the
// sample project and on a generated tree of large drawings.
#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

#include "CliRunner.h"
#include "support/TempFolderTest.h"
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include "toolkit/file/PwDbPlwCodec.h"
#include "toolkit/file/PwDbPlwIndexed.h"

namespace {

using lodeqdbclitest::RunCli;
namespace fs = std::filesystem;

class LazyReadingCli : public lodeqdbtest::TempFolderTest {
  protected:
    LazyReadingCli() : TempFolderTest("lodeqdb-cli-lazy") {}

    // The layout revision of a native file's bytes.
    static int Revision(const std::string& bytes) {
        return bytes.size() > 56 ? static_cast<unsigned char>(bytes[56]) : -1;
    }

    // Copies `from` to `to`, every native file of the copy rewritten in the layout of whole
    // records, which is read whole.
    void CopyAsWholeRecords(const std::string& from, const std::string& to) {
        fs::copy(from, to, fs::copy_options::recursive);
        int rewritten = 0;
        for (const auto& entry : fs::recursive_directory_iterator(to)) {
            if (entry.path().extension() != ".plw") continue;
            const std::string name = fs::relative(entry.path(), folder).string();
            const std::string bytes = Read(name);
            if (Revision(bytes) != 2) continue;
            PwDbDrawingImage image;
            ASSERT_EQ(pwdbDecodePlw(bytes, image), Plotwright::StatusOk) << name;
            std::string whole;
            ASSERT_EQ(pwdbEncodePlw(image, whole), Plotwright::StatusOk);
            ASSERT_EQ(Revision(whole), 1);
            Write(name, whole);
            ++rewritten;
        }
        EXPECT_GT(rewritten, 0);
    }

    // The output of `arguments` run in the project `project`, its folder's name taken out.
    std::string Answer(std::vector<std::string> arguments, const std::string& project) {
        for (std::string& argument : arguments) {
            const auto at = argument.find("{}");
            if (at != std::string::npos) argument.replace(at, 2, project);
        }
        const auto result = RunCli(arguments, folder);
        std::string out = std::to_string(result.exitCode) + "\n" + result.out;
        for (size_t at; (at = out.find(project)) != std::string::npos;) out.replace(at, project.size(), "<project>");
        return out;
    }

    // Each query on the lazily read project and on the project read whole.
    void ExpectSameAnswers(const std::string& lazy, const std::string& whole,
                           const std::vector<std::vector<std::string>>& queries) {
        for (const auto& query : queries) {
            std::string shown;
            for (const auto& word : query) shown += word + " ";
            SCOPED_TRACE(shown);
            const std::string answer = Answer(query, lazy);
            EXPECT_EQ(answer.substr(0, 2), "0\n") << answer;
            EXPECT_EQ(answer, Answer(query, whole));
        }
    }

    // `lodeqdb save` of the same drawing from both projects: the same drawing saved, each in
    // the layout its file had.
    void ExpectSameSave(const std::string& lazy, const std::string& whole,
                        const std::string& drawing) {
        ASSERT_EQ(RunCli({"save", lazy + "/" + drawing, folder + "/lazy-saved.plw"}, folder)
                      .exitCode,
                  0);
        ASSERT_EQ(RunCli({"save", whole + "/" + drawing, folder + "/whole-saved.plw"}, folder)
                      .exitCode,
                  0);
        const std::string fromLazy = Read("lazy-saved.plw");
        const std::string fromWhole = Read("whole-saved.plw");
        EXPECT_EQ(Revision(fromLazy), 2);
        EXPECT_EQ(Revision(fromWhole), 1);
        PwDbDrawingImage image;
        ASSERT_EQ(pwdbDecodePlw(fromWhole, image), Plotwright::StatusOk);
        std::string indexed;
        ASSERT_EQ(pwdbEncodePlwIndexed(image, indexed), Plotwright::StatusOk);
        EXPECT_EQ(fromLazy, indexed);
    }
};

TEST_F(LazyReadingCli, TheSampleProjectAnswersAlikeReadLazilyAndWhole) {
    const std::string lazy = folder + "/lazy";
    ASSERT_EQ(RunCli({"sample", lazy}, folder).exitCode, 0);
    ASSERT_EQ(Revision(Read("lazy/site.plw")), 2);
    const std::string whole = folder + "/whole";
    CopyAsWholeRecords(lazy, whole);
    ASSERT_EQ(Revision(Read("whole/site.plw")), 1);
    ExpectSameAnswers(lazy, whole,
                      {{"tree", "{}/site.plw"},
                       {"tree", "{}/site.plw", "--json"},
                       {"tree", "{}/site.plw", "--dgn", "--flat"},
                       {"children", "{}/site.plw", "--json"},
                       {"parents", "{}/site.plw", "{}/blocks/title.plw", "--json"},
                       {"layers", "{}/site.plw"},
                       {"layouts", "{}/site.plw"},
                       {"plotsettings", "{}/site.plw"},
                       {"type", "--database", "{}/site.plw", "{}/blocks/title.plw", "--json"},
                       {"format", "{}/site.plw"},
                       {"creator", "{}/site.plw"}});
    ExpectSameSave(lazy, whole, "site.plw");
}

TEST_F(LazyReadingCli, AGeneratedTreeOfLargeDrawingsAnswersAlikeReadLazilyAndWhole) {
    const std::string lazy = folder + "/big";
    fs::create_directories(lazy + "/parts");
    // A root and three parts of 3,000 lines each (larger than one first read), the last part
    // referring to a fourth; each with a layer and a layout of its own.
    for (int part = 4; part >= 0; --part) {
        auto drawing = PwDbAuthoring::createDrawing();
        PwDbObjectId layer;
        PwDbAuthoring::addLayer(*drawing, u"Part" + LodeUtil::Utf16FromUtf8(std::to_string(part)),
                                {}, &layer);
        PwDbAuthoring::addLayout(*drawing, u"Sheet", 2, 420, 297);
        for (int i = 0; i < 3000; ++i) {
            PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                   {double(i), double(part), 0}, i % 2 ? layer : PwDbObjectId());
        }
        if (part == 0) {
            for (int child = 1; child <= 3; ++child) {
                PwDbAuthoring::addXref(*drawing, u"P" + LodeUtil::Utf16FromUtf8(std::to_string(child)),
                                       u"parts\\p" + LodeUtil::Utf16FromUtf8(std::to_string(child)) +
                                           u".plw");
            }
        } else if (part == 3) {
            PwDbAuthoring::addXref(*drawing, u"P4", u"p4.plw");
        }
        const std::string name =
            part == 0 ? lazy + "/root.plw" : lazy + "/parts/p" + std::to_string(part) + ".plw";
        ASSERT_EQ(drawing->saveAs(LodeUtil::Utf16FromUtf8(name).c_str(), false,
                                  PwDb::PwDbPlwVersionCurrent),
                  Plotwright::StatusOk);
    }
    ASSERT_GT(Read("big/parts/p1.plw").size(), 64u * 1024);
    const std::string whole = folder + "/whole";
    CopyAsWholeRecords(lazy, whole);
    ExpectSameAnswers(lazy, whole,
                      {{"tree", "{}/root.plw", "--json"},
                       {"children", "{}/parts/p3.plw", "--json"},
                       {"parents", "{}/root.plw", "{}/parts/p4.plw", "--json"},
                       {"layers", "{}/parts/p2.plw"},
                       {"layouts", "{}/parts/p2.plw"},
                       {"plotsettings", "{}/root.plw"},
                       {"type", "--database", "{}/root.plw", "{}/parts/p4.plw", "--json"}});
    ExpectSameSave(lazy, whole, "parts/p3.plw");
}

}  // namespace
