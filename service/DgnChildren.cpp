// The files a DGN design file attaches, from its reference table.
#include <lodeqdb/service/DgnChildren.h>

#include <lodeqdb/lodeutil/Path.h>
#include "platform/FaultGuard.h"
#include <lodeqdb/platform/ThrowLodeExceptionOnFile.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/service/FileClassification.h>
#include <lodeqdb/toolkit/dgn/PwDbDgnReferences.h>

namespace LodeQDBService::Request {

namespace {

// The status of a call that didn't come back.
constexpr Plotwright::ErrorStatus kCallNotReturned = Plotwright::StatusCallNotReturned;

// Owns the records of the array until they are turned into file records.
struct OwnedRecords {
    PwArray<PwDbDgnRefFileData*> records{0, 8};
    ~OwnedRecords() {
        for (size_t i = 0; i < records.length(); ++i) delete records[i];
    }
};

wstring NameOf(const PwDbDgnRefFileData& record, const wstring& dgnPath) {
    wstring name = record.resolvedPath.kwszPtr();
    if (!name.empty()) return name;
    name = record.storedPath.kwszPtr();
    if (!name.empty() && wstring(u"file:/").find(name[0]) != wstring::npos)
        name.erase(0, std::min<size_t>(7, name.size()));
    if (!LodeQDBUtil::IsPathAbsolute(name))
        name = LodeUtil::CombineRelative(LodeUtil::Path::GetDirectoryName(dgnPath), name);
    return name;
}

}  // namespace

std::vector<FileData> DGNChildren(const wstring& path) {
    OwnedRecords owned;
    Plotwright::ErrorStatus status = kCallNotReturned;
    LodeQDBUtil::RunGuarded(
        [&] { status = pwdbGetDgnFileReferences(path.c_str(), nullptr, owned.records); });
    LodeQDBUtil::ThrowLodeExceptionOnFile(status, path);
    std::vector<FileData> children;
    for (size_t i = 0; i < owned.records.length(); ++i) {
        const PwDbDgnRefFileData& record = *owned.records[i];
        FileData child;
        child.SetFullname(NameOf(record, path));
        child.SetType(GetFileType(child.GetFullname()));
        child.SetRefId(record.refId);
        children.push_back(std::move(child));
    }
    return children;
}

}  // namespace LodeQDBService::Request
