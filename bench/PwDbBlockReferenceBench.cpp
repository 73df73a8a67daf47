// A block's references in a drawing of a million objects: from the drawing's index, against a
// scan of every object as the answer was found before the index.
#include <benchmark/benchmark.h>

#include <memory>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockReference.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbCurves.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include "toolkit/db/PwDbStub.h"

namespace {

constexpr int kObjects = 1000000;
constexpr int kBlocks = 100;

struct Drawing {
    std::unique_ptr<PwDbDatabase> database;
    /// A block placed 3 times, and one placed 1000 times.
    PwDbObjectId rare;
    PwDbObjectId common;
};

// Lines and block references in model space up to a million objects, references spread over
// a hundred blocks, made once for all runs.
const Drawing& MillionObjectDrawing() {
    static const Drawing drawing = [] {
        Drawing made;
        made.database = PwDbAuthoring::createDrawing();
        PwDbDatabase& db = *made.database;
        PwDbObjectId blocks[kBlocks];
        for (int b = 0; b < kBlocks; ++b) {
            PwDbAuthoring::addBlock(db,
                                    u"B" + wstring(1, static_cast<char16_t>(u'0' + b % 10)) +
                                        wstring(1, static_cast<char16_t>(u'0' + b / 10)),
                                    &blocks[b]);
        }
        made.rare = blocks[0];
        made.common = blocks[1];
        PwDbObjectPointer<PwDbBlockTableRecord> model(db.modelSpaceId(), PwDb::OpenForWrite);
        int references = 0;
        for (int i = 0; db.numObjects() < static_cast<size_t>(kObjects); ++i) {
            PwDbEntity* entity = nullptr;
            if (i % 100 == 50) {
                // Block 0 three times, block 1 a thousand times, the rest spread.
                auto* reference = new PwDbBlockReference;
                const int which = references < 3 ? 0 : references < 1003 ? 1 : 2 + references % 98;
                reference->setReferencedBlock(blocks[which]);
                ++references;
                entity = reference;
            } else {
                auto* line = new PwDbLine;
                line->setEndPoint(PwGePoint3d(i, i, 0));
                entity = line;
            }
            model->appendPwDbEntity(entity);
            entity->close();
        }
        return made;
    }();
    return drawing;
}

void References(benchmark::State& state, bool common) {
    const Drawing& drawing = MillionObjectDrawing();
    PwDbObjectPointer<PwDbBlockTableRecord> block(common ? drawing.common : drawing.rare,
                                                  PwDb::OpenForRead);
    PwArray<PwDbObjectId> ids;
    for (auto _ : state) {
        block->getBlockReferenceIds(ids, true, false);
        benchmark::DoNotOptimize(ids.length());
    }
    state.counters["references"] = static_cast<double>(ids.length());
    state.counters["objects"] = static_cast<double>(drawing.database->numObjects());
}

void BM_BlockReferencesFromIndexThree(benchmark::State& state) {
    References(state, false);
}
BENCHMARK(BM_BlockReferencesFromIndexThree);

void BM_BlockReferencesFromIndexThousand(benchmark::State& state) {
    References(state, true);
}
BENCHMARK(BM_BlockReferencesFromIndexThousand);

// The same answer by visiting every object of the drawing.
void BM_BlockReferencesByScanningEveryObject(benchmark::State& state) {
    const Drawing& drawing = MillionObjectDrawing();
    PwArray<PwDbObjectId> ids;
    for (auto _ : state) {
        ids.setLogicalLength(0);
        pwdbForEachStub(*drawing.database, [&](const PwDbStub& stub) {
            const PwDbBlockReference* reference = PwDbBlockReference::cast(stub.object);
            if (reference != nullptr && !reference->isErased() &&
                reference->blockTableRecord() == drawing.rare) {
                ids.append(reference->objectId());
            }
        });
        benchmark::DoNotOptimize(ids.length());
    }
    state.counters["references"] = static_cast<double>(ids.length());
}
BENCHMARK(BM_BlockReferencesByScanningEveryObject)->Unit(benchmark::kMillisecond);

}  // namespace
