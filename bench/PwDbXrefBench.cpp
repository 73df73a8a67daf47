// Resolving the references of a tree of 1,000 drawings, five levels of references deep with
// drawings shared between branches, each placing a photo (one of 20 shared files) and every
// tenth a PDF underlay, against reading each of those files once.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/TreeWalks.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/image/PwDbImageAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>
#include <lodeqdb/toolkit/xref/PwDbXrefs.h>

namespace {

// Drawings per level, the root first. A drawing refers to five neighbours of the next level,
// the last of which is its right-hand neighbour's first: every drawing is reached, most of
// them along more than one way.
constexpr int kLevelSizes[] = {1, 4, 16, 64, 256, 659};
constexpr int kReferencesEach = 5;
constexpr int kLinesEach = 50;
constexpr int kPhotos = 20;
constexpr int kUnderlayEvery = 10;

struct DrawingTree {
    std::string folder;
    std::vector<std::string> files;
    std::string root;
};

std::string FileName(int level, int index) {
    // Appended piece by piece: g++ 12 at -O3 warns falsely (-Wrestrict) of "literal" + string.
    std::string name = "L";
    name += std::to_string(level);
    name += '_';
    name += std::to_string(index);
    return name + ".plw";
}

void WriteFile(const std::string& path, const std::string& bytes) {
    std::ofstream(path, std::ios::binary) << bytes;
}

// A photo placed in the drawing, and every tenth drawing a PDF underlay.
void AddImagesAndUnderlays(PwDbDatabase& drawing, int serial) {
    const wstring photo =
        u"photos/p" + LodeUtil::Utf16FromUtf8(std::to_string(serial % kPhotos)) + u".png";
    PwDbObjectId image;
    PwDbAuthoring::addRasterImageDef(drawing, u"PHOTO", photo, &image);
    PwDbAuthoring::addRasterImage(drawing, drawing.modelSpaceId(), image, {0, 0, 0}, 10, 10);
    if (serial % kUnderlayEvery != 0) return;
    PwDbObjectId plan;
    PwDbAuthoring::addUnderlayDefinition(drawing, PwDbPdfDefinition::desc(), u"PLAN",
                                         u"docs\\plan.pdf", u"1", &plan);
    PwDbAuthoring::addUnderlayReference(drawing, drawing.modelSpaceId(), plan, {0, 0, 0});
}

const DrawingTree& Tree() {
    static const DrawingTree tree = [] {
        DrawingTree made;
        char pattern[] = "/tmp/lodeqdb-xref-bench-XXXXXX";
        made.folder = mkdtemp(pattern);
        std::filesystem::create_directories(made.folder + "/photos");
        std::filesystem::create_directories(made.folder + "/docs");
        for (int i = 0; i < kPhotos; ++i)
            WriteFile(made.folder + "/photos/p" + std::to_string(i) + ".png",
                      std::string("\x89PNG\r\n\x1a\n", 8));
        WriteFile(made.folder + "/docs/plan.pdf", "%PDF-1.4\n%%EOF\n");
        int serial = 0;
        const int levels = static_cast<int>(std::size(kLevelSizes));
        for (int level = 0; level < levels; ++level) {
            for (int index = 0; index < kLevelSizes[level]; ++index) {
                auto drawing = PwDbAuthoring::createDrawing();
                for (int i = 0; i < kLinesEach; ++i) {
                    PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                           {double(i), double(index), 0});
                }
                if (level + 1 < levels) {
                    const int below = kLevelSizes[level + 1];
                    for (int r = 0; r < kReferencesEach; ++r) {
                        const int target = (index * (kReferencesEach - 1) + r) % below;
                        PwDbAuthoring::addXref(
                            *drawing, u"REF" + LodeUtil::Utf16FromUtf8(std::to_string(r)),
                            LodeUtil::Utf16FromUtf8(FileName(level + 1, target)));
                    }
                }
                AddImagesAndUnderlays(*drawing, serial++);
                const std::string path = made.folder + "/" + FileName(level, index);
                drawing->saveAs(LodeUtil::Utf16FromUtf8(path).c_str(), false,
                                PwDb::PwDbPlwVersionCurrent);
                made.files.push_back(path);
            }
        }
        made.root = made.files.front();
        return made;
    }();
    return tree;
}

