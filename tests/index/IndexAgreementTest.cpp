// The index agrees with the library: every file's records are what the children queries give,
// where-used --direct is what the parent walk finds, where-used at any depth what the nested
// walk reaches; the documented schema is the one made.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>

#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/index/IndexUpdate.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/TreeWalks.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "index/IndexTestSupport.h"
#include "index/Schema.h"

namespace {

using lodeqdbtest::IndexFolderTest;

class IndexAgreement : public IndexFolderTest {
  protected:
    void SetUp() override {
        IndexFolderTest::SetUp();
        LodeQDBIndex::UpdateOptions options;
        options.folder = store;
        options.jobs = 3;
        summary = LodeQDBIndex::UpdateIndex(options);
        database = summary.database;
    }

    // Every spelling of `target` among the names the library gives the drawings' records
    // ("sheets/../images/photo.png" as well as "images/photo.png"), the target included.
    std::vector<wstring> Spellings(const std::string& target) {
        std::set<std::string> names{target};
        for (const std::string& drawing : lodeqdbtest::FilesWithExtension(store, ".plw"))
            for (const auto& record : LodeQDBService::Request::PlotwrightChildren(
                     LodeUtil::Utf16FromUtf8(drawing), nullptr)) {
                std::string name = LodeUtil::Utf8FromUtf16(record.GetFullname());
                std::string slashes = name;
                std::replace(slashes.begin(), slashes.end(), '\\', '/');
                if (std::filesystem::path(slashes).lexically_normal() == target)
                    names.insert(name);
            }
        std::vector<wstring> spellings;
        for (const std::string& name : names) spellings.push_back(LodeUtil::Utf16FromUtf8(name));
        return spellings;
    }

    // The drawings whose parent walk (each drawing of the folder as the root) finds `target`,
    // by any of its spellings, among its children: the union over every tree that holds it.
    std::set<std::string> ParentsByWalk(const std::string& target) {
        const std::vector<wstring> spellings = Spellings(target);
        std::set<std::string> parents;
        for (const std::string& root : lodeqdbtest::FilesWithExtension(store, ".plw")) {
            const wstring path = LodeUtil::Utf16FromUtf8(root);
            PwDbDatabase drawing(false, true);
            LodeQDBUtil::ReadFileToDatabase(path, drawing, true, true);
            for (const auto& parent :
                 LodeQDBService::Request::PlotwrightParents(path, drawing, spellings))
                parents.insert(LodeUtil::Utf8FromUtf16(parent.GetFullname()));
        }
        return parents;
    }

    // The drawings whose nested walk reaches `target` by any of its spellings.
    std::set<std::string> UsersByWalk(const std::string& target) {
        std::set<wstring> spellings;
        for (const wstring& spelling : Spellings(target)) spellings.insert(spelling);
        std::set<std::string> users;
        for (const std::string& root : lodeqdbtest::FilesWithExtension(store, ".plw")) {
            for (const auto& record : LodeQDBService::Request::PlotwrightNestedChildren(
                     LodeUtil::Utf16FromUtf8(root), true))
                if (spellings.count(record.GetFullname()) != 0) users.insert(root);
        }
        return users;
    }

    std::set<std::string> WhereUsed(const std::string& target, bool direct, bool drawingsOnly) {
        std::set<std::string> users;
        for (const auto& use : LodeQDBIndex::FolderIndex(database).WhereUsed(target, direct)) {
            if (drawingsOnly && use.drawing.substr(use.drawing.size() - 4) != ".plw") continue;
            users.insert(use.drawing);
        }
        return users;
    }

    // Files of every kind and role: shared, a project's, an image, a drawing in a cycle, a
    // design file, a missing drawing; at any depth also a design file attached by another
    // (the parent walk doesn't enter design files, so it has no direct users to compare).
    std::vector<std::string> Targets(bool anyDepth) const {
        std::vector<std::string> targets = {
            store + "/shared/titles/title-1.plw",   store + "/shared/lib/lib-2.plw",
            store + "/proj-0001/base.plw",          store + "/proj-0001/images/photo.png",
            store + "/proj-0001/sheets/sheet-041.plw", store + "/proj-0001/survey/site.dgn",
            store + "/proj-0001/old/gone-025.plw"};
        if (anyDepth) targets.push_back(store + "/proj-0001/survey/terrain.dgn");
        return targets;
    }

