// Timings for PwString assignment (in the object and on the heap) and PwArray appends.
#include <benchmark/benchmark.h>

#include <cstdint>

#include <lodeqdb/toolkit/core/PwArray.h>
#include <lodeqdb/toolkit/core/PwString.h>

namespace {

// 12 units: stays in the object, no heap traffic.
constexpr char16_t kShortText[] = u"host.plw.bak";
// 60 units: a heap block of 64 units.
constexpr char16_t kLongText[] = u"/drawings/site-a/level-03/structure/beams-and-columns-v2.plw";

// Alternates two texts so that every assignment really rewrites the storage.
void AssignAlternating(benchmark::State& state, const char16_t* first, const char16_t* second) {
    PwString text;
    bool flip = false;
    for (auto _ : state) {
        const Plotwright::ErrorStatus status = text.assign(flip ? first : second);
        benchmark::DoNotOptimize(status);
        benchmark::DoNotOptimize(text.kwszPtr());
        flip = !flip;
    }
}

void BM_PwStringAssignShort(benchmark::State& state) {
    AssignAlternating(state, kShortText, kShortText + 2);
}
BENCHMARK(BM_PwStringAssignShort);

// Same capacity class both ways: the block is reused, only the units are copied.
void BM_PwStringAssignLongSameBlock(benchmark::State& state) {
    AssignAlternating(state, kLongText, kLongText + 2);
}
BENCHMARK(BM_PwStringAssignLongSameBlock);

// Between 60 and 30 units the capacity class changes each time: one allocation and one
// free per assignment.
void BM_PwStringAssignLongNewBlock(benchmark::State& state) {
    AssignAlternating(state, kLongText, kLongText + 30);
}
BENCHMARK(BM_PwStringAssignLongNewBlock);

void BM_PwArrayAppend(benchmark::State& state) {
    const auto count = static_cast<int64_t>(state.range(0));
    for (auto _ : state) {
        PwArray<int64_t> array;
        for (int64_t i = 0; i < count; ++i) benchmark::DoNotOptimize(array.append(i));
        benchmark::ClobberMemory();
    }
    state.SetItemsProcessed(state.iterations() * count);
}
BENCHMARK(BM_PwArrayAppend)->Arg(1000000)->Unit(benchmark::kMillisecond);

}  // namespace
