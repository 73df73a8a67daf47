// Listing and changing the paths a drawing stores for its dependencies.
#include <lodeqdb/relocate/StoredPaths.h>

#include <algorithm>
#include <memory>

#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include "platform/FaultGuard.h"

namespace LodeQDBRelocate {

const char* StoredPathKindName(StoredPathKind kind) {
    switch (kind) {
        case StoredPathKind::Reference:
            return "reference";
        case StoredPathKind::Image:
            return "image";
        case StoredPathKind::PdfUnderlay:
            return "pdf-underlay";
        case StoredPathKind::DgnUnderlay:
            return "dgn-underlay";
        case StoredPathKind::PlfUnderlay:
            return "plf-underlay";
        case StoredPathKind::DgnAttachment:
            return "dgn-attachment";
    }
    return "unknown";
}

PwDbHostApplicationServices::FindFileHint FindHintFor(StoredPathKind kind) {
    switch (kind) {
        case StoredPathKind::Reference:
            return PwDbHostApplicationServices::kXrefDrawing;
        case StoredPathKind::Image:
            return PwDbHostApplicationServices::kRasterImage;
        case StoredPathKind::DgnAttachment:
            return PwDbHostApplicationServices::kDefault;
        default:
            return PwDbHostApplicationServices::kUnderlay;
    }
}

namespace {

void AddReferences(PwDbDatabase& drawing, std::vector<StoredPath>& paths) {
    PwDbObjectPointer<PwDbBlockTable> table(&drawing, PwDb::OpenForRead);
    if (table.openStatus() != Plotwright::StatusOk) return;
    PwDbBlockTableIterator* raw = nullptr;
    if (table->newIterator(raw) != Plotwright::StatusOk || raw == nullptr) return;
    const std::unique_ptr<PwDbBlockTableIterator> iterator(raw);
    for (; !iterator->done(); iterator->step()) {
        PwDbObjectId id;
        if (iterator->getRecordId(id) != Plotwright::StatusOk) continue;
        PwDbObjectPointer<PwDbBlockTableRecord> block(id, PwDb::OpenForRead);
        if (block.openStatus() != Plotwright::StatusOk || !block->isFromExternalReference())
            continue;
        StoredPath entry;
        entry.kind = StoredPathKind::Reference;
        entry.objectId = id;
        const char16_t* name = nullptr;
        if (block->getName(name) == Plotwright::StatusOk && name != nullptr) entry.name = name;
        entry.path = block->pathName();
        paths.push_back(std::move(entry));
    }
}

// Each entry of the dictionary `dictionaryId` that `accept` takes (the entry open for read).
template <class Accept>
void AddDictionaryEntries(PwDbObjectId dictionaryId, Accept accept) {
    if (dictionaryId.isNull()) return;
    PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
    if (dictionary.openStatus() != Plotwright::StatusOk) return;
    const std::unique_ptr<PwDbDictionaryIterator> iterator(dictionary->newIterator());
    for (; !iterator->atEnd(); iterator->advance()) {
        PwDbObjectPointer<PwDbObject> entry(iterator->entryId(), PwDb::OpenForRead);
        if (entry.openStatus() != Plotwright::StatusOk || entry.object() == nullptr) continue;
        accept(iterator->name() != nullptr ? wstring(iterator->name()) : wstring(),
               *entry.object());
    }
}

void AddImages(PwDbDatabase& drawing, std::vector<StoredPath>& paths) {
    AddDictionaryEntries(PwDbRasterImageDef::imageDictionary(&drawing),
                         [&](const wstring& key, PwDbObject& object) {
                             const auto* image = PwDbRasterImageDef::cast(&object);
                             if (image == nullptr) return;
                             StoredPath entry;
                             entry.kind = StoredPathKind::Image;
                             entry.objectId = object.objectId();
                             entry.name = key;
                             entry.path = image->sourceFileName();
                             entry.inUse = !image->skipAsChild();
                             paths.push_back(std::move(entry));
                         });
}

void AddUnderlays(PwDbDatabase& drawing, std::vector<StoredPath>& paths) {
    PwDbObjectPointer<PwDbDictionary> root(drawing.namedObjectsDictionaryId(), PwDb::OpenForRead);
    if (root.openStatus() != Plotwright::StatusOk) return;
    const std::pair<PwRxClass*, StoredPathKind> kinds[] = {
        {PwDbPlfDefinition::desc(), StoredPathKind::PlfUnderlay},
        {PwDbDgnDefinition::desc(), StoredPathKind::DgnUnderlay},
        {PwDbPdfDefinition::desc(), StoredPathKind::PdfUnderlay},
    };
    for (const auto& [kindClass, kind] : kinds) {
        PwDbObjectId dictionaryId;
        if (root->getAt(PwDbUnderlayDefinition::dictionaryKey(kindClass).kwszPtr(),
                        dictionaryId) != Plotwright::StatusOk)
            continue;
        AddDictionaryEntries(dictionaryId, [&, kind = kind](const wstring& key, PwDbObject& object) {
            const auto* definition = PwDbUnderlayDefinition::cast(&object);
            if (definition == nullptr) return;
            StoredPath entry;
            entry.kind = kind;
            entry.objectId = object.objectId();
            entry.name = key;
            entry.path = definition->getSourceFileName();
            paths.push_back(std::move(entry));
        });
    }
}

}  // namespace

std::vector<StoredPath> ListStoredPaths(PwDbDatabase& drawing) {
    std::vector<StoredPath> paths;
    AddReferences(drawing, paths);
    AddImages(drawing, paths);
    AddUnderlays(drawing, paths);
    return paths;
}

Plotwright::ErrorStatus SetStoredPath(const StoredPath& entry, const wstring& path) {
    switch (entry.kind) {
        case StoredPathKind::Reference: {
            PwDbObjectPointer<PwDbBlockTableRecord> block(entry.objectId, PwDb::OpenForWrite);
            if (block.openStatus() != Plotwright::StatusOk) return block.openStatus();
            return block->setPathName(path.c_str());
        }
        case StoredPathKind::Image: {
            PwDbObjectPointer<PwDbRasterImageDef> image(entry.objectId, PwDb::OpenForWrite);
            if (image.openStatus() != Plotwright::StatusOk) return image.openStatus();
            return image->setSourceFileName(path.c_str());
        }
        case StoredPathKind::PdfUnderlay:
        case StoredPathKind::DgnUnderlay:
        case StoredPathKind::PlfUnderlay: {
            PwDbObjectPointer<PwDbUnderlayDefinition> definition(entry.objectId,
                                                                 PwDb::OpenForWrite);
            if (definition.openStatus() != Plotwright::StatusOk) return definition.openStatus();
            return definition->setSourceFileName(path.c_str());
        }
        case StoredPathKind::DgnAttachment:
            break;
    }
    return Plotwright::StatusInvalidInput;
}

std::vector<DgnAttachment> ListDgnAttachments(const wstring& dgnPath) {
    struct OwnedRecords {
        PwArray<PwDbDgnRefFileData*> records{0, 8};
        ~OwnedRecords() { pwdbDeleteDgnFileReferences(records); }
    } owned;
    Plotwright::ErrorStatus status = Plotwright::StatusCallNotReturned;
    LodeQDBUtil::RunGuarded(
        [&] { status = pwdbGetDgnFileReferences(dgnPath.c_str(), nullptr, owned.records); });
    LodeQDBUtil::ThrowLodeExceptionOnFile(status, dgnPath);
    std::vector<DgnAttachment> attachments;
    for (size_t i = 0; i < owned.records.length(); ++i) {
        const PwDbDgnRefFileData& record = *owned.records[i];
        DgnAttachment attachment;
        attachment.stored.kind = StoredPathKind::DgnAttachment;
        attachment.stored.name = record.logicalName.kwszPtr();
        attachment.stored.path = record.storedPath.kwszPtr();
        attachment.found = record.resolvedPath.kwszPtr();
        attachments.push_back(std::move(attachment));
    }
    return attachments;
}

}  // namespace LodeQDBRelocate
