// Underlay definitions and placements in wide strings, and the underlay dictionaries.
#include <lodeqdb/references/UnderlayAccess.h>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/ObjectPointer.h>
#include <lodeqdb/references/DependentFile.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbEntity.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>

namespace LodeQDBUtil {

Plotwright::ErrorStatus ResolveUnderlayFileName(PwDbUnderlayDefinition* definition,
                                                PwString& name) {
    const Plotwright::ErrorStatus status = definition->getActiveFileName(name);
    if (status != Plotwright::StatusFileNotFound) return status;
    wstring full;
    const Plotwright::ErrorStatus found = FindDependentFullName(
        full, LodeUtil::MakeWideString(definition->getSourceFileName()), definition->database());
    if (found == Plotwright::StatusOk) name = full;
    return found;
}

Plotwright::ErrorStatus CollectUnderlayReferences(PwDbUnderlayDefinition* definition,
                                                  PwArray<PwDbObjectId>& placements) {
    if (definition == nullptr) return Plotwright::StatusNullDatabase;
    const PwDbObjectId self = definition->objectId();
    if (self.isNull()) return Plotwright::StatusNullObjectId;
    placements.removeAll();
    const PwArray<void*>* reactors = definition->reactors();
    if (reactors == nullptr) return Plotwright::StatusNullDatabase;
    for (size_t i = 0; i < reactors->length(); ++i) {
        const PwDbObjectId id = pwdbPersistentReactorObjectId(reactors->at(i));
        if (id.isNull() || id.isEffectivelyErased()) continue;
        PwDbObject* object = nullptr;
        if (pwdbOpenObject(object, id, PwDb::OpenForRead, false, nullptr) != Plotwright::StatusOk ||
            object == nullptr)
            continue;
        if (PwRxClass::isDerivedFrom(object->runtimeClass(), PwDbUnderlayReference::desc()) &&
            static_cast<PwDbUnderlayReference*>(object)->definitionId() == self)
            placements.append(id);
        pwdbReleaseObject(object);
    }
    return Plotwright::StatusOk;
}

namespace UnderlayDef {

wstring FileName(PwDbUnderlayDefinition* definition) {
    if (definition == nullptr) return wstring();
    PwString name;
    if (ResolveUnderlayFileName(definition, name) != Plotwright::StatusOk)
        name = definition->getSourceFileName();
    return LodeUtil::MakeWideString(name.kwszPtr());
}

}  // namespace UnderlayDef

namespace UnderlayRef {

bool IsLoaded(const PwDbObjectId& id) {
    if (id.isNull()) return false;
    ObjectPointer<PwDbUnderlayDefinition> definition(id, PwDb::OpenForRead, false);
    return definition.isUsable() && definition->isLoaded();
}

Plotwright::ErrorStatus Reload(const PwDbObjectId& id) {
    if (id.isNull()) return Plotwright::StatusNullObjectId;
    PwDbObjectPointer<PwDbUnderlayDefinition> definition(id, PwDb::OpenForWrite);
    if (definition.openStatus() != Plotwright::StatusOk) return definition.openStatus();
    return Reload(definition.object());
}

Plotwright::ErrorStatus Reload(PwDbUnderlayDefinition* definition) {
    if (definition == nullptr) return Plotwright::StatusNullDatabase;
    if (pwdbHostApplicationServices() == nullptr) return Plotwright::StatusNoHostServices;
    if (definition->isLoaded()) definition->unload();
    if (auto status = definition->load(nullptr)) return status;
    // Asked again on purpose before the objects are touched: the load may have run long.
    if (pwdbHostApplicationServices() == nullptr) return Plotwright::StatusNoHostServices;
    definition->assertWriteEnabled(true, true);
    PwArray<PwDbObjectId> placements(0, 8);
    if (auto status = CollectUnderlayReferences(definition, placements)) return status;
    for (size_t i = 0; i < placements.length(); ++i) {
        PwDbEntity* placement = nullptr;
        if (pwdbOpenObject(placement, placements[i], PwDb::OpenForWrite, false) !=
            Plotwright::StatusOk)
            continue;
        placement->assertWriteEnabled(true, true);
        pwdbReleaseObject(placement);
    }
    return Plotwright::StatusOk;
}

}  // namespace UnderlayRef

namespace UnderlayDictionary {

PwDbObjectId GetDictId(const PwString& key, PwDbDatabase* database) {
    if (key.isEmpty() || database == nullptr) return PwDbObjectId();
    PwDbObjectPointer<PwDbDictionary> root(database->namedObjectsDictionaryId(), PwDb::OpenForRead);
    if (root.openStatus() != Plotwright::StatusOk) return PwDbObjectId();
    PwDbObjectId id;
    if (root->getAt(key.kwszPtr(), id) != Plotwright::StatusOk) return PwDbObjectId();
    return id;
}

}  // namespace UnderlayDictionary

}  // namespace LodeQDBUtil
