// Reading and saving a drawing of 100,000 entities, against the raw cost of its bytes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

constexpr int kEntities = 100000;

struct SavedDrawing {
    std::string folder;
    std::string native;
    std::string exchange;
    size_t objects = 0;
    std::unique_ptr<PwDbDatabase> drawing;
};

const SavedDrawing& Saved() {
    static const SavedDrawing saved = [] {
        SavedDrawing made;
        char pattern[] = "/tmp/lodeqdb-bench-XXXXXX";
        made.folder = mkdtemp(pattern);
        made.native = made.folder + "/big.plw";
        made.exchange = made.folder + "/big.plx";
        made.drawing = PwDbAuthoring::createDrawing();
        PwDbObjectPointer<PwDbBlockTableRecord> model(made.drawing->modelSpaceId(),
                                                      PwDb::OpenForWrite);
        for (int i = 0; i < kEntities; ++i) {
            auto* line = new PwDbLine;
            line->setEndPoint(PwGePoint3d(i, i * 0.5, 0));
            model->appendPwDbEntity(line);
            line->close();
        }
        model.release();
        made.objects = made.drawing->numObjects();
        made.drawing->saveAs(LodeUtil::Utf16FromUtf8(made.native).c_str(), false,
                             PwDb::PwDbPlwVersionCurrent);
        made.drawing->plxOut(LodeUtil::Utf16FromUtf8(made.exchange).c_str(), 16,
                             PwDb::PwDbPlwVersionCurrent);
        return made;
    }();
    return saved;
}

size_t RawRead(const std::string& path) {
    const int fd = open(path.c_str(), O_RDONLY);
    std::vector<char> buffer(1 << 20);
    size_t total = 0;
    for (ssize_t got; (got = read(fd, buffer.data(), buffer.size())) > 0;) total += got;
    close(fd);
    return total;
}

void Report(benchmark::State& state, size_t bytes, size_t objects) {
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations() * bytes));
    state.counters["objects/s"] = benchmark::Counter(
        static_cast<double>(state.iterations() * objects), benchmark::Counter::kIsRate);
}

void BM_RawReadNative(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    size_t bytes = 0;
    for (auto _ : state) bytes = RawRead(saved.native);
    Report(state, bytes, saved.objects);
}
BENCHMARK(BM_RawReadNative)->Unit(benchmark::kMillisecond);

// Reads the native file: its front only, or (`whole`) every object decoded too, closeInput
// taking whatever is still in the file.
void ReadNative(benchmark::State& state, bool whole) {
    const SavedDrawing& saved = Saved();
    const wstring path = LodeUtil::Utf16FromUtf8(saved.native);
    for (auto _ : state) {
        PwDbDatabase database;
        benchmark::DoNotOptimize(
            database.readPlwFile(path.c_str(), PwDbDatabase::OpenModeAlternate));
        if (whole) benchmark::DoNotOptimize(database.closeInput(true));
    }
    Report(state, RawRead(saved.native), saved.objects);
}

void BM_ReadNative(benchmark::State& state) {
    ReadNative(state, false);
}
BENCHMARK(BM_ReadNative)->Unit(benchmark::kMillisecond);

void BM_ReadNativeWhole(benchmark::State& state) {
    ReadNative(state, true);
}
BENCHMARK(BM_ReadNativeWhole)->Unit(benchmark::kMillisecond);

// Saving a drawing read lazily and never changed, against copying its file.
void BM_SaveNativeAfterLazyRead(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    PwDbDatabase database;
    database.readPlwFile(LodeUtil::Utf16FromUtf8(saved.native).c_str(),
                         PwDbDatabase::OpenModeAlternate);
    const wstring path = LodeUtil::Utf16FromUtf8(saved.folder + "/copied.plw");
    for (auto _ : state) {
        benchmark::DoNotOptimize(database.saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent));
    }
    Report(state, RawRead(saved.native), saved.objects);
}
BENCHMARK(BM_SaveNativeAfterLazyRead)->Unit(benchmark::kMillisecond);

void BM_CopyNativeFile(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    const std::string copy = saved.folder + "/copy.plw";
    for (auto _ : state) {
        std::string bytes(RawRead(saved.native), '\0');
        const int in = open(saved.native.c_str(), O_RDONLY);
        benchmark::DoNotOptimize(read(in, bytes.data(), bytes.size()));
        close(in);
        const int out = open(copy.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0644);
        benchmark::DoNotOptimize(write(out, bytes.data(), bytes.size()));
        fsync(out);
        close(out);
    }
    Report(state, RawRead(saved.native), saved.objects);
}
BENCHMARK(BM_CopyNativeFile)->Unit(benchmark::kMillisecond);

void BM_SaveNative(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    const wstring path = LodeUtil::Utf16FromUtf8(saved.folder + "/saved.plw");
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            saved.drawing->saveAs(path.c_str(), false, PwDb::PwDbPlwVersionCurrent));
    }
    Report(state, RawRead(saved.native), saved.objects);
}
BENCHMARK(BM_SaveNative)->Unit(benchmark::kMillisecond);

void BM_RawReadExchange(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    size_t bytes = 0;
    for (auto _ : state) bytes = RawRead(saved.exchange);
    Report(state, bytes, saved.objects);
}
BENCHMARK(BM_RawReadExchange)->Unit(benchmark::kMillisecond);

void BM_ReadExchange(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    const wstring path = LodeUtil::Utf16FromUtf8(saved.exchange);
    for (auto _ : state) {
        PwDbDatabase database;
        benchmark::DoNotOptimize(database.plxIn(path.c_str()));
    }
    Report(state, RawRead(saved.exchange), saved.objects);
}
BENCHMARK(BM_ReadExchange)->Unit(benchmark::kMillisecond);

void BM_SaveExchange(benchmark::State& state) {
    const SavedDrawing& saved = Saved();
    const wstring path = LodeUtil::Utf16FromUtf8(saved.folder + "/saved.plx");
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            saved.drawing->plxOut(path.c_str(), 16, PwDb::PwDbPlwVersionCurrent));
    }
    Report(state, RawRead(saved.exchange), saved.objects);
}
BENCHMARK(BM_SaveExchange)->Unit(benchmark::kMillisecond);

}  // namespace
