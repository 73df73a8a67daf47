// Finding dependent files: the stored path, the holder's folder, then the host's hook.
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

using LodeUtil::CombineRelative;
namespace Path = LodeUtil::Path;

namespace {

bool Accept(wstring& found, const wstring& candidate) {
    if (candidate.empty() || !LodeUtil::File::Exists(candidate)) return false;
    found = LodeUtil::AbsoluteFilePath(candidate).FullPath();
    return true;
}

// The stored path as the holder sees it: step 1 of the search.
wstring FirstCandidate(const wstring& stored, const wstring& holderPath) {
    const Path::RootInfo root = Path::ParseRoot(stored);
    if (root.kind == Path::RootKind::None) {
        if (holderPath.empty()) return wstring();
        return CombineRelative(Path::GetDirectoryName(holderPath), stored);
    }
    if (root.kind == Path::RootKind::Separator && !holderPath.empty()) {
        const wstring holderRoot = Path::GetPathRoot(holderPath);
        if (!holderRoot.empty()) return CombineRelative(holderRoot, stored.substr(1));
    }
    return stored;
}

}  // namespace

wstring pwdbDatabasePath(const PwDbDatabase* database) {
    const char16_t* name = nullptr;
    if (database == nullptr || database->getFilename(name) != Plotwright::StatusOk ||
        name == nullptr)
        return wstring();
    return wstring(name);
}

Plotwright::ErrorStatus pwdbFindDependentFile(wstring& found, const wstring& storedPath,
                                              const PwDbDatabase* holder,
                                              PwDbHostApplicationServices::FindFileHint hint) {
    found.clear();
    if (storedPath.empty()) return Plotwright::StatusInvalidInput;
    PwDbHostApplicationServices* services = pwdbHostApplicationServices();
    const bool isUrl = services != nullptr && services->isURL(storedPath.c_str()) == 1;
    if (!isUrl) {
        const wstring holderPath = pwdbDatabasePath(holder);
        if (Accept(found, FirstCandidate(storedPath, holderPath))) return Plotwright::StatusOk;
        const wstring bareName = Path::GetFileName(storedPath);
        if (!holderPath.empty() && !bareName.empty() &&
            Accept(found, CombineRelative(Path::GetDirectoryName(holderPath), bareName)))
            return Plotwright::StatusOk;
    }
    if (services != nullptr) {
        wstring hooked;
        if (services->findFile(hooked, storedPath.c_str(), const_cast<PwDbDatabase*>(holder),
                               hint) == Plotwright::StatusOk &&
            Accept(found, hooked))
            return Plotwright::StatusOk;
    }
    return Plotwright::StatusFileNotFound;
}
