// Telling the kind of application of 10,000 drawings by their headers, against opening each
// file and reading its first 4 KiB in the same run.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <unistd.h>

#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include <lodeqdb/identification/CreatorKind.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>

namespace {

constexpr int kFiles = 10000;

struct DrawingFolder {
    std::vector<wstring> paths;
    std::vector<std::string> nativePaths;
};

const DrawingFolder& Folder() {
    static const DrawingFolder folder = [] {
        DrawingFolder made;
        char pattern[] = "/tmp/lodeqdb-identify-bench-XXXXXX";
        const std::string root = mkdtemp(pattern);
        auto drawing = PwDbAuthoring::createDrawing();
        for (int i = 0; i < 20; ++i)
            PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0}, {double(i), 1, 0});
        // One file written, the rest copies: the bytes are the same, the files are not.
        const std::string first = root + "/d0.plw";
        drawing->saveAs(LodeUtil::Utf16FromUtf8(first).c_str(), false, PwDb::PwDbPlwVersionCurrent);
        std::ifstream in(first, std::ios::binary);
        const std::string bytes((std::istreambuf_iterator<char>(in)),
                                std::istreambuf_iterator<char>());
        for (int i = 0; i < kFiles; ++i) {
            const std::string path = root + "/d" + std::to_string(i) + ".plw";
            if (i > 0) std::ofstream(path, std::ios::binary) << bytes;
            made.nativePaths.push_back(path);
            made.paths.push_back(LodeUtil::Utf16FromUtf8(path));
        }
        return made;
    }();
    return folder;
}

void PerFile(benchmark::State& state, size_t files) {
    state.counters["files"] = static_cast<double>(files);
    state.counters["per file"] =
        benchmark::Counter(static_cast<double>(state.iterations() * files),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void BM_OpenAndRead4KiB(benchmark::State& state) {
    const DrawingFolder& folder = Folder();
    char buffer[4096];
    for (auto _ : state) {
        for (const std::string& path : folder.nativePaths) {
            const int fd = open(path.c_str(), O_RDONLY);
            benchmark::DoNotOptimize(read(fd, buffer, sizeof buffer));
            close(fd);
        }
    }
    PerFile(state, folder.nativePaths.size());
}
BENCHMARK(BM_OpenAndRead4KiB)->Unit(benchmark::kMillisecond);

void BM_GetPlwFileTypeByHeader(benchmark::State& state) {
    const DrawingFolder& folder = Folder();
    for (auto _ : state) {
        for (const wstring& path : folder.paths)
            benchmark::DoNotOptimize(LodeQDBUtil::GetPlwFileTypeByHeader(path));
    }
    PerFile(state, folder.paths.size());
}
BENCHMARK(BM_GetPlwFileTypeByHeader)->Unit(benchmark::kMillisecond);

}  // namespace
