// Cloning between drawings: what comes along with the objects asked for, how references are
// translated to the copies, and how a failed clone leaves the target as it was.
//
// The clone runs in two steps. Planning reads the source only: it decides, object by object,
// what is copied and what the target already has, gives every copy its handle in the target,
// and rewrites each copy's stored record so that it names target handles. Only then does
// making change the target: the copies are made from their records under their handles, and
// the new named records and entities are filed in their tables and blocks. A copy that can't
// be made takes every object made so far out again and gives their handles back.
#include <map>
#include <memory>
#include <string>
#include <unordered_map>
#include <unordered_set>
#include <variant>
#include <vector>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "toolkit/db/PwDbStub.h"
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbIdMapping.h>
#include <lodeqdb/toolkit/db/PwDbLayerTable.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbObjectRecord.h>
#include <lodeqdb/toolkit/db/PwDbTextStyleTable.h>

using Plotwright::ErrorStatus;
using Plotwright::StatusOk;

namespace {

/// The kinds of named record that cloning carries, with the table each is filed in.
enum class RecordKind { Block, Layer, TextStyle };

using Item = PwDbMemoryFiler::Item;
using Handle = PwDbMemoryFiler::Handle;

}  // namespace

class PwDbCloner {
  public:
    PwDbCloner(PwDbDatabase& target, int mode) : m_target(target), m_mode(mode) {}

    ErrorStatus run(const PwArray<PwDbObjectId>& ids, PwDbObjectId owner, PwDbIdMapping& mapping);

  private:
    struct Planned {
        PwDbObjectId source;
        PwDbHandle handle = 0;
        PwDbObjectRecord record;
        /// Where the copy is filed once made: a table for a named record, the owner block
        /// for an entity named in the call; null for an entity of a copied block.
        PwDbObjectId fileIn;
        bool isRecord = false;
        bool primary = false;
        /// The name a renamed record takes; empty to keep its own.
        wstring newName;
    };

    ErrorStatus checkArguments(const PwArray<PwDbObjectId>& ids, PwDbObjectId owner);
    ErrorStatus planRoot(PwDbObjectId id, PwDbObjectId owner);
    ErrorStatus planRecord(PwDbObjectId id, RecordKind kind, bool primary);
    ErrorStatus planEntity(PwDbObjectId id, PwDbObjectId fileIn, bool primary);
    ErrorStatus planReferences(const PwDbObjectRecord& record);
    ErrorStatus translate(Planned& planned) const;
    ErrorStatus openHolders();
    ErrorStatus make(std::vector<PwDbObject*>& made);
    ErrorStatus file(const std::vector<PwDbObject*>& made);
    PwDbObjectId tableOf(RecordKind kind) const;
    wstring freeName(const wstring& name, RecordKind kind);

    PwDbDatabase& m_target;
    PwDbDatabase* m_source = nullptr;
    int m_mode;
    PwDbHandle m_next = 0;
    std::vector<Planned> m_plan;
    // Source handle to the handle of what stands for it in the target.
    std::unordered_map<PwDbHandle, PwDbHandle> m_handles;
    // Source records that the target's own records stand for.
    std::vector<PwDbIdPair> m_kept;
    // Folded names that copies of each kind take, so that two renamed copies differ.
    std::unordered_set<wstring> m_claimed[3];
    // The tables and the owner block that the copies are filed in, open for write from before
    // the first copy is made until the last is filed.
    std::map<PwDbObjectId, std::unique_ptr<PwDbObjectPointer<PwDbObject>>> m_holders;
};

namespace {

// The number of the reactor count and the first item after the reactors in a record's data:
// the owner and the reactors lead every object's items.
bool SplitBase(const std::vector<Item>& data, size_t& afterReactors) {
    if (data.size() < 2 || !std::holds_alternative<Handle>(data[0])) return false;
    const int32_t* count = std::get_if<int32_t>(&data[1]);
    if (count == nullptr || *count < 0 || data.size() - 2 < static_cast<size_t>(*count)) {
        return false;
    }
    afterReactors = 2 + static_cast<size_t>(*count);
    return true;
}

bool IsRecordOfKind(const PwDbObject* object, RecordKind& kind) {
    if (PwDbBlockTableRecord::cast(object) != nullptr) {
        kind = RecordKind::Block;
    } else if (PwDbLayerTableRecord::cast(object) != nullptr) {
        kind = RecordKind::Layer;
    } else if (PwDbTextStyleTableRecord::cast(object) != nullptr) {
        kind = RecordKind::TextStyle;
    } else {
        return false;
    }
    return true;
}

}  // namespace

