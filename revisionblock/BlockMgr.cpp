// The manager's shell: finding the block in its drawing, and handing the table work to
// BlockMgrImpl while there is one.
//
// States: without a block (impl null) the manager answers false to both questions, GetData
// gives nothing, Update throws 401, and ImportBlockDefinition may bring one. With a block the
// record and its table are open for read. Construction, Reset and a successful import enter
// whichever state the drawing warrants; nothing else changes it.
#include <lodeqdb/revisionblock/BlockMgr.h>

#include <utility>

#include <lodeqdb/platform/LodeExceptions.h>
#include "revisionblock/BlockMgrImpl.h"
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace RevisionBlock {

BlockMgr::BlockMgr(PwDbDatabase& drawing) : impl(nullptr), database(drawing) {
    Init();
}

BlockMgr::~BlockMgr() = default;

void BlockMgr::Reset() {
    impl.reset();
    Init();
}

bool BlockMgr::HasBlockDefinition() const {
    return impl != nullptr;
}

bool BlockMgr::HasBlockInstance() const {
    return impl != nullptr && impl->HasInstance();
}

// A drawing without the block is the usual case: any failure to find it ends quietly. A block
// that is there but unusable throws from BlockMgrImpl's constructor.
void BlockMgr::Init() {
    PwDbBlockTable* blocks = nullptr;
    if (database.getSymbolTable(blocks, PwDb::OpenForRead) != Plotwright::StatusOk) return;
    PwDbObjectId id;
    Plotwright::ErrorStatus status = blocks->getIdAt(RevisionBlockName.c_str(), id, false);
    PwDbObjectPointer<PwDbBlockTableRecord> record;
    if (status == Plotwright::StatusOk) status = record.open(id, PwDb::OpenForRead, false);
    blocks->close();
    if (status != Plotwright::StatusOk) return;
    // The record passes to the new object only once it is being built, so that a failed
    // allocation still closes it here.
    impl.reset(new BlockMgrImpl(std::move(record)));
}

// A call without a block is a caller's error; it throws here instead of
// reaching through a null pointer, so that a wrong call can't take the process down.
BlockMgrImpl& BlockMgr::RequireDefinition() const {
    if (impl == nullptr) throw lode::LodeException(NoBlockInstance);
    return *impl;
}

std::vector<wstring> BlockMgr::GetColumnHeaders() const {
    return RequireDefinition().GetColumnHeaders();
}

std::vector<std::map<wstring, wstring>> BlockMgr::GetData() const {
    if (impl == nullptr) return {};
    return impl->GetData();
}

void BlockMgr::ApplyColumnHeaders(const std::vector<wstring>& headers) {
    RequireDefinition().ApplyColumnHeaders(headers);
}

// A definition that no reference shows can't be updated: nothing would show the change.
bool BlockMgr::Update(const UpdateContext& context) {
    if (impl == nullptr || !impl->HasInstance()) throw lode::LodeException(NoBlockInstance);
    return impl->Update(context);
}

}  // namespace RevisionBlock
