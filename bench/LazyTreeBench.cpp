// The nested walk over a tree of 85 drawings (a root, four references each, three levels
// deep) whose drawings hold 50 or 20,000 lines: what the walk costs as the drawings grow,
// against reading every file's bytes once, and the peak memory and time of the client that
// walks it, whole process.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <stdlib.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>
#include <map>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/service/TreeWalks.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>

namespace {

constexpr int kLevels = 4;
constexpr int kReferencesEach = 4;

struct LineTree {
    std::vector<std::string> files;
    std::string root;
    size_t bytes = 0;
};

std::string FileName(int level, int index) {
    std::string name = "T";
    name += std::to_string(level);
    name += '_';
    name += std::to_string(index);
    return name + ".plw";
}

const LineTree& Tree(int lines) {
    static std::map<int, LineTree> trees;
    auto found = trees.find(lines);
    if (found != trees.end()) return found->second;
    LineTree& made = trees[lines];
    char pattern[] = "/tmp/lodeqdb-lazy-bench-XXXXXX";
    const std::string folder = mkdtemp(pattern);
    int count = 1;
    for (int level = 0; level < kLevels; ++level, count *= kReferencesEach) {
        for (int index = 0; index < count; ++index) {
            auto drawing = PwDbAuthoring::createDrawing();
            for (int i = 0; i < lines; ++i) {
                PwDbAuthoring::addLine(*drawing, drawing->modelSpaceId(), {0, 0, 0},
                                       {double(i), double(index), 0});
            }
            if (level + 1 < kLevels) {
                for (int r = 0; r < kReferencesEach; ++r) {
                    PwDbAuthoring::addXref(
                        *drawing, u"REF" + LodeUtil::Utf16FromUtf8(std::to_string(r)),
                        LodeUtil::Utf16FromUtf8(FileName(level + 1, index * kReferencesEach + r)));
                }
            }
            const std::string path = folder + "/" + FileName(level, index);
            drawing->saveAs(LodeUtil::Utf16FromUtf8(path).c_str(), false,
                            PwDb::PwDbPlwVersionCurrent);
            made.files.push_back(path);
        }
    }
    made.root = made.files.front();
    for (const std::string& file : made.files) {
        std::ifstream in(file, std::ios::binary | std::ios::ate);
        made.bytes += static_cast<size_t>(in.tellg());
    }
    return made;
}

size_t Walk(const LineTree& tree) {
    return LodeQDBService::Request::PlotwrightNestedChildren(LodeUtil::Utf16FromUtf8(tree.root),
                                                             false)
        .size();
}

void BM_TreeWalk(benchmark::State& state) {
    const LineTree& tree = Tree(static_cast<int>(state.range(0)));
    size_t found = 0;
    for (auto _ : state) found = Walk(tree);
    state.counters["records"] = static_cast<double>(found);
    state.counters["file MiB"] = static_cast<double>(tree.bytes) / (1 << 20);
}
BENCHMARK(BM_TreeWalk)->Arg(50)->Arg(20000)->Unit(benchmark::kMillisecond);

void BM_TreeReadBytesOnce(benchmark::State& state) {
    const LineTree& tree = Tree(static_cast<int>(state.range(0)));
    std::vector<char> buffer(1 << 20);
    for (auto _ : state) {
        size_t total = 0;
        for (const std::string& file : tree.files) {
            std::ifstream in(file, std::ios::binary);
            while (in.read(buffer.data(), static_cast<std::streamsize>(buffer.size())) ||
                   in.gcount() > 0) {
                total += static_cast<size_t>(in.gcount());
            }
        }
        benchmark::DoNotOptimize(total);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * tree.bytes));
}
BENCHMARK(BM_TreeReadBytesOnce)->Arg(50)->Arg(20000)->Unit(benchmark::kMillisecond);

// The peak resident memory of the client walking the tree as a user runs it (`lodeqdb tree`,
// the binary beside this one), a fresh process each time.
long ClientPeakKiB(const LineTree& tree) {
    char self[4096] = {};
    const ssize_t length = readlink("/proc/self/exe", self, sizeof self - 1);
    if (length <= 0) return -1;
    std::string client(self, static_cast<size_t>(length));
    client = client.substr(0, client.rfind('/') + 1) + "lodeqdb";
    const pid_t child = fork();
    if (child == 0) {
        const int null = open("/dev/null", O_WRONLY);
        dup2(null, 1);
        execl(client.c_str(), "lodeqdb", "tree", tree.root.c_str(), static_cast<char*>(nullptr));
        _exit(127);
    }
    int status = 0;
    struct rusage usage {};
    wait4(child, &status, 0, &usage);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0 ? usage.ru_maxrss : -1;
}

void BM_ClientTreePeakMemory(benchmark::State& state) {
    const LineTree& tree = Tree(static_cast<int>(state.range(0)));
    long peak = 0;
    for (auto _ : state) peak = ClientPeakKiB(tree);
    state.counters["peak MiB"] = static_cast<double>(peak) / 1024;
}
BENCHMARK(BM_ClientTreePeakMemory)->Arg(50)->Arg(20000)->Iterations(3)->Unit(benchmark::kMillisecond);

}  // namespace