void PerDrawing(benchmark::State& state, size_t drawings) {
    state.counters["drawings"] = static_cast<double>(drawings);
    state.counters["per drawing"] =
        benchmark::Counter(static_cast<double>(state.iterations() * drawings),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_ReadEachDrawingOnce(benchmark::State& state) {
    const DrawingTree& tree = Tree();
    for (auto _ : state) {
        for (const std::string& file : tree.files) {
            PwDbDatabase drawing(false, true);
            benchmark::DoNotOptimize(drawing.readPlwFile(LodeUtil::Utf16FromUtf8(file).c_str(),
                                                         PwDbDatabase::OpenModeAlternate));
        }
    }
    PerDrawing(state, tree.files.size());
}
BENCHMARK(BM_ReadEachDrawingOnce)->Unit(benchmark::kMillisecond);

// The same reads with every drawing kept until all are read, as a resolved tree keeps them: the
// part of resolving that is the cost of holding 1,000 drawings in memory at once.
void BM_ReadEachDrawingKeepingAll(benchmark::State& state) {
    const DrawingTree& tree = Tree();
    for (auto _ : state) {
        std::vector<std::unique_ptr<PwDbDatabase>> kept;
        kept.reserve(tree.files.size());
        for (const std::string& file : tree.files) {
            kept.push_back(std::make_unique<PwDbDatabase>(false, true));
            benchmark::DoNotOptimize(kept.back()->readPlwFile(LodeUtil::Utf16FromUtf8(file).c_str(),
                                                              PwDbDatabase::OpenModeAlternate));
        }
    }
    PerDrawing(state, tree.files.size());
}
BENCHMARK(BM_ReadEachDrawingKeepingAll)->Unit(benchmark::kMillisecond);

void BM_ResolveTree(benchmark::State& state) {
    const DrawingTree& tree = Tree();
    std::set<PwDbDatabase*> loaded;
    for (auto _ : state) {
        PwDbDatabase root(false, true);
        root.readPlwFile(LodeUtil::Utf16FromUtf8(tree.root).c_str(),
                         PwDbDatabase::OpenModeAlternate);
        benchmark::DoNotOptimize(pwdbResolveCurrentXRefs(&root, false, true));
        state.PauseTiming();
        PwDbXrefGraph graph;
        pwdbGetHostPlwXrefGraph(&root, graph, false);
        loaded.clear();
        for (int i = 0; i < graph.numNodes(); ++i) loaded.insert(graph.xrefNode(i)->database());
        state.counters["graph nodes"] = graph.numNodes();
        state.ResumeTiming();
    }
    // Every drawing of the tree must have been loaded, and each only once.
    state.counters["databases"] = static_cast<double>(loaded.size());
    PerDrawing(state, tree.files.size());
}
BENCHMARK(BM_ResolveTree)->Unit(benchmark::kMillisecond);

// The library's walks over the same tree: reading the root, resolving, walking.
void BM_NestedChildrenByFile(benchmark::State& state) {
    const DrawingTree& tree = Tree();
    size_t found = 0;
    for (auto _ : state) {
        found = LodeQDBService::Request::PlotwrightNestedChildren(
                    LodeUtil::Utf16FromUtf8(tree.root), false)
                    .size();
    }
    state.counters["records"] = static_cast<double>(found);
    PerDrawing(state, tree.files.size());
}
BENCHMARK(BM_NestedChildrenByFile)->Unit(benchmark::kMillisecond);

// The walk alone, over a root read and resolved once before.
void BM_NestedChildrenOfALoadedRoot(benchmark::State& state) {
    const DrawingTree& tree = Tree();
    PwDbDatabase root(false, true);
    LodeQDBUtil::ReadFileToDatabase(LodeUtil::Utf16FromUtf8(tree.root), root, true, true);
    size_t found = 0;
    for (auto _ : state) {
        found = LodeQDBService::Request::PlotwrightNestedChildren(root, false).size();
    }
    state.counters["records"] = static_cast<double>(found);
    PerDrawing(state, tree.files.size());
}
BENCHMARK(BM_NestedChildrenOfALoadedRoot)->Unit(benchmark::kMillisecond);

void BM_ParentsOfALeaf(benchmark::State& state) {
    const DrawingTree& tree = Tree();
    size_t found = 0;
    for (auto _ : state) {
        const wstring rootPath = LodeUtil::Utf16FromUtf8(tree.root);
        PwDbDatabase root(false, true);
        LodeQDBUtil::ReadFileToDatabase(rootPath, root, true, true);
        found = LodeQDBService::Request::PlotwrightParents(
                    rootPath, root, LodeUtil::Utf16FromUtf8(tree.files.back()))
                    .size();
    }
    state.counters["parents"] = static_cast<double>(found);
    PerDrawing(state, tree.files.size());
}
BENCHMARK(BM_ParentsOfALeaf)->Unit(benchmark::kMillisecond);

}  // namespace
