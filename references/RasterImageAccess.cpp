// Raster image definitions and placements in wide strings, and the image dictionary.
#include <lodeqdb/references/RasterImageAccess.h>

#include <memory>
#include <set>

#include <lodeqdb/lodeutil/BStr.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/xref/PwDbXrefGraph.h>

namespace LodeQDBUtil {

namespace {

// The first definition of `database`'s image dictionary named `path`; null when none.
PwDbObjectId FindImageDefinition(const wstring& path, PwDbDatabase* database) {
    const PwDbObjectId dictionaryId = PwDbRasterImageDef::imageDictionary(database);
    if (dictionaryId.isNull()) return PwDbObjectId();
    PwDbDictionary* dictionary = nullptr;
    pwdbOpenObject(dictionary, dictionaryId, &PwDbDictionary::desc, PwDb::OpenForRead);
    if (dictionary == nullptr) return PwDbObjectId();
    const std::unique_ptr<PwDbDictionaryIterator> iterator(dictionary->newIterator());
    PwDbObjectId found;
    for (; !iterator->atEnd() && found.isNull(); iterator->advance()) {
        PwDbObject* object = nullptr;
        if (pwdbOpenObject(object, iterator->entryId(), PwDb::OpenForRead, false, nullptr) !=
            Plotwright::StatusOk)
            continue;
        if (PwRxClass::isDerivedFrom(object->runtimeClass(), PwDbRasterImageDef::desc())) {
            auto* image = static_cast<PwDbRasterImageDef*>(object);
            wstring name = image->activeFileName();
            if (name.empty()) name = image->sourceFileName();
            if (name == path) found = image->objectId();
        }
        pwdbReleaseObject(object);
    }
    dictionary->close();
    return found;
}

}  // namespace

namespace RasterImageDef {

wstring ActiveFileName(const ObjectPointer<PwDbRasterImageDef>& image) {
    return LodeUtil::MakeWideString(image.object()->activeFileName());
}

wstring ActiveFileName(const PwDbRasterImageDef* image) {
    return image != nullptr ? LodeUtil::MakeWideString(image->activeFileName()) : wstring();
}

wstring SourceFileName(const ObjectPointer<PwDbRasterImageDef>& image) {
    return LodeUtil::MakeWideString(image.object()->sourceFileName());
}

wstring FileName(PwDbRasterImageDef* image) {
    wstring name = ActiveFileName(image);
    if (name.empty()) name = LodeUtil::MakeWideString(image->sourceFileName());
    return name;
}

Plotwright::ErrorStatus SetActiveFileName(ObjectPointer<PwDbRasterImageDef>& image,
                                          const wstring& path) {
    return SetActiveFileName(*image.object(), path);
}

Plotwright::ErrorStatus SetActiveFileName(PwDbRasterImageDef& image, const wstring& path) {
    const LodeUtil::BStr text = LodeUtil::ToBstr(path);
    return image.setActiveFileName(text);
}

Plotwright::ErrorStatus SetSourceFileName(ObjectPointer<PwDbRasterImageDef>& image,
                                          const wstring& path) {
    const LodeUtil::BStr text = LodeUtil::ToBstr(path);
    return image.object()->setSourceFileName(text);
}

std::vector<PwDbObjectId> ObjectId(const wstring& path, PwDbDatabase* database) {
    PwDbXrefGraph graph(nullptr);
    pwdbGetHostPlwXrefGraph(database, graph, false);
    std::vector<PwDbObjectId> ids;
    // A drawing attached by several blocks is several nodes of the graph, and asked once.
    std::set<const PwDbDatabase*> asked;
    for (int i = 0; i < graph.numNodes(); ++i) {
        PwDbDatabase* nodeDatabase = graph.xrefNode(i)->database();
        if (nodeDatabase == nullptr || !asked.insert(nodeDatabase).second) continue;
        const PwDbObjectId id = FindImageDefinition(path, nodeDatabase);
        if (!id.isNull()) ids.push_back(id);
    }
    return ids;
}

}  // namespace RasterImageDef

namespace RasterImage {

bool IsLoaded(const PwDbObjectId& id) {
    if (id.isNull()) return false;
    ObjectPointer<PwDbRasterImageDef> image(id, PwDb::OpenForRead, false);
    return image.isUsable() && image->isLoaded();
}

Plotwright::ErrorStatus Reload(const PwDbObjectId& id) {
    ObjectPointer<PwDbRasterImageDef> image(id, PwDb::OpenForWrite, false);
    if (!image.isUsable()) return image.status();
    return Reload(image.object());
}

Plotwright::ErrorStatus Reload(PwDbRasterImageDef* image) {
    if (image->isLoaded()) image->unload(true);
    return image->load();
}

}  // namespace RasterImage

namespace ImageDictionary {

PwDbDictionary* Get(const PwDbDatabase& database) {
    const PwDbObjectId id = PwDbRasterImageDef::imageDictionary(&database);
    if (id.isNull()) return nullptr;
    PwDbDictionary* dictionary = nullptr;
    pwdbOpenObject(dictionary, id, &PwDbDictionary::desc, PwDb::OpenForRead);
    return dictionary;
}

}  // namespace ImageDictionary

}  // namespace LodeQDBUtil
