// Cost of the string order used to match names: plain, natural, case-folded.
#include <benchmark/benchmark.h>

#include <lodeqdb/lodeutil/Strings.h>

namespace {

void BM_OrderCodeUnit(benchmark::State& state) {
    const wstring a = u"Revision table column DESCRIPTION 10";
    const wstring b = u"Revision table column DESCRIPTION 9";
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            LodeUtil::Order(a, b, LodeUtil::StringOrder::CodeUnit, LodeUtil::StringCase::Respect));
    }
}
BENCHMARK(BM_OrderCodeUnit);

void BM_OrderNaturalIgnoringCase(benchmark::State& state) {
    const wstring a = u"Revision table column DESCRIPTION 10";
    const wstring b = u"revision table column description 9";
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            LodeUtil::Order(a, b, LodeUtil::StringOrder::Natural, LodeUtil::StringCase::Ignore));
    }
}
BENCHMARK(BM_OrderNaturalIgnoringCase);

}  // namespace