PwDbObjectId PwDbCloner::tableOf(RecordKind kind) const {
    switch (kind) {
        case RecordKind::Block:
            return m_target.blockTableId();
        case RecordKind::Layer:
            return m_target.layerTableId();
        case RecordKind::TextStyle:
            return m_target.textStyleTableId();
    }
    return PwDbObjectId();
}

ErrorStatus PwDbCloner::checkArguments(const PwArray<PwDbObjectId>& ids, PwDbObjectId owner) {
    if (ids.length() == 0 || owner.isNull()) return Plotwright::StatusNullObjectId;
    for (size_t i = 0; i < ids.length(); ++i) {
        const PwDbObjectId id = ids.at(i);
        if (id.isNull()) return Plotwright::StatusNullObjectId;
        if (!id.isValid()) return Plotwright::StatusInvalidObjectId;
        if (m_source == nullptr) m_source = id.database();
        // One source drawing per call, and never the target itself.
        if (id.database() != m_source || m_source == &m_target) {
            return Plotwright::StatusInvalidInput;
        }
    }
    if (m_mode < PwDb::DuplicateRecordRefuse || m_mode > PwDb::DuplicateRecordRename) {
        return Plotwright::StatusInvalidInput;
    }
    if (owner.database() != &m_target) return Plotwright::StatusWrongDatabase;
    if (!owner.isValid()) return Plotwright::StatusInvalidObjectId;
    return StatusOk;
}

ErrorStatus PwDbCloner::run(const PwArray<PwDbObjectId>& ids, PwDbObjectId owner,
                            PwDbIdMapping& mapping) {
    mapping.clear();
    if (auto status = checkArguments(ids, owner)) return status;
    m_next = m_target.handseed();
    for (size_t i = 0; i < ids.length(); ++i) {
        if (auto status = planRoot(ids.at(i), owner)) return status;
    }
    for (Planned& planned : m_plan) {
        if (auto status = translate(planned)) return status;
    }
    if (auto status = openHolders()) return status;
    std::vector<PwDbObject*> made;
    if (auto status = make(made)) return status;
    if (auto status = file(made)) return status;
    mapping.setDatabases(m_source, &m_target);
    for (const Planned& planned : m_plan) {
        mapping.assign(PwDbIdPair(planned.source, m_target.getPwDbObjectId(planned.handle), true,
                                  planned.primary));
    }
    for (const PwDbIdPair& kept : m_kept) mapping.assign(kept);
    return StatusOk;
}

ErrorStatus PwDbCloner::planRoot(PwDbObjectId id, PwDbObjectId owner) {
    PwDbObjectPointer<PwDbObject> object(id, PwDb::OpenForRead);
    if (object.openStatus() != StatusOk) return object.openStatus();
    RecordKind kind;
    if (IsRecordOfKind(object.object(), kind)) {
        object.release();
        if (owner != tableOf(kind)) return Plotwright::StatusNotThatKindOfClass;
        return planRecord(id, kind, true);
    }
    if (PwDbEntity::cast(object.object()) == nullptr) return Plotwright::StatusNotThatKindOfClass;
    object.release();
    PwDbObjectPointer<PwDbBlockTableRecord> block(owner, PwDb::OpenForRead);
    if (block.openStatus() == Plotwright::StatusNotThatKindOfClass) {
        return Plotwright::StatusNotThatKindOfClass;
    }
    if (block.openStatus() != StatusOk) return block.openStatus();
    return planEntity(id, owner, true);
}

wstring PwDbCloner::freeName(const wstring& name, RecordKind kind) {
    PwDbObjectPointer<PwDbSymbolTable> table(tableOf(kind), PwDb::OpenForRead);
    for (unsigned n = 1;; ++n) {
        const std::string digits = std::to_string(n);
        wstring candidate = name;
        candidate.push_back(u'$');
        candidate.append(digits.begin(), digits.end());
        const bool taken = table.openStatus() == StatusOk && table->has(candidate.c_str());
        if (!taken && m_claimed[static_cast<int>(kind)].count(LodeUtil::FoldCase(candidate)) == 0) {
            return candidate;
        }
    }
}

