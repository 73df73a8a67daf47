// Telling the kind of application that made a drawing, by header and by content.
#include <lodeqdb/identification/CreatorKind.h>

#include <lodeqdb/identification/AppInfo.h>
#include <lodeqdb/identification/PropertySet.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbHostApplicationServices.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/db/PwDbProxyObject.h>

namespace LodeQDBUtil {

const OwnerGuidRow kOwnerGuidTable[6] = {
    {{0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}},
     lode::PlwTypePlain},
    {{0x80B0F5DE, 0xB452, 0x44BF, {0xA1, 0x55, 0x24, 0x67, 0xB0, 0xE9, 0xD5, 0x31}},
     lode::PlwTypeMarkerBlock},
    {{0xDE84900D, 0x6D4B, 0x7345, {0x89, 0xE6, 0xFB, 0x89, 0xC7, 0xCF, 0x72, 0x3F}},
     lode::PlwTypeGearmark},
    {{0x56A0F03C, 0x50A5, 0x425E, {0xB9, 0x19, 0x1E, 0x5E, 0x40, 0xFA, 0x01, 0x68}},
     lode::PlwTypeScope},
    {{0x301E83C1, 0x5F59, 0x4A64, {0xB0, 0x31, 0x6A, 0xE5, 0x44, 0xA7, 0xD9, 0xBF}},
     lode::PlwTypeScopeMaster},
    {{0xB17CF44B, 0x99FD, 0x4171, {0xA4, 0xAF, 0xD0, 0x99, 0xAD, 0x2E, 0xCE, 0xD9}},
     lode::PlwTypeTreeNode},
};

const Guid kSummaryFormatId = {
    0xF29F85E0, 0x4FF9, 0x1068, {0xAB, 0x91, 0x08, 0x00, 0x2B, 0x27, 0xB3, 0xD9}};

namespace {

AppInfoMap ReadEntries(const wstring& path) {
    AppInfoMap entries;
    if (!ReadAppInfoMap(path.c_str(), entries) || entries.empty()) throw lode::NoAppInfo();
    return entries;
}

lode::PlwFileType TypeOfOwner(const Guid& owner) {
    for (const OwnerGuidRow& row : kOwnerGuidTable)
        if (row.owner == owner) return row.type;
    throw TypeNotFoundException();
}

// One lookup in the root dictionary, which it opens for itself: the status of the open, else
// of the lookup.
Plotwright::ErrorStatus LookUp(PwDbObjectId root, const char16_t* key,
                               PwDbObjectId* found = nullptr) {
    PwDbObjectPointer<PwDbDictionary> dictionary(root, PwDb::OpenForRead);
    if (dictionary.openStatus() != Plotwright::StatusOk) return dictionary.openStatus();
    PwDbObjectId id;
    const Plotwright::ErrorStatus status = dictionary->getAt(key, id);
    if (found != nullptr) *found = id;
    return status;
}

bool IsTreeNodeProxy(PwDbObjectId id) {
    PwDbObject* object = nullptr;
    if (pwdbOpenObject(object, id, PwDb::OpenForRead) != Plotwright::StatusOk || object == nullptr)
        return false;
    bool treeNode = false;
    if (PwRxClass::isDerivedFrom(object->runtimeClass(), PwDbProxyObject::desc())) {
        const auto* proxy = static_cast<PwDbProxyObject*>(object);
        treeNode =
            LodeUtil::Order(LodeUtil::MakeWideString(proxy->proxiedClassName()), u"ZephDbTreeNode",
                            LodeUtil::StringOrder::CodeUnit, LodeUtil::StringCase::Ignore) == 0;
    }
    pwdbReleaseObject(object);
    return treeNode;
}

}  // namespace

lode::PlwFileType GetPlwFileTypeByHeader(const wstring& path) {
    const AppInfoMap entries = ReadEntries(path);
    Guid owner;
    if (!GetOwnerGuid(entries, owner)) throw lode::NoOwnerInfo();
    try {
        return TypeOfOwner(owner);
    } catch (const TypeNotFoundException&) {
        return lode::PlwTypeUnknown;
    }
}

lode::PlwFileType GetPlwFileTypeByDatabase(PwDbDatabase* database) {
    Plotwright::ErrorStatus status = Plotwright::StatusNullDatabase;
    PwDbBlockTable* table = nullptr;
    if (database != nullptr) status = database->getSymbolTable(table, PwDb::OpenForRead);
    ThrowLodeExceptionOnFile(status, wstring());
    table->assertReadEnabled();
    PwDbObjectId marker;
    status = table->getIdAt(u"zk_m", marker, false);
    pwdbReleaseObject(table);
    if (status == Plotwright::StatusOk) return lode::PlwTypeMarkerBlock;

    const PwDbObjectId root = database->namedObjectsDictionaryId();
    if (LookUp(root, u"GMD_DICT_ROOT") == Plotwright::StatusOk) return lode::PlwTypeGearmark;
    const Plotwright::ErrorStatus scope = LookUp(root, u"ZEMA_SCOPE_NAME");
    PwDbObjectPointer<PwDbDictionary> dictionary(root, PwDb::OpenForRead);
    const bool opened = dictionary.openStatus() == Plotwright::StatusOk;
    if (scope == Plotwright::StatusOk) {
        PwDbObjectId master;
        const bool isMaster =
            opened && dictionary->getAt(u"ZASGREF_MASTER", master) == Plotwright::StatusOk;
        return isMaster ? lode::PlwTypeScopeMaster : lode::PlwTypeScope;
    }
    if (!opened) return lode::PlwTypePlain;
    PwDbObjectId rootEntry;
    const Plotwright::ErrorStatus lookup = dictionary->getAt(u"Root", rootEntry);
    dictionary.release();
    if (lookup != Plotwright::StatusOk) return lode::PlwTypePlain;
    return IsTreeNodeProxy(rootEntry) ? lode::PlwTypeTreeNode : lode::PlwTypePlain;
}

lode::PlwFileType GetPlwFileTypeByDatabase(PwDbDatabase& database) {
    return GetPlwFileTypeByDatabase(&database);
}

lode::PlwFileType GetPlwFileType(const wstring& path) {
    try {
        return GetPlwFileTypeByHeader(path);
    } catch (const lode::LodeException&) {
        // Without a readable header the drawing itself must tell.
    }
    PwDbDatabase database(false, true);
    ThrowLodeExceptionOnFile(
        readPlwFile(database, path, PwDbDatabase::OpenModeAlternate, false, wstring()), wstring());
    return GetPlwFileTypeByDatabase(database);
}

wstring GetPlwCreatorName(const wstring& path) {
    const AppInfoMap entries = ReadEntries(path);
    PropertyKey key;
    key.SetNumber(kCreatorNamePropertyId);
    PropertyValue value;
    if (!GetAppInfoProperty(entries, kSummaryFormatId, key, value)) throw lode::NoPlwCreatorName();
    return value.Text();
}

bool IsGearmarkPlwByDatabase(PwDbDatabase& database) {
    return GetPlwFileTypeByDatabase(database) == lode::PlwTypeGearmark;
}

bool IsGearmarkPlwByHeader(const wstring& path) {
    try {
        return GetPlwFileTypeByHeader(path) == lode::PlwTypeGearmark;
    } catch (const lode::LodeException&) {
        return false;
    }
}

bool IsInkstoneHostApp() {
    const PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    return services != nullptr &&
           services->hostKind() == PwDbHostApplicationServices::kInkstoneHostKind;
}

}  // namespace LodeQDBUtil
