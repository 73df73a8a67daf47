// Resolving the references of a tree of 1,000 drawings, five levels of references deep with
// drawings shared between branches, against reading each of those files once.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <memory>
#include <set>
#include <string>
#include <vector>

#include "lodeutil/Utf.h"
#include "readsave/ReadIntoDatabase.h"
#include "service/TreeWalks.h"
#include "toolkit/db/PwDbAuthoring.h"
#include "toolkit/db/PwDbDatabase.h"
#include "toolkit/xref/PwDbXrefAuthoring.h"
#include "toolkit/xref/PwDbXrefGraph.h"
#include "toolkit/xref/PwDbXrefs.h"

namespace {

// Drawings per level, the root first. A drawing refers to five neighbours of the next level,
// the last of which is its right-hand neighbour's first: every drawing is reached, most of
// them along more than one way.
constexpr int kLevelSizes[] = {1, 4, 16, 64, 256, 659};
constexpr int kReferencesEach = 5;
constexpr int kLinesEach = 50;

struct DrawingTree {
    std::string folder;
    std::vector<std::string> files;
    std::string root;
};

std::string FileName(int level, int index) {
    return "L" + std::to_string(level) + "_" + std::to_string(index) + ".plw";
}

const DrawingTree& Tree() {
    static const DrawingTree tree = [] {
        DrawingTree made;
        char pattern[] = "/tmp/lodeqdb-xref-bench-XXXXXX";
        made.folder = mkdtemp(pattern);
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
