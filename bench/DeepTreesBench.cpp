// The nested and the parent walk over chains of 1,000, 5,000 and 20,000 drawings and over
// 100 and 200 drawings that all refer to each other: the time of one walk, to be read against
// the number of references. Peak memory is a figure of a whole process and is measured on
// the client (`/usr/bin/time -v lodeqdb tree ...`): inside this process, memory that earlier
// benchmarks freed would hide it.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdlib>
#include <filesystem>
#include <map>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/TreeWalks.h>
#include "support/ReferenceTrees.h"
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace {

enum class Shape { Chain, Dense };

// A folder of drawings of one shape and size, written once per process; removed at exit.
class Trees {
  public:
    ~Trees() {
        for (const auto& [key, folder] : m_folders) std::filesystem::remove_all(folder);
    }
    const std::string& folder(Shape shape, int size) {
        auto& folder = m_folders[{shape, size}];
        if (folder.empty()) {
            std::string pattern =
                std::filesystem::temp_directory_path().string() + "/lodeqdb-bench-trees-XXXXXX";
            if (mkdtemp(pattern.data()) == nullptr) std::abort();
            folder = pattern;
            if (shape == Shape::Chain)
                lodeqdbtest::WriteReferenceChain(folder, size);
            else
                lodeqdbtest::WriteDenseReferences(folder, size);
        }
        return folder;
    }

  private:
    std::map<std::pair<Shape, int>, std::string> m_folders;
};

Trees& TheTrees() {
    static Trees trees;
    return trees;
}

wstring Root(Shape shape, int size) {
    return LodeUtil::Utf16FromUtf8(TheTrees().folder(shape, size) +
                                   (shape == Shape::Chain ? "/d0.plw" : "/n0.plw"));
}

wstring Last(Shape shape, int size) {
    return LodeUtil::Utf16FromUtf8(TheTrees().folder(shape, size) +
                                   (shape == Shape::Chain ? "/d" : "/n") +
                                   std::to_string(size - 1) + ".plw");
}

size_t Walk(Shape shape, int size, bool parents) {
    if (!parents)
        return LodeQDBService::Request::PlotwrightNestedChildren(Root(shape, size), false).size();
    PwDbDatabase root(false, true);
    LodeQDBUtil::ReadFileToDatabase(Root(shape, size), root, true, true);
    return LodeQDBService::Request::PlotwrightParents(Root(shape, size), root, {Last(shape, size)})
        .size();
}

void Measure(benchmark::State& state, Shape shape, bool parents) {
    const int size = static_cast<int>(state.range(0));
    size_t records = 0;
    for (auto _ : state) records = Walk(shape, size, parents);
    state.counters["records"] = static_cast<double>(records);
    state.counters["references"] = shape == Shape::Chain ? size - 1 : size * (size - 1);
}

void BM_NestedWalkOfAChain(benchmark::State& state) {
    Measure(state, Shape::Chain, false);
}
BENCHMARK(BM_NestedWalkOfAChain)->Arg(1000)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);

void BM_ParentWalkOfAChain(benchmark::State& state) {
    Measure(state, Shape::Chain, true);
}
BENCHMARK(BM_ParentWalkOfAChain)->Arg(1000)->Arg(5000)->Arg(20000)->Unit(benchmark::kMillisecond);

void BM_NestedWalkOfADenseGraph(benchmark::State& state) {
    Measure(state, Shape::Dense, false);
}
BENCHMARK(BM_NestedWalkOfADenseGraph)->Arg(100)->Arg(200)->Unit(benchmark::kMillisecond);

void BM_ParentWalkOfADenseGraph(benchmark::State& state) {
    Measure(state, Shape::Dense, true);
}
BENCHMARK(BM_ParentWalkOfADenseGraph)->Arg(100)->Arg(200)->Unit(benchmark::kMillisecond);

}  // namespace
