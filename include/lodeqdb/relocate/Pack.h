// Packing a drawing with everything it depends on, at any depth, into one zip archive that
// opens on another machine.
//
//   LodeQDBRelocate::PackReport report =
//       LodeQDBRelocate::Pack(u"/srv/proj/site.plw", u"/tmp/site.zip");
//   for (const auto& gone : report.missing) warn(gone.referrer, gone.storedPath);
//
// What goes in: the root (a drawing, an exchange file or a design file), every file its
// references, image definitions that a placed image uses, and PDF, DGN and PLF underlays find,
// and every file a design file attaches, each file once however often it is met (by its
// canonical path, so cycles and shared drawings are packed once). Files keep their layout below
// the base folder: the deepest folder that holds the root and every file that shares more than
// the file system's root with it; any other file goes below `_outside/` with its whole path.
// Every drawing whose stored paths don't already lead to the right place in the archive is
// saved anew, in its own format generation, with those paths rewritten as relative ones (in
// the separator each path used); the originals on disk are never written. Design files go in
// as they are. `manifest.json`, at the top of the archive, lists every file with its original
// path, its path in the archive, its size and SHA-256 (of the bytes in the archive), and every
// stored path that found no file (pointed where its file would lie in the archive when that is
// below the base folder, else left as it was).
//
// Errors: a root that can't be read throws as ReadFileToDatabase (or DGNChildren) does; a
// dependency whose bytes can't be read, an output that can't be written, or a file changed
// while it was packed throws PackError, and no archive is left at `output` (a file there
// before keeps its bytes). A dependency that exists but can't be read as a drawing or design
// file goes in as it is, with a note.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/relocate/StoredPaths.h>

namespace LodeQDBRelocate {

/// A pack that could not be made; what() names the file and the reason.
class PackError : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// One file in the archive.
struct PackedFile {
    /// The absolute, lexically normalised path it was packed from.
    wstring original;
    /// Its name in the archive: '/' between the names, relative to the archive's top.
    std::string archivePath;
    /// "drawing", "design-file" or "file".
    std::string kind;
    uint64_t size = 0;
    /// Lower-case hexadecimal SHA-256 of the bytes in the archive.
    std::string sha256;
    /// True when the archive holds the drawing saved anew with rewritten paths.
    bool rewritten = false;
    /// Why a drawing or design file went in without a look inside; empty otherwise.
    std::string note;
};

/// A stored path that found no file.
struct MissingFile {
    /// The archive path of the file that stores it.
    std::string referrer;
    StoredPathKind kind = StoredPathKind::Reference;
    wstring name;
    wstring storedPath;
};

struct PackReport {
    /// The archive written.
    wstring output;
    /// The root's path in the archive.
    std::string root;
    /// The base folder on disk that the archive's top stands for.
    wstring baseFolder;
    /// Every file, the root first, then in the order met (breadth first).
    std::vector<PackedFile> files;
    std::vector<MissingFile> missing;
};

/// Packs `root` and its dependencies into the zip archive `output` (replaced atomically when
/// it exists); see the top of this header.
PackReport Pack(const wstring& root, const wstring& output);

}  // namespace LodeQDBRelocate
