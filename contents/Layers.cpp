// The layer table of a drawing as plain records.
#include <lodeqdb/contents/Layers.h>

#include <memory>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/core/PwStringBuffer.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace LodeQDBUtil::Layer {

namespace {

// The description through a buffer of our own, which goes back to the toolkit at once: a
// listing of many drawings must not leave one buffer per layer behind.
wstring DescriptionOf(const PwDbLayerTableRecord& layer) {
    PwString description;
    if (layer.description(description) != Plotwright::StatusOk) return wstring();
    char16_t* copy = nullptr;
    if (pwutNewString(description.kwszPtr(), copy) != Plotwright::StatusOk) return wstring();
    wstring result = copy != nullptr ? LodeUtil::MakeWideString(copy) : wstring();
    pwutDelBuffer(copy);
    return result;
}

lode::PlwLayerInfo InfoOf(const PwDbLayerTableRecord& layer) {
    lode::PlwLayerInfo info;
    const char16_t* name = nullptr;
    if (layer.getName(name) == Plotwright::StatusOk && name != nullptr)
        info.name = LodeUtil::MakeWideString(name);
    info.description = DescriptionOf(layer);
    info.isFrozen = layer.isFrozen();
    info.isHidden = layer.isHidden();
    info.isInUse = layer.isInUse();
    info.isLocked = layer.isLocked();
    info.isOff = layer.isOff();
    info.isReconciled = layer.isReconciled();
    return info;
}

}  // namespace

std::vector<lode::PlwLayerInfo> GetPlwLayers(PwDbDatabase& database) {
    PwDbSymbolTablePointer<PwDbLayerTable> table(&database, PwDb::OpenForRead);
    if (table.openStatus() != Plotwright::StatusOk)
        throw lode::PlotwrightException(table.openStatus());
    PwDbLayerTableIterator* made = nullptr;
    const Plotwright::ErrorStatus status = table->newIterator(made, true, true);
    std::unique_ptr<PwDbLayerTableIterator> iterator(made);
    if (status != Plotwright::StatusOk) throw lode::PlotwrightException(status);

    std::vector<lode::PlwLayerInfo> layers;
    for (; !iterator->done(); iterator->step(true, true)) {
        PwDbObjectId id;
        if (iterator->getRecordId(id) != Plotwright::StatusOk) continue;
        PwDbLayerTableRecord* opened = nullptr;
        if (pwdbOpenObject(opened, id, &PwDbLayerTableRecord::desc, PwDb::OpenForRead, false) !=
            Plotwright::StatusOk)
            continue;
        // Released by the closing rule on every way out of this turn.
        PwDbObjectPointer<PwDbLayerTableRecord> layer(opened);
        layers.push_back(InfoOf(*layer));
    }
    return layers;
}

std::vector<lode::PlwLayerInfo> GetPlwLayers(const wstring& path) {
    PwDbDatabase database(false, true);
    ThrowLodeExceptionOnFile(ReadPLWOrPLXToDb(path, database, true), path);
    return GetPlwLayers(database);
}

}  // namespace LodeQDBUtil::Layer
