// Repathing drawings: every stored path of a reference, an image definition and an underlay
// definition that starts with one folder gets another instead, or every path that finds its
// file becomes relative to the drawing's own folder; each changed drawing is saved over its
// file, atomically, in its own format generation.
//
//   LodeQDBRelocate::RepathOptions options;
//   options.from = u"C:\\proj";
//   options.to = u"/srv/proj";
//   for (const auto& outcome : LodeQDBRelocate::Repath({u"/srv/proj/site.plw"}, options))
//       if (!outcome.failure.empty()) warn(outcome.drawing, outcome.failure);
//
// Errors: RepathDrawing throws for a file that can't be read as ReadFileToDatabase does (or
// DGNChildren, for a design file), and std::invalid_argument for options that ask nothing; a
// save that fails is no exception but the outcome's saveStatus, and the drawing's file then
// keeps its old bytes. Repath over a list records each drawing's exception in its outcome and
// goes on. Drawings are handled one after another on the calling thread.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/relocate/StoredPaths.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

namespace LodeQDBRelocate {

/// What to change. `from` and `to` go together; `relative` may stand alone or follow them.
struct RepathOptions {
    /// The folder (or file) that stored paths start with, compared as StartsWithPath does.
    wstring from;
    /// What it becomes.
    wstring to;
    /// Every path that finds its file (after `from` became `to`, if given) is rewritten as the
    /// path from the drawing's folder to that file, in the separator the path used.
    bool relative = false;
    /// Nothing is written; the outcome lists what would change.
    bool dryRun = false;
};

/// One stored path that changes (or would, or can't: a design file's attachment).
struct PathChange {
    StoredPathKind kind = StoredPathKind::Reference;
    wstring name;
    wstring oldPath;
    wstring newPath;
    /// Whether the new path finds a file as the library looks for dependent files
    /// (pwdbFindDependentFile, with the drawing as holder), and which.
    bool resolves = false;
    wstring resolvedPath;
    /// True when the drawing's file now holds the new path.
    bool applied = false;
};

/// What became of one drawing.
struct RepathOutcome {
    /// The drawing as the caller named it.
    wstring drawing;
    std::vector<PathChange> changes;
    /// True when the drawing's file was replaced: it had changes, this was no dry run, it is
    /// no design file, and the save succeeded.
    bool written = false;
    /// The status of the save; StatusOk when nothing was saved.
    Plotwright::ErrorStatus saveStatus = Plotwright::StatusOk;
    /// For Repath over a list: the class of the exception that stopped this drawing (empty
    /// when none), its code (0 for exceptions of other trees) and its message.
    std::string failure;
    int32_t failureCode = 0;
    wstring failureMessage;
};

/// Repaths the drawing (`.plw` or `.plx`) or design file (`.dgn`, or any file the DGN module
/// recognises) at `path`. A design file's matching attachments are listed, never changed.
RepathOutcome RepathDrawing(const wstring& path, const RepathOptions& options);

/// RepathDrawing for each of `drawings` in turn; see the top of this header for failures.
/// Throws std::invalid_argument for options that ask nothing, before any drawing is read.
std::vector<RepathOutcome> Repath(const std::vector<wstring>& drawings,
                                  const RepathOptions& options);

/// The drawings (and design files) an index made by LodeQDBIndex::UpdateIndex holds
/// dependency records for, each once, in the index's order. Throws LodeQDBIndex::IndexError
/// when `indexPath` isn't an index.
std::vector<wstring> DrawingsWithRecords(const std::string& indexPath);

/// Repath over the drawings of an index: the same change, without listing the drawings by
/// hand. Every drawing with records is asked, not only those whose records name
/// `options.from`: a record names the file found, and a stored path under the old folder may
/// have found its file elsewhere (by its bare name beside the drawing). Only drawings whose
/// stored paths change are written. std::invalid_argument without `from`; IndexError as
/// DrawingsWithRecords.
std::vector<RepathOutcome> RepathOverIndex(const std::string& indexPath,
                                           const RepathOptions& options);

}  // namespace LodeQDBRelocate
