// Questions and changes about the model documents of a drawing.
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjUtil.h>

#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <system_error>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/toolkit/db/PwDbAuthoring.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDictionary.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>
#include <lodeqdb/toolkit/modeldoc/PwModelDocObjects.h>
#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include "toolkit/pal/PwFileSystemCalls.h"

namespace PwModelDocObjUtil {

namespace {

namespace FileIO = Morvane::Plotwright::PAL::FileIO;

// The id filed under `key` in the root dictionary.
Plotwright::ErrorStatus RootEntry(PwDbDatabase& database, const char16_t* key, PwDbObjectId& id) {
    PwDbObjectPointer<PwDbDictionary> root(database.namedObjectsDictionaryId(), PwDb::OpenForRead);
    if (root.openStatus() != Plotwright::StatusOk) return root.openStatus();
    return root->getAt(key, id);
}

// Writes `bytes` to the new file `path`; a file that is there already is left alone. The
// file is removed again when the write fails part way.
Plotwright::ErrorStatus WriteNewFile(const wstring& path, const std::string& bytes) {
    FileIO::File file =
        FileIO::File::openFile(path.c_str(), FileIO::kWideChars, FileIO::kOpenForWrite,
                               FileIO::kShareExclusive, FileIO::kCreateNew);
    if (file.openStatus() != Plotwright::StatusOk) return file.openStatus();
    bool written = true;
    constexpr size_t kChunk = size_t{1} << 20;
    for (size_t start = 0; written && start < bytes.size(); start += kChunk) {
        const size_t count = std::min(kChunk, bytes.size() - start);
        written = file.writeToFile(bytes.data() + start, static_cast<uint32_t>(count));
    }
    if (written && file.flush()) return Plotwright::StatusOk;
    file = FileIO::File();
    if (const std::optional<std::string> native = LodeUtil::NativePath(path))
        pwFileSystemCalls().unlink(native->c_str());
    return Plotwright::StatusFileIOError;
}

}  // namespace

bool hasGearmarkModelDocViews(PwDbDatabase* database) {
    if (database == nullptr) return false;
    PwDbObjectId viewsId;
    if (RootEntry(*database, PwModelDocKeys::kViews, viewsId) != Plotwright::StatusOk) return false;
    PwDbObjectPointer<PwDbDictionary> views(viewsId, PwDb::OpenForRead);
    if (views.openStatus() != Plotwright::StatusOk) return false;
    std::unique_ptr<PwDbDictionaryIterator> entry(views->newIterator());
    for (; !entry->atEnd(); entry->advance()) {
        PwDbObjectPointer<PwDbModelDocView> view(entry->entryId(), PwDb::OpenForRead);
        if (view.openStatus() == Plotwright::StatusOk && view->isFromGearmark()) return true;
    }
    return false;
}

Plotwright::ErrorStatus setRedirectionsInfo(PwDbDatabase* database, const PwString& info) {
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    PwDbObjectId id;
    const Plotwright::ErrorStatus found = RootEntry(*database, PwModelDocKeys::kRedirections, id);
    if (found == Plotwright::StatusOk) {
        PwDbObjectPointer<PwDbModelDocRedirections> stored(id, PwDb::OpenForWrite);
        if (stored.openStatus() != Plotwright::StatusOk) return stored.openStatus();
        return stored->setInfo(info.kwszPtr());
    }
    if (found != Plotwright::StatusKeyNotFound) return found;
    auto* redirections = new PwDbModelDocRedirections;
    if (auto status = redirections->setInfo(info.kwszPtr())) {
        delete redirections;
        return status;
    }
    return PwDbAuthoring::addDictionaryEntry(*database, database->namedObjectsDictionaryId(),
                                             PwModelDocKeys::kRedirections, redirections);
}

Plotwright::ErrorStatus getRedirectionsInfo(PwDbDatabase* database, PwString& info) {
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    PwDbObjectId id;
    if (auto status = RootEntry(*database, PwModelDocKeys::kRedirections, id)) return status;
    PwDbObjectPointer<PwDbModelDocRedirections> stored(id, PwDb::OpenForRead);
    if (stored.openStatus() != Plotwright::StatusOk) return stored.openStatus();
    return info.assign(stored->info().c_str(), stored->info().size());
}

Plotwright::ErrorStatus unpackGearmarkDrawingFile(PwDbDatabase* database, const PwString& folder,
                                                  PwString& path) {
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    PwDbObjectId id;
    if (auto status = RootEntry(*database, PwModelDocKeys::kPackage, id)) return status;
    PwDbObjectPointer<PwDbModelDocPackage> package(id, PwDb::OpenForRead);
    if (package.openStatus() != Plotwright::StatusOk) return package.openStatus();
    // The stored name is a plain file name (the package refuses any other), so the file
    // lands inside `folder`.
    const wstring target = folder.toWString() + u"/" + package->fileName();
    if (auto status = WriteNewFile(target, package->bytes())) return status;
    return path.assign(target.c_str(), target.size());
}

Plotwright::ErrorStatus unpackGearmarkDrawingFile(PwDbDatabase* database, PwString& path) {
    if (database == nullptr) return Plotwright::StatusNullDatabase;
    // Asked before a folder is made, so that a drawing without a file leaves nothing behind.
    PwDbObjectId id;
    if (auto status = RootEntry(*database, PwModelDocKeys::kPackage, id)) return status;
    std::error_code error;
    const std::filesystem::path temporary = std::filesystem::temp_directory_path(error);
    if (error) return Plotwright::StatusFileIOError;
    std::string pattern = (temporary / "pwmodeldoc-XXXXXX").string();
    if (mkdtemp(pattern.data()) == nullptr) return Plotwright::StatusFileIOError;
    const Plotwright::ErrorStatus status =
        unpackGearmarkDrawingFile(database, PwString(LodeUtil::Utf16FromNative(pattern)), path);
    if (status != Plotwright::StatusOk) rmdir(pattern.c_str());
    return status;
}

}  // namespace PwModelDocObjUtil
