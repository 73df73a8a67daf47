// The layouts and named plot settings of a drawing as plain records.
#include <lodeqdb/contents/Layouts.h>

#include <algorithm>
#include <memory>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/ObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbLayout.h>
#include <lodeqdb/toolkit/db/PwDbSymbolUtilities.h>

namespace LodeQDBUtil::Layout {

namespace {

// True when an entry of kind `kind` is to be left out for the selector `wanted`.
bool Unwanted(lode::PlwLayoutsCollection kind, lode::PlwLayoutsCollection wanted) {
    return (kind == lode::ModelLayouts && wanted == lode::PaperLayouts) ||
           (kind == lode::PaperLayouts && wanted == lode::ModelLayouts);
}

// Opens the entry `id` for read as a T. An entry that can't be opened, or that is of
// another class, gives an empty pointer and is released at once: the lists leave it out.
template <class T>
std::unique_ptr<ObjectPointer<T>> OpenEntry(PwDbObjectId id) {
    PwDbObject* object = nullptr;
    if (pwdbOpenObject(object, id, PwDb::OpenForRead, false, nullptr) != Plotwright::StatusOk ||
        object == nullptr)
        return nullptr;
    if (!PwRxClass::isDerivedFrom(object->runtimeClass(), T::desc())) {
        pwdbReleaseObject(object);
        return nullptr;
    }
    return std::make_unique<ObjectPointer<T>>(static_cast<T*>(object));
}

lode::PlwLayoutInfo InfoOf(const PwDbLayout& layout, PwDbObjectId modelSpace) {
    lode::PlwLayoutInfo info;
    info.objectId = layout.objectId();
    const char16_t* name = nullptr;
    // The toolkit never gives null here; the test keeps a damaged layout from crashing us.
    layout.getLayoutName(name);
    if (name != nullptr) info.name = LodeUtil::MakeWideString(name);
    double width = 0.0;
    double height = 0.0;
    layout.getPlotPaperSize(width, height);
    info.hasPaperSize = width > 0.0 && height > 0.0;
    info.collection =
        layout.getBlockTableRecordId() != modelSpace ? lode::PaperLayouts : lode::ModelLayouts;
    info.tabOrder = layout.getTabOrder();
    return info;
}

}  // namespace

void SortByTabOrder(std::vector<lode::PlwLayoutInfo>& layouts) {
    std::sort(layouts.begin(), layouts.end(),
              [](const lode::PlwLayoutInfo& left, const lode::PlwLayoutInfo& right) {
                  return left.tabOrder < right.tabOrder;
              });
}

std::vector<lode::PlwLayoutInfo> GetPlwLayoutInfoList(PwDbDatabase& database, bool sortByTabOrder,
                                                      bool onlyWithPaper,
                                                      lode::PlwLayoutsCollection collection) {
    PwDbDictionary* opened = nullptr;
    database.getLayoutDictionary(opened, PwDb::OpenForRead);
    ObjectPointer<PwDbDictionary> dictionary(opened);
    std::vector<lode::PlwLayoutInfo> layouts;
    // A dictionary that can't be opened has no entries to list.
    if (!dictionary.isUsable()) return layouts;

    PwDbObjectId modelSpace;
    PwDbSymbolUtilities::servicesPtr106()->modelSpaceBlockId(modelSpace, &database);

    std::unique_ptr<PwDbDictionaryIterator> entry(dictionary->newIterator());
    for (; !entry->atEnd(); entry->advance()) {
        const auto layout = OpenEntry<PwDbLayout>(entry->entryId());
        if (layout == nullptr) continue;
        const lode::PlwLayoutInfo info = InfoOf(*layout->object(), modelSpace);
        if (onlyWithPaper && !info.hasPaperSize) continue;
        if (Unwanted(info.collection, collection)) continue;
        layouts.push_back(info);
    }
    if (sortByTabOrder) SortByTabOrder(layouts);
    return layouts;
}

std::vector<lode::PlwPlotSettingInfo> GetPlotSettingsInfoList(
    PwDbDatabase& database, lode::PlwLayoutsCollection collection) {
    std::vector<lode::PlwPlotSettingInfo> settings;
    PwDbDictionary* root = nullptr;
    if (database.getNamedObjectsDictionary(root, PwDb::OpenForRead) != Plotwright::StatusOk)
        return settings;
    ObjectPointer<PwDbDictionary> rootPointer(root);
    PwDbObjectId settingsId;
    if (rootPointer->getAt(u"PLOTWRIGHT_PLOTSETTINGS", settingsId) != Plotwright::StatusOk)
        return settings;
    // An entry of another class under the key is as good as no dictionary.
    const auto dictionary = OpenEntry<PwDbDictionary>(settingsId);
    if (dictionary == nullptr) return settings;

    std::unique_ptr<PwDbDictionaryIterator> entry(dictionary->object()->newIterator());
    for (; !entry->atEnd(); entry->advance()) {
        const auto setting = OpenEntry<PwDbPlotSettings>(entry->entryId());
        if (setting == nullptr) continue;
        const PwDbPlotSettings& object = *setting->object();
        lode::PlwPlotSettingInfo info;
        info.objectId = object.objectId();
        const char16_t* name = nullptr;
        object.getPlotSettingsName(name);
        if (name != nullptr) info.name = LodeUtil::MakeWideString(name);
        info.collection = object.modelType() ? lode::ModelLayouts : lode::PaperLayouts;
        if (Unwanted(info.collection, collection)) continue;
        settings.push_back(info);
    }
    return settings;
}

}  // namespace LodeQDBUtil::Layout
