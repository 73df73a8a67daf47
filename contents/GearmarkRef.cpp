// Model document references of a drawing, read through the toolkit's model document objects.
#include <lodeqdb/contents/GearmarkRef.h>

#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/toolkit/core/PwString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjUtil.h>

namespace LodeQDBUtil::GearmarkRef {

bool PlwHasGearmarkModelDocViews(const wstring& path) {
    PwDbDatabase database(false, true);
    return PlwHasGearmarkModelDocViews(path, database);
}

bool PlwHasGearmarkModelDocViews(const wstring& path, PwDbDatabase& database) {
    ThrowLodeExceptionOnFile(ReadPLWOrPLXToDb(path, database, true), path);
    return PwModelDocObjUtil::hasGearmarkModelDocViews(&database);
}

bool PlwHasGearmarkModelDocViews(PwDbDatabase* database) {
    return PwModelDocObjUtil::hasGearmarkModelDocViews(database);
}

wstring GetTandemGearmarkRefIdPattern() {
    return u"TDM_GMK:GMD:(?<GearmarkRefId>[\\w\\W]+)";
}

Plotwright::ErrorStatus SetRedirectionsInfo(PwDbDatabase& database, const wstring& info) {
    const PwString text(info);
    return PwModelDocObjUtil::setRedirectionsInfo(&database, text);
}

Plotwright::ErrorStatus UnpackGearmarkDrawingFile(PwDbDatabase* database, wstring& result) {
    PwString unpacked;
    const Plotwright::ErrorStatus status =
        PwModelDocObjUtil::unpackGearmarkDrawingFile(database, unpacked);
    if (status == Plotwright::StatusOk) result = unpacked.toWString();
    return status;
}

}  // namespace LodeQDBUtil::GearmarkRef
