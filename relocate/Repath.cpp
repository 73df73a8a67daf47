// Repathing drawings: the changes worked out per stored path, then one atomic save.
#include <lodeqdb/relocate/Repath.h>

#include <stdexcept>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/relocate/PathRewriting.h>
#include <lodeqdb/service/FileClassification.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>

namespace LodeQDBRelocate {
namespace {

void CheckOptions(const RepathOptions& options) {
    if (options.from.empty() != options.to.empty())
        throw std::invalid_argument("the folder to replace and its replacement go together");
    if (options.from.empty() && !options.relative)
        throw std::invalid_argument("nothing to do: give a folder and its replacement, or ask "
                                    "for relative paths");
}

// The path `stored` becomes, given that `find` tells where a path finds its file (empty when
// it finds none) and `folder` is the absolute folder of the file that stores it.
template <class Find>
PathChange Rewrite(const StoredPath& stored, const RepathOptions& options, const wstring& folder,
                   Find find) {
    PathChange change;
    change.kind = stored.kind;
    change.name = stored.name;
    change.oldPath = stored.path;
    change.newPath = stored.path;
    if (!options.from.empty()) {
        if (auto replaced = ReplacePathPrefix(stored.path, options.from, options.to))
            change.newPath = *replaced;
    }
    change.resolvedPath = find(change.newPath);
    change.resolves = !change.resolvedPath.empty();
    if (options.relative && change.resolves) {
        if (auto relative = RelativePathBetween(folder, change.resolvedPath,
                                                SeparatorStyleOf(change.newPath)))
            change.newPath = *relative;
    }
    return change;
}

// As the DGN reader looks for an attachment: the stored path against the design file's
// folder (or as it stands when rooted), then its bare name there.
wstring FindBesideDesignFile(const wstring& stored, const wstring& folder) {
    if (stored.empty()) return {};
    wstring candidate = LodeUtil::Path::IsPathRooted(stored)
                            ? stored
                            : LodeUtil::CombineRelative(folder, stored);
    if (LodeUtil::File::Exists(candidate)) return LodeUtil::AbsoluteFilePath(candidate).FullPath();
    candidate = LodeUtil::CombineRelative(folder, LodeUtil::Path::GetFileName(stored));
    if (LodeUtil::File::Exists(candidate)) return LodeUtil::AbsoluteFilePath(candidate).FullPath();
    return {};
}

RepathOutcome RepathDesignFile(const wstring& path, const wstring& full,
                               const RepathOptions& options) {
    RepathOutcome outcome;
    outcome.drawing = path;
    const wstring folder = LodeUtil::Path::GetDirectoryName(full);
    for (const DgnAttachment& attachment : ListDgnAttachments(full)) {
        PathChange change = Rewrite(attachment.stored, options, folder, [&](const wstring& p) {
            // The reader's own answer for the path as stored.
            if (p == attachment.stored.path && !attachment.found.empty())
                return LodeUtil::AbsoluteFilePath(attachment.found).FullPath();
            return FindBesideDesignFile(p, folder);
        });
        // Design files are read-only here: the change is listed and never made.
        if (change.newPath != change.oldPath) outcome.changes.push_back(std::move(change));
    }
    return outcome;
}

RepathOutcome RepathNativeOrExchange(const wstring& path, const wstring& full,
                                     const RepathOptions& options) {
    RepathOutcome outcome;
    outcome.drawing = path;
    PwDbDatabase drawing(false, true);
    LodeQDBUtil::ReadFileToDatabase(full, drawing, true, false);
    const wstring folder = LodeUtil::Path::GetDirectoryName(full);
    std::vector<StoredPath> toChange;
    for (const StoredPath& stored : ListStoredPaths(drawing)) {
        PathChange change = Rewrite(stored, options, folder, [&](const wstring& p) {
            wstring found;
            if (pwdbFindDependentFile(found, p, &drawing, FindHintFor(stored.kind)) !=
                Plotwright::StatusOk)
                found.clear();
            return found;
        });
        if (change.newPath == change.oldPath) continue;
        outcome.changes.push_back(std::move(change));
        toChange.push_back(stored);
    }
    if (outcome.changes.empty() || options.dryRun) return outcome;
    for (size_t i = 0; i < toChange.size(); ++i) {
        const Plotwright::ErrorStatus status = SetStoredPath(toChange[i], outcome.changes[i].newPath);
        if (status != Plotwright::StatusOk) {
            // Nothing is saved: the file keeps every old path rather than some.
            outcome.saveStatus = status;
            return outcome;
        }
    }
    outcome.saveStatus = LodeQDBUtil::DbSaveAsOriginalVersion(drawing, full);
    if (outcome.saveStatus == Plotwright::StatusOk) {
        outcome.written = true;
        for (PathChange& change : outcome.changes) change.applied = true;
    }
    return outcome;
}

bool IsDesignFile(const wstring& full) {
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(full);
    if (LodeUtil::FileUtil::IsPLWFile(extension) || LodeUtil::FileUtil::IsPLXFile(extension))
        return false;
    if (LodeUtil::FoldCase(extension) == u".dgn") return true;
    return LodeQDBService::Request::GetFileType(full) == lode::Dgn;
}

}  // namespace

RepathOutcome RepathDrawing(const wstring& path, const RepathOptions& options) {
    CheckOptions(options);
    const wstring full = LodeUtil::AbsoluteFilePath(path).FullPath();
    if (IsDesignFile(full)) return RepathDesignFile(path, full, options);
    return RepathNativeOrExchange(path, full, options);
}

std::vector<RepathOutcome> Repath(const std::vector<wstring>& drawings,
                                  const RepathOptions& options) {
    CheckOptions(options);
    std::vector<RepathOutcome> outcomes;
    for (const wstring& drawing : drawings) {
        try {
            outcomes.push_back(RepathDrawing(drawing, options));
        } catch (const lode::LodeException& error) {
            RepathOutcome failed;
            failed.drawing = drawing;
            failed.failure = lode::ExceptionClassName(error);
            failed.failureCode = error.code();
            failed.failureMessage = error.message();
            outcomes.push_back(std::move(failed));
        } catch (const std::exception& error) {
            RepathOutcome failed;
            failed.drawing = drawing;
            failed.failure = lode::ExceptionClassName(error);
            failed.failureMessage = LodeUtil::Utf16FromUtf8(error.what());
            outcomes.push_back(std::move(failed));
        }
    }
    return outcomes;
}

}  // namespace LodeQDBRelocate
