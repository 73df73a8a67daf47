// The drawing database's hot paths: opening and closing an object, walking a large block.
#include <benchmark/benchmark.h>

#include <memory>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace {

constexpr int kMillion = 1000000;

// One drawing with a million lines in its model space, made once for all walks.
PwDbDatabase& MillionLineDrawing() {
    static const std::unique_ptr<PwDbDatabase> drawing = [] {
        auto made = PwDbAuthoring::createDrawing();
        PwDbObjectPointer<PwDbBlockTableRecord> model(made->modelSpaceId(), PwDb::OpenForWrite);
        for (int i = 0; i < kMillion; ++i) {
            auto* line = new PwDbLine;
            line->setEndPoint(PwGePoint3d(i, i, 0));
            model->appendPwDbEntity(line);
            line->close();
        }
        return made;
    }();
    return *drawing;
}

void BM_OpenAndCloseForRead(benchmark::State& state) {
    auto drawing = PwDbAuthoring::createDrawing();
    const PwDbObjectId id = drawing->layerZeroId();
    for (auto _ : state) {
        PwDbObject* object = nullptr;
        pwdbOpenObject(object, id, PwDb::OpenForRead);
        benchmark::DoNotOptimize(object);
        object->close();
    }
}
BENCHMARK(BM_OpenAndCloseForRead);

void BM_OpenAndCloseThroughPointer(benchmark::State& state) {
    auto drawing = PwDbAuthoring::createDrawing();
    const PwDbObjectId id = drawing->modelSpaceId();
    for (auto _ : state) {
        PwDbObjectPointer<PwDbBlockTableRecord> record(id, PwDb::OpenForRead);
        benchmark::DoNotOptimize(record.object());
    }
}
BENCHMARK(BM_OpenAndCloseThroughPointer);

void BM_WalkMillionEntityIds(benchmark::State& state) {
    PwDbDatabase& drawing = MillionLineDrawing();
    PwDbObjectPointer<PwDbBlockTableRecord> model(drawing.modelSpaceId(), PwDb::OpenForRead);
    for (auto _ : state) {
        PwDbBlockTableRecordIterator* raw = nullptr;
        model->newIterator(raw);
        std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
        PwDbObjectId id;
        for (; !it->done(); it->step()) {
            it->getEntityId(id);
            benchmark::DoNotOptimize(id);
        }
    }
    state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(BM_WalkMillionEntityIds)->Unit(benchmark::kMillisecond);

void BM_WalkAndOpenMillionEntities(benchmark::State& state) {
    PwDbDatabase& drawing = MillionLineDrawing();
    PwDbObjectPointer<PwDbBlockTableRecord> model(drawing.modelSpaceId(), PwDb::OpenForRead);
    for (auto _ : state) {
        PwDbBlockTableRecordIterator* raw = nullptr;
        model->newIterator(raw);
        std::unique_ptr<PwDbBlockTableRecordIterator> it(raw);
        for (; !it->done(); it->step()) {
            PwDbEntity* entity = nullptr;
            it->getEntity(entity, PwDb::OpenForRead);
            benchmark::DoNotOptimize(entity);
            entity->close();
        }
    }
    state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(BM_WalkAndOpenMillionEntities)->Unit(benchmark::kMillisecond);

void BM_BuildMillionLineDrawing(benchmark::State& state) {
    for (auto _ : state) {
        auto drawing = PwDbAuthoring::createDrawing();
        PwDbObjectPointer<PwDbBlockTableRecord> model(drawing->modelSpaceId(), PwDb::OpenForWrite);
        for (int i = 0; i < kMillion; ++i) {
            auto* line = new PwDbLine;
            model->appendPwDbEntity(line);
            line->close();
        }
        model.release();
        drawing.reset();
    }
    state.SetItemsProcessed(state.iterations() * kMillion);
}
BENCHMARK(BM_BuildMillionLineDrawing)->Unit(benchmark::kMillisecond)->Iterations(2);

}  // namespace
