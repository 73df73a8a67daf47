// Adding underlay definitions and their placements to a drawing.
#include <lodeqdb/toolkit/underlay/PwDbUnderlayAuthoring.h>

#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayReference.h>

namespace PwDbAuthoring {

namespace {

// The dictionary filed under `key` in the root dictionary, made when missing.
Plotwright::ErrorStatus KindDictionary(PwDbDatabase& drawing, const PwString& key,
                                       PwDbObjectId& id) {
    {
        PwDbObjectPointer<PwDbDictionary> root(drawing.namedObjectsDictionaryId(),
                                               PwDb::OpenForRead);
        if (root.openStatus() != Plotwright::StatusOk) return root.openStatus();
        if (root->getAt(key.kwszPtr(), id) == Plotwright::StatusOk) return Plotwright::StatusOk;
    }
    return addDictionaryEntry(drawing, drawing.namedObjectsDictionaryId(), key.kwszPtr(),
                              new PwDbDictionary, &id);
}

}  // namespace

Plotwright::ErrorStatus addUnderlayDefinition(PwDbDatabase& drawing, PwRxClass* kind,
                                              const wstring& key, const wstring& sourcePath,
                                              const wstring& itemName, PwDbObjectId* id) {
    const PwString dictionaryKey = PwDbUnderlayDefinition::dictionaryKey(kind);
    if (dictionaryKey.isEmpty()) return Plotwright::StatusInvalidInput;
    auto* definition = PwDbUnderlayDefinition::cast(kind->create());
    if (definition == nullptr) return Plotwright::StatusInvalidInput;
    definition->setSourceFileName(sourcePath.c_str());
    definition->setItemName(itemName.c_str());
    PwDbObjectId dictionary;
    if (auto status = KindDictionary(drawing, dictionaryKey, dictionary)) {
        delete definition;
        return status;
    }
    return addDictionaryEntry(drawing, dictionary, key, definition, id);
}

Plotwright::ErrorStatus addUnderlayReference(PwDbDatabase& drawing, PwDbObjectId block,
                                             PwDbObjectId definition, const PwGePoint3d& position,
                                             const PwGeScale3d& scale, PwDbObjectId layer,
                                             PwDbObjectId* id) {
    PwDbObjectPointer<PwDbUnderlayDefinition> shown(definition, PwDb::OpenForWrite);
    if (shown.openStatus() != Plotwright::StatusOk) return shown.openStatus();
    auto* reference = new PwDbUnderlayReference;
    Plotwright::ErrorStatus status = reference->setDefinitionId(definition);
    if (status == Plotwright::StatusOk) status = reference->setPosition(position);
    if (status == Plotwright::StatusOk) status = reference->setScaleFactors(scale);
    if (status != Plotwright::StatusOk) {
        delete reference;
        return status;
    }
    PwDbObjectId added;
    if (auto failed = addEntity(drawing, block, reference, layer, &added)) return failed;
    if (auto failed = shown->addPersistentReactor(added)) return failed;
    if (id != nullptr) *id = added;
    return Plotwright::StatusOk;
}

}  // namespace PwDbAuthoring
