// The direct dependencies of a drawing: references, then images, then underlays.
#include <lodeqdb/service/ChildrenQuery.h>

#include <memory>
#include <new>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/references/XrefDatabaseLookup.h>
#include <lodeqdb/service/FileClassification.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/image/PwDbRasterImageDef.h>
#include <lodeqdb/toolkit/pal/PwHeap.h>
#include <lodeqdb/toolkit/underlay/PwDbUnderlayDefinition.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>

namespace LodeQDBService::Request {

bool FoundAtPathHelper::GetFullPath(const PwDbObjectId& /*id*/, wstring& /*path*/) {
    return false;
}

namespace {

// A drawing read for one query, on the toolkit's heap, gone when the query ends.
struct HeapDatabaseDeleter {
    void operator()(PwDbDatabase* database) const {
        database->~PwDbDatabase();
        pwHeapFree(nullptr, database);
    }
};
using QueryDatabase = std::unique_ptr<PwDbDatabase, HeapDatabaseDeleter>;

QueryDatabase ReadForQuery(const wstring& path) {
    void* block = pwHeapAlloc(nullptr, sizeof(PwDbDatabase));
    if (block == nullptr) throw std::bad_alloc();
    QueryDatabase database(new (block) PwDbDatabase(false, true));
    LodeQDBUtil::ReadFileToDatabase(path, *database, true, true);
    return database;
}

class ChildCollector {
  public:
    ChildCollector(PwDbDatabase* database, wstring path, FoundAtPathHelper* helper)
        : database_(database), path_(std::move(path)), helper_(helper) {}

    std::vector<FileData> Collect() {
        if (database_ != nullptr) {
            AddReferences();
            AddImages();
            AddUnderlays();
        }
        return std::move(children_);
    }

  private:
    // Only the drawing's own node and its outgoing nodes are read: the graph of its first
    // level has exactly those, made without the tree below, so that a walk that asks each
    // drawing of a deep tree costs what the tree holds, not its square.
    void AddReferences() {
        PwDbXrefGraph graph(nullptr);
        pwdbGetDirectXrefGraph(database_, graph);
        graph.markUnresolvedTrees();
        const PwDbXrefGraphNode* node = graph.xrefNode(database_);
        if (graph.numNodes() < 2 || node == nullptr || node->numOut() == 0) return;
        for (int i = 0; i < node->numOut(); ++i) {
            const PwDbXrefGraphNode* reference = node->out(i);
            if (reference != nullptr) AddChild(reference->btrId());
        }
    }

    void AddImages() {
        const PwDbObjectId dictionaryId = PwDbRasterImageDef::imageDictionary(database_);
        if (dictionaryId.isNull()) return;
        PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
        if (dictionary.openStatus() != Plotwright::StatusOk) return;
        const std::unique_ptr<PwDbDictionaryIterator> iterator(dictionary->newIterator());
        for (; !iterator->atEnd(); iterator->advance()) {
            PwDbObjectPointer<PwDbObject> entry(iterator->entryId(), PwDb::OpenForRead, false);
            if (entry.openStatus() != Plotwright::StatusOk || entry.object() == nullptr) continue;
            const auto* image = PwDbRasterImageDef::cast(entry.object());
            // Asked with the entry still open: the record is made while it is.
            if (image != nullptr && !image->skipAsChild()) AddChild(entry->objectId());
        }
    }

    void AddUnderlays() {
        PwDbObjectPointer<PwDbDictionary> root(database_->namedObjectsDictionaryId(),
                                               PwDb::OpenForRead);
        if (root.openStatus() != Plotwright::StatusOk) return;
        for (PwRxClass* kind :
             {PwDbPlfDefinition::desc(), PwDbDgnDefinition::desc(), PwDbPdfDefinition::desc()}) {
            PwDbObjectId dictionaryId;
            if (root->getAt(PwDbUnderlayDefinition::dictionaryKey(kind).kwszPtr(), dictionaryId) !=
                Plotwright::StatusOk)
                continue;
            PwDbObjectPointer<PwDbDictionary> dictionary(dictionaryId, PwDb::OpenForRead);
            if (dictionary.openStatus() != Plotwright::StatusOk) continue;
            const std::unique_ptr<PwDbDictionaryIterator> iterator(dictionary->newIterator());
            for (; !iterator->atEnd(); iterator->advance()) {
                // Any class: an entry of another kind still makes a record, without name or type.
                PwDbObjectPointer<PwDbObject> entry(iterator->entryId(), PwDb::OpenForRead, false);
                if (entry.openStatus() == Plotwright::StatusOk && entry.object() != nullptr)
                    AddChild(entry->objectId());
            }
        }
    }

    void AddChild(const PwDbObjectId& id) {
        FileData record(id);
        FillRecord(record);
        children_.push_back(std::move(record));
    }

    void FillRecord(FileData& record) {
        wstring name;
        lode::FileType type = lode::Unknown;
        PwDb::XrefStatus status = PwDb::XrefNotAnXref;
        FilenameAndType(*database_, path_, record.PwdbObjectId(), name, type, status);
        record.SetType(type);
        record.SetXrefStatus(status);
        if (helper_ != nullptr) {
            wstring better;
            if (helper_->GetFullPath(record.PwdbObjectId(), better) && !better.empty())
                name = better;
        }
        if (!LodeQDBUtil::IsPathAbsolute(name))
            name = LodeUtil::CombineRelative(LodeUtil::Path::GetDirectoryName(path_), name);
        record.SetFullname(name);
    }

    std::vector<FileData> children_;
    PwDbDatabase* database_;
    wstring path_;
    FoundAtPathHelper* helper_;
};

}  // namespace

std::vector<FileData> PlotwrightChildren(PwDbDatabase& drawing, const wstring& path,
                                         FoundAtPathHelper* helper) {
    // A drawing the host has loaded already is never read again.
    PwDbDatabase* loaded =
        LodeQDBUtil::FindXrefDatabase(&drawing, LodeUtil::AbsoluteFilePath(path));
    QueryDatabase owned;
    if (loaded == nullptr) {
        owned = ReadForQuery(path);
        loaded = owned.get();
    }
    return ChildCollector(loaded, path, helper).Collect();
}

std::vector<FileData> PlotwrightChildren(PwDbDatabase& drawing, const PwDbObjectId& referenceId,
                                         FoundAtPathHelper* helper) {
    PwDbDatabase* loaded = LodeQDBUtil::FindXrefDatabase(&drawing, referenceId);
    // Callers pass resolved references only; anything else has no drawing to ask.
    if (loaded == nullptr) return {};
    return ChildCollector(loaded, LodeQDBUtil::GetDatabasePath(*loaded), helper).Collect();
}

std::vector<FileData> PlotwrightChildren(PwDbDatabase& drawing, FoundAtPathHelper* helper) {
    return ChildCollector(&drawing, LodeQDBUtil::GetDatabasePath(drawing), helper).Collect();
}

std::vector<FileData> PlotwrightChildren(const wstring& path, FoundAtPathHelper* helper) {
    QueryDatabase owned = ReadForQuery(path);
    return ChildCollector(owned.get(), path, helper).Collect();
}

}  // namespace LodeQDBService::Request
