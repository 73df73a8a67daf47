#include "support/DrawingReadBack.h"

#include <memory>

#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/rx/PwRxClass.h>

namespace lodeqdbtest {

std::vector<PwDbObjectId> Entities(PwDbObjectId block) {
    std::vector<PwDbObjectId> ids;
    PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForRead);
    if (record.openStatus() != Plotwright::StatusOk) return ids;
    PwDbBlockTableRecordIterator* iterator = nullptr;
    if (record->newIterator(iterator) != Plotwright::StatusOk) return ids;
    std::unique_ptr<PwDbBlockTableRecordIterator> owned(iterator);
    for (owned->start(); !owned->done(); owned->step()) {
        PwDbObjectId id;
        owned->getEntityId(id);
        ids.push_back(id);
    }
    return ids;
}

PwDbObjectId BlockNamed(const PwDbDatabase& drawing, const wstring& name) {
    PwDbObjectPointer<PwDbBlockTable> blocks(const_cast<PwDbDatabase*>(&drawing),
                                             PwDb::OpenForRead);
    PwDbObjectId id;
    if (blocks.openStatus() == Plotwright::StatusOk) blocks->getIdAt(name.c_str(), id);
    return id;
}

wstring RecordName(PwDbObjectId record) {
    PwDbObjectPointer<PwDbSymbolTableRecord> open(record, PwDb::OpenForRead);
    PwString name;
    if (open.openStatus() == Plotwright::StatusOk) open->getName(name);
    return name.toWString();
}

wstring ClassName(PwDbObjectId id) {
    PwDbObjectPointer<PwDbObject> open(id, PwDb::OpenForRead);
    return open.openStatus() == Plotwright::StatusOk ? wstring(open->runtimeClass()->name())
                                                     : wstring();
}

std::vector<wstring> LayerNames(const PwDbDatabase& drawing) {
    std::vector<wstring> names;
    PwDbObjectPointer<PwDbLayerTable> layers(const_cast<PwDbDatabase*>(&drawing),
                                             PwDb::OpenForRead);
    if (layers.openStatus() != Plotwright::StatusOk) return names;
    PwDbLayerTableIterator* iterator = nullptr;
    if (layers->newIterator(iterator) != Plotwright::StatusOk) return names;
    std::unique_ptr<PwDbLayerTableIterator> owned(iterator);
    for (owned->start(); !owned->done(); owned->step()) {
        PwDbObjectId id;
        owned->getRecordId(id);
        names.push_back(RecordName(id));
    }
    return names;
}

ScopedRootFolder::ScopedRootFolder(const wstring& folder)
    : m_previous(pwdbHostApplicationServices()->rootFolder()) {
    pwdbHostApplicationServices()->setRootFolder(folder);
}

ScopedRootFolder::~ScopedRootFolder() {
    pwdbHostApplicationServices()->setRootFolder(m_previous);
}

}  // namespace lodeqdbtest
