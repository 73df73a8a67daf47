// The revision table's large update: 500 entries reordered, inserted, deleted and rewritten at
// once (the scenario of the revision block's test), and the same request again when the table
// already holds it.
#include <benchmark/benchmark.h>

#include <memory>

#include <lodeqdb/revisionblock/BlockMgr.h>
#include "revisionblock/ReorderScenario.h"

namespace {

// Making the drawing and the manager is left out of the time: only the update counts.
void RevisionTableUpdateOf500Rows(benchmark::State& state) {
    const RevisionBlock::UpdateContext wanted = revblockscenario::Reordered();
    for (auto _ : state) {
        state.PauseTiming();
        auto drawing = revblockscenario::TableOf500();
        auto manager = std::make_unique<RevisionBlock::BlockMgr>(*drawing);
        state.ResumeTiming();
        benchmark::DoNotOptimize(manager->Update(wanted));
        state.PauseTiming();
        manager.reset();
        drawing.reset();
        state.ResumeTiming();
    }
    state.counters["rows"] = static_cast<double>(wanted.rows.size());
}
BENCHMARK(RevisionTableUpdateOf500Rows)->Unit(benchmark::kMillisecond);

// The cost of finding that nothing is to be done: every cell read and compared.
void RevisionTableUpdateThatChangesNothing(benchmark::State& state) {
    const RevisionBlock::UpdateContext wanted = revblockscenario::Reordered();
    auto drawing = revblockscenario::TableOf500();
    RevisionBlock::BlockMgr manager(*drawing);
    manager.Update(wanted);
    for (auto _ : state) benchmark::DoNotOptimize(manager.Update(wanted));
}
BENCHMARK(RevisionTableUpdateThatChangesNothing)->Unit(benchmark::kMillisecond);

}  // namespace
