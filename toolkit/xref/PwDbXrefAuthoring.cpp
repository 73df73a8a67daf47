// Authoring external references: a block with a path, placed in the model space.
#include <lodeqdb/toolkit/xref/PwDbXrefAuthoring.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace PwDbAuthoring {

Plotwright::ErrorStatus addXref(PwDbDatabase& drawing, const wstring& name, const wstring& path,
                                const PwGePoint3d& position, PwDbObjectId* id) {
    if (path.empty()) return Plotwright::StatusInvalidInput;
    PwDbObjectId block;
    if (auto status = addBlock(drawing, name, &block)) return status;
    {
        PwDbObjectPointer<PwDbBlockTableRecord> record(block, PwDb::OpenForWrite);
        if (record.openStatus() != Plotwright::StatusOk) return record.openStatus();
        if (auto status = record->setPathName(path.c_str())) return status;
    }
    if (auto status = addBlockReference(drawing, drawing.modelSpaceId(), block, position))
        return status;
    if (id != nullptr) *id = block;
    return Plotwright::StatusOk;
}

}  // namespace PwDbAuthoring
