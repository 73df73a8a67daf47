// The folder index against its goals, on a generated store of 10,000 drawings (and one of
// 100,000 for where-used): indexing from nothing against telling every drawing by its header
// (what `lodeqdb type --header` does for each file); re-indexing the unchanged store against
// a stat of every file (what `find DIR -printf '%s %T@\n'` does); where-used at any depth.
// LODEQDB_BENCH_STORE_DRAWINGS and LODEQDB_BENCH_LARGE_STORE_DRAWINGS change the sizes.
#include <benchmark/benchmark.h>
#include <stdlib.h>
#include <sys/stat.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/index/FolderIndex.h>
#include <lodeqdb/index/IndexUpdate.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include "tools/samplefolder/SampleFolder.h"

namespace {

size_t FromEnvironment(const char* name, size_t fallback) {
    const char* value = std::getenv(name);
    return value != nullptr ? std::strtoul(value, nullptr, 10) : fallback;
}

struct Store {
    std::string folder;
    std::vector<std::string> drawings;
    std::vector<std::string> files;
};

Store MakeStore(size_t drawings) {
    char pattern[] = "/tmp/lodeqdb-index-bench-XXXXXX";
    Store store;
    store.folder = mkdtemp(pattern);
    lodeqdb::samples::WriteSampleFolder(store.folder, drawings);
    for (const auto& entry : std::filesystem::recursive_directory_iterator(store.folder)) {
        if (!entry.is_regular_file()) continue;
        store.files.push_back(entry.path().native());
        if (entry.path().extension() == ".plw") store.drawings.push_back(entry.path().native());
    }
    return store;
}

const Store& TenThousand() {
    static const Store store = MakeStore(FromEnvironment("LODEQDB_BENCH_STORE_DRAWINGS", 10000));
    return store;
}

std::string Database(const Store& store) {
    return store.folder + "/.lodeqdb/index.sqlite";
}

LodeQDBIndex::UpdateSummary Index(const Store& store) {
    LodeQDBIndex::UpdateOptions options;
    options.folder = store.folder;
    options.jobs = 2;
    return LodeQDBIndex::UpdateIndex(options);
}

void BM_TypeByHeaderOfEveryDrawing(benchmark::State& state) {
    const Store& store = TenThousand();
    for (auto _ : state) {
        for (const std::string& drawing : store.drawings) {
            try {
                benchmark::DoNotOptimize(
                    LodeQDBUtil::GetPlwFileTypeByHeader(LodeUtil::Utf16FromNative(drawing)));
            } catch (const lode::LodeException&) {
            }
        }
    }
    state.counters["drawings"] = static_cast<double>(store.drawings.size());
}
BENCHMARK(BM_TypeByHeaderOfEveryDrawing)->Unit(benchmark::kMillisecond)->Iterations(3);

void BM_IndexFromNothing(benchmark::State& state) {
    const Store& store = TenThousand();
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(store.folder + "/.lodeqdb");
        state.ResumeTiming();
        benchmark::DoNotOptimize(Index(store));
    }
    state.counters["drawings"] = static_cast<double>(store.drawings.size());
}
BENCHMARK(BM_IndexFromNothing)->Unit(benchmark::kMillisecond)->Iterations(2);

void BM_StatEveryFile(benchmark::State& state) {
    const Store& store = TenThousand();
    for (auto _ : state) {
        // As find does: walk the folders, stat each entry.
        size_t sizes = 0;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(store.folder)) {
            struct stat info {};
            if (::lstat(entry.path().c_str(), &info) == 0) sizes += static_cast<size_t>(info.st_size);
        }
        benchmark::DoNotOptimize(sizes);
    }
    state.counters["files"] = static_cast<double>(store.files.size());
}
BENCHMARK(BM_StatEveryFile)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_IndexUnchanged(benchmark::State& state) {
    const Store& store = TenThousand();
    if (!std::filesystem::exists(Database(store))) Index(store);
    for (auto _ : state) {
        const auto summary = Index(store);
        if (summary.read != 0) state.SkipWithError("files were read again");
    }
    state.counters["files"] = static_cast<double>(store.files.size());
}
BENCHMARK(BM_IndexUnchanged)->Unit(benchmark::kMillisecond)->Iterations(5);

void BM_WhereUsedAtAnyDepth(benchmark::State& state) {
    static const Store store =
        MakeStore(FromEnvironment("LODEQDB_BENCH_LARGE_STORE_DRAWINGS", 100000));
    if (!std::filesystem::exists(Database(store))) Index(store);
    LodeQDBIndex::FolderIndex index(Database(store));
    // A project's base plan: its sheets, and what uses them.
    const std::string base = store.folder + "/proj-0007/base.plw";
    size_t users = 0;
    for (auto _ : state) users = index.WhereUsed(base, false).size();
    state.counters["users"] = static_cast<double>(users);
    state.counters["drawings"] = static_cast<double>(store.drawings.size());
}
BENCHMARK(BM_WhereUsedAtAnyDepth)->Unit(benchmark::kMillisecond)->Iterations(20);

void BM_WhereUsedOfASharedTitleBlock(benchmark::State& state) {
    const Store& store = TenThousand();
    if (!std::filesystem::exists(Database(store))) Index(store);
    LodeQDBIndex::FolderIndex index(Database(store));
    const std::string title = store.folder + "/shared/titles/title-0.plw";
    size_t users = 0;
    for (auto _ : state) users = index.WhereUsed(title, false).size();
    state.counters["users"] = static_cast<double>(users);
}
BENCHMARK(BM_WhereUsedOfASharedTitleBlock)->Unit(benchmark::kMillisecond)->Iterations(5);

}  // namespace