    LodeQDBIndex::UpdateSummary summary;
    std::string database;
};

TEST_F(IndexAgreement, EveryFileIsRecordedAndNoneFailed) {
    const auto drawings = lodeqdbtest::FilesWithExtension(store, ".plw");
    EXPECT_EQ(drawings.size(), SampleDrawings());
    EXPECT_EQ(summary.seen, summary.read);
    EXPECT_EQ(summary.failed, 0u);
    const LodeQDBIndex::IndexStats stats = LodeQDBIndex::FolderIndex(database).Stats();
    EXPECT_EQ(stats.byKind.at("drawing"), static_cast<int64_t>(SampleDrawings()));
    EXPECT_GT(stats.byKind.at("dgn"), 0);
    EXPECT_GT(stats.byKind.at("image"), 0);
    EXPECT_GT(stats.byKind.at("pdf"), 0);
    EXPECT_EQ(stats.byFormatGeneration.at(8), static_cast<int64_t>(SampleDrawings()));
    EXPECT_EQ(stats.byCreatorKind.at(1), static_cast<int64_t>(SampleDrawings()));
    EXPECT_GT(stats.brokenReferences, 0);
}

TEST_F(IndexAgreement, EveryDrawingsRecordsAreItsChildren) {
    size_t withRecords = 0;
    for (const char* extension : {".plw", ".dgn"}) {
        for (const std::string& file : lodeqdbtest::FilesWithExtension(store, extension)) {
            const std::string library = lodeqdbtest::LibraryRecordsText(file);
            EXPECT_EQ(lodeqdbtest::IndexedRecordsText(database, file), library) << file;
            if (!library.empty()) ++withRecords;
        }
    }
    EXPECT_GT(withRecords, SampleDrawings() - 4);
}

TEST_F(IndexAgreement, WhereUsedDirectIsWhatTheParentWalkFinds) {
    for (const std::string& target : Targets(false)) {
        const std::set<std::string> byWalk = ParentsByWalk(target);
        EXPECT_FALSE(byWalk.empty()) << target;
        EXPECT_EQ(WhereUsed(target, true, true), byWalk) << target;
    }
}

TEST_F(IndexAgreement, WhereUsedAtAnyDepthIsWhatTheNestedWalkReaches) {
    for (const std::string& target : Targets(true)) {
        const std::set<std::string> byWalk = UsersByWalk(target);
        EXPECT_FALSE(byWalk.empty()) << target;
        EXPECT_EQ(WhereUsed(target, false, true), byWalk) << target;
    }
}

TEST_F(IndexAgreement, ChainsLeadFromTheUserDownToTheFile) {
    const std::string title = store + "/shared/titles/title-0.plw";
    const auto uses = LodeQDBIndex::FolderIndex(database).WhereUsed(title, false);
    ASSERT_FALSE(uses.empty());
    size_t deeper = 0;
    for (const auto& use : uses) {
        ASSERT_GE(use.chain.size(), 2u);
        EXPECT_EQ(use.chain.front(), use.drawing);
        EXPECT_EQ(use.chain.back(), title);
        // Each step is a direct reference of the one before.
        for (size_t step = 0; step + 1 < use.chain.size(); ++step) {
            bool found = false;
            for (const auto& record : LodeQDBIndex::FolderIndex(database).RecordsOf(use.chain[step]))
                found = found || record.name == use.chain[step + 1];
            EXPECT_TRUE(found) << use.chain[step] << " -> " << use.chain[step + 1];
        }
        if (use.chain.size() > 2) ++deeper;
    }
    EXPECT_GT(deeper, 0u);
}

TEST_F(IndexAgreement, BrokenReferencesAreTheMissingOnes) {
    const auto broken = LodeQDBIndex::FolderIndex(database).BrokenReferences();
    ASSERT_FALSE(broken.empty());
    for (const auto& record : broken) {
        EXPECT_NE(lodeqdbtest::Normal(record.name).find("/old/gone-"), std::string::npos)
            << record.name;
        EXPECT_EQ(record.status, 4);
        EXPECT_FALSE(record.present);
    }
}

TEST_F(IndexAgreement, TheGraphFromTheIndexHasTheWalksFiles) {
    const std::string root = store + "/proj-0001/sheets/sheet-040.plw";
    const auto graph = LodeQDBIndex::FolderIndex(database).GraphBelow(root);
    const auto walked = LodeQDBIndex::GraphByWalk(root);
    std::set<std::string> fromIndex, fromWalk;
    for (const auto& node : graph.nodes) fromIndex.insert(node.path);
    for (const auto& node : walked.nodes) fromWalk.insert(node.path);
    EXPECT_EQ(fromIndex, fromWalk);
    EXPECT_EQ(graph.nodes.size(), fromIndex.size());
    EXPECT_GT(graph.nodes.size(), 5u);
}

TEST(IndexSchema, TheDocumentedSchemaIsTheOneMade) {
    std::ifstream in(std::string(LODEQDB_SOURCE_DIR) + "/docs/index.md");
    std::stringstream all;
    all << in.rdbuf();
    const std::string text = all.str();
    const size_t start = text.find("```sql\n");
    ASSERT_NE(start, std::string::npos);
    const size_t end = text.find("```", start + 7);
    ASSERT_NE(end, std::string::npos);
    EXPECT_EQ(text.substr(start + 7, end - start - 7),
              std::string(LodeQDBIndex::detail::SchemaSql()));
}

}  // namespace
