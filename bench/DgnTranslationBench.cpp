// Translating DGN V7 design files through the library: many cells of one name against as many
// plain lines, so that naming the cells' blocks shows next to the translation itself.
#include <benchmark/benchmark.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/readsave/DgnTranslation.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "tools/dgnwriter/DgnV7Writer.h"

namespace {

constexpr int kElements = 20000;

// A design file written once per process under the temporary folder; removed at exit.
class DesignFile {
  public:
    explicit DesignFile(bool cells) {
        m_path =
            std::filesystem::temp_directory_path() /
            ("lodeqdb-bench-" + std::to_string(getpid()) + (cells ? "-cells" : "-lines") + ".dgn");
        DgnWriter::DgnV7Writer dgn(false);
        for (int i = 0; i < kElements; ++i) {
            if (cells) dgn.beginCell("DOOR", {i, 0});
            dgn.addLine(0, {i, 0}, {i, 100});
            if (cells) dgn.endComplex();
        }
        dgn.save(m_path.string());
    }
    ~DesignFile() { std::filesystem::remove(m_path); }
    wstring path() const { return LodeUtil::Utf16FromUtf8(m_path.string()); }

  private:
    std::filesystem::path m_path;
};

void Translate(benchmark::State& state, bool cells) {
    static const DesignFile cellFile(true), lineFile(false);
    const wstring path = cells ? cellFile.path() : lineFile.path();
    for (auto _ : state) {
        PwDbDatabase drawing(false, true);
        LodeQDBUtil::ReadDGNToPlwDatabase(path, u"", drawing);
        benchmark::DoNotOptimize(drawing.modelSpaceId());
    }
    state.counters["elements"] = kElements;
}

void BM_TranslateCellsOfOneName(benchmark::State& state) {
    Translate(state, true);
}
BENCHMARK(BM_TranslateCellsOfOneName)->Unit(benchmark::kMillisecond);

void BM_TranslateLines(benchmark::State& state) {
    Translate(state, false);
}
BENCHMARK(BM_TranslateLines)->Unit(benchmark::kMillisecond);

}  // namespace