ErrorStatus PwDbCloner::planRecord(PwDbObjectId id, RecordKind kind, bool primary) {
    if (m_handles.count(id.handle()) != 0) return StatusOk;
    PwDbObjectPointer<PwDbSymbolTableRecord> record(id, PwDb::OpenForRead);
    if (record.openStatus() != StatusOk) return record.openStatus();
    const char16_t* name = nullptr;
    if (auto status = record->getName(name)) return status;
    const wstring ownName(name);
    const PwDbBlockTableRecord* block = PwDbBlockTableRecord::cast(record.object());
    // A layout's block belongs to its layout, which cloning doesn't carry.
    if (block != nullptr && block->isLayout()) return Plotwright::StatusNotApplicable;

    // Every drawing has layer "0" and style "Standard": they stand for each other.
    PwDbObjectId existing;
    if (kind == RecordKind::Layer && LodeUtil::FoldCase(ownName) == u"0") {
        existing = m_target.layerZeroId();
    } else if (kind == RecordKind::TextStyle &&
               LodeUtil::FoldCase(ownName) ==
                   LodeUtil::FoldCase(PwDbTextStyleTable::kStandardStyleName)) {
        existing = m_target.standardTextStyleId();
    }
    const bool ownRecord = !existing.isNull();
    if (!ownRecord) {
        PwDbObjectPointer<PwDbSymbolTable> table(tableOf(kind), PwDb::OpenForRead);
        if (table.openStatus() != StatusOk) return table.openStatus();
        table->getIdAt(name, existing);
    }
    wstring newName;
    if (!existing.isNull()) {
        if (ownRecord || m_mode == PwDb::DuplicateRecordKeepTarget) {
            m_handles[id.handle()] = existing.handle();
            m_kept.emplace_back(id, existing, false, primary);
            return StatusOk;
        }
        if (m_mode == PwDb::DuplicateRecordRefuse) return Plotwright::StatusDuplicateKey;
        newName = freeName(ownName, kind);
    } else if (m_claimed[static_cast<int>(kind)].count(LodeUtil::FoldCase(ownName)) != 0) {
        // A copy renamed earlier in this clone took the name ("A$1" for "A", and the source
        // has its own "A$1"): this one moves on to the next free name.
        newName = freeName(ownName, kind);
    }
    m_claimed[static_cast<int>(kind)].insert(
        LodeUtil::FoldCase(newName.empty() ? ownName : newName));
    Planned planned;
    planned.source = id;
    planned.handle = m_next++;
    planned.fileIn = tableOf(kind);
    planned.isRecord = true;
    planned.primary = primary;
    planned.newName = std::move(newName);
    if (auto status = pwdbRecordObject(*record, planned.record)) return status;
    m_handles[id.handle()] = planned.handle;
    m_plan.push_back(std::move(planned));
    if (block == nullptr) return StatusOk;

    // A block brings its live entities.
    PwDbBlockTableRecordIterator* raw = nullptr;
    if (auto status = block->newIterator(raw)) return status;
    std::unique_ptr<PwDbBlockTableRecordIterator> entities(raw);
    record.release();
    for (; !entities->done(); entities->step()) {
        PwDbObjectId entity;
        if (auto status = entities->getEntityId(entity)) return status;
        if (auto status = planEntity(entity, PwDbObjectId(), false)) return status;
    }
    return StatusOk;
}

ErrorStatus PwDbCloner::planEntity(PwDbObjectId id, PwDbObjectId fileIn, bool primary) {
    if (m_handles.count(id.handle()) != 0) return StatusOk;
    Planned planned;
    {
        PwDbObjectPointer<PwDbEntity> entity(id, PwDb::OpenForRead);
        if (entity.openStatus() != StatusOk) return entity.openStatus();
        if (auto status = pwdbRecordObject(*entity, planned.record)) return status;
    }
    planned.source = id;
    planned.handle = m_next++;
    planned.fileIn = fileIn;
    planned.primary = primary;
    m_handles[id.handle()] = planned.handle;
    m_plan.push_back(std::move(planned));
    // Planning the references may grow the plan: the record is copied out first.
    const PwDbObjectRecord record = m_plan.back().record;
    return planReferences(record);
}

// The objects an entity refers to by its own items (its layer, its style, the block it
// places) come along; what cloning doesn't carry refuses the clone rather than dangle.
ErrorStatus PwDbCloner::planReferences(const PwDbObjectRecord& record) {
    size_t first = 0;
    if (!SplitBase(record.data, first)) return Plotwright::StatusFilerError;
    for (size_t i = first; i < record.data.size(); ++i) {
        const Handle* handle = std::get_if<Handle>(&record.data[i]);
        if (handle == nullptr || handle->value == 0 || m_handles.count(handle->value) != 0) {
            continue;
        }
        const PwDbObjectId referred = m_source->getPwDbObjectId(handle->value);
        if (!referred.isValid() || referred.isErased()) continue;
        const PwDbObject* object = pwdbStubObject(*referred.stub());
        if (object == nullptr) continue;
        RecordKind kind;
        if (!IsRecordOfKind(object, kind)) return Plotwright::StatusNotApplicable;
        if (auto status = planRecord(referred, kind, false)) return status;
    }
    return StatusOk;
}

ErrorStatus PwDbCloner::translate(Planned& planned) const {
    std::vector<Item>& data = planned.record.data;
    size_t first = 0;
    if (!SplitBase(data, first)) return Plotwright::StatusFilerError;
    const auto mapped = [&](PwDbHandle source) -> PwDbHandle {
        const auto found = m_handles.find(source);
        return found == m_handles.end() ? 0 : found->second;
    };
    std::vector<Item> out;
    out.reserve(data.size());
    // What is filed by the clone gets its owner then; an entity of a copied block keeps it.
    const PwDbHandle owner = std::get<Handle>(data[0]).value;
    out.emplace_back(Handle{planned.fileIn.isNull() ? mapped(owner) : 0});
    // Reactors outside the clone stay behind in the source.
    std::vector<Item> reactors;
    for (size_t i = 2; i < first; ++i) {
        const Handle* reactor = std::get_if<Handle>(&data[i]);
        if (reactor == nullptr) return Plotwright::StatusFilerError;
        if (const PwDbHandle to = mapped(reactor->value)) reactors.emplace_back(Handle{to});
    }
    out.emplace_back(static_cast<int32_t>(reactors.size()));
    out.insert(out.end(), reactors.begin(), reactors.end());
    for (size_t i = first; i < data.size(); ++i) {
        const Handle* handle = std::get_if<Handle>(&data[i]);
        if (planned.isRecord && i == first && !planned.newName.empty()) {
            // A symbol table record's first own item is its name.
            if (!std::holds_alternative<wstring>(data[i])) return Plotwright::StatusFilerError;
            out.emplace_back(planned.newName);
        } else if (handle == nullptr || handle->value == 0) {
            out.push_back(data[i]);
        } else if (const PwDbHandle to = mapped(handle->value)) {
            out.emplace_back(Handle{to});
        } else {
            // Only erased objects are left unmapped by planning: a copy names none.
            out.emplace_back(Handle{0});
        }
    }
    data = std::move(out);
    planned.record.handle = planned.handle;
    planned.record.erased = false;
    return StatusOk;
}

ErrorStatus PwDbCloner::make(std::vector<PwDbObject*>& made) {
    const PwDbHandle firstHandle = m_target.handseed();
    const size_t stubCount = m_target.m_records->stubs.size();
    for (const Planned& planned : m_plan) {
        PwDbObject* object = nullptr;
        if (auto status = pwdbObjectFromRecord(planned.record, &m_target, object)) {
            // Objects made so far are open for write by this clone alone: they go as they
            // came.
            m_target.discardObjectsFrom(firstHandle, stubCount);
            made.clear();
            return status;
        }
        made.push_back(object);
    }
    return StatusOk;
}

ErrorStatus PwDbCloner::openHolders() {
    for (const Planned& planned : m_plan) {
        if (planned.fileIn.isNull() || m_holders.count(planned.fileIn) != 0) continue;
        auto holder =
            std::make_unique<PwDbObjectPointer<PwDbObject>>(planned.fileIn, PwDb::OpenForWrite);
        if (holder->openStatus() != StatusOk) return holder->openStatus();
        m_holders.emplace(planned.fileIn, std::move(holder));
    }
    return StatusOk;
}

ErrorStatus PwDbCloner::file(const std::vector<PwDbObject*>& made) {
    ErrorStatus result = StatusOk;
    for (size_t i = 0; i < m_plan.size() && result == StatusOk; ++i) {
        const Planned& planned = m_plan[i];
        if (planned.fileIn.isNull()) continue;
        PwDbObject* holder = m_holders.at(planned.fileIn)->object();
        if (planned.isRecord) {
            result = static_cast<PwDbSymbolTable*>(holder)->add(
                static_cast<PwDbSymbolTableRecord*>(made[i]));
        } else {
            result = static_cast<PwDbBlockTableRecord*>(holder)->appendPwDbEntity(
                static_cast<PwDbEntity*>(made[i]));
        }
    }
    // Planning checked names, kinds and owners, and the holders are open for write, so filing
    // has nothing left to refuse; should it all the same, the copies are erased rather than
    // left half filed.
    for (PwDbObject* object : made) {
        if (result != StatusOk) object->erase();
        object->close();
    }
    m_holders.clear();
    return result;
}

Plotwright::ErrorStatus PwDbDatabase::wblockCloneObjects(const PwArray<PwDbObjectId>& ids,
                                                         PwDbObjectId owner, PwDbIdMapping& mapping,
                                                         int duplicateRecordCloning,
                                                         bool /*deferTranslation*/) {
    PwDbCloner cloner(*this, duplicateRecordCloning);
    return cloner.run(ids, owner, mapping);
}
