// Packing a root and its dependencies: the walk, the layout, each file staged (drawings with
// rewritten paths saved anew), the manifest, then the archive put in place at once.
#include <lodeqdb/relocate/Pack.h>

#include <nlohmann/json.hpp>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/readsave/Saving.h>
#include <lodeqdb/relocate/PathRewriting.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include "relocate/ArchiveLayout.h"
#include "relocate/DependencyWalk.h"
#include "relocate/StagingFolder.h"
#include "relocate/ZipWriter.h"

namespace LodeQDBRelocate {
namespace {

using detail::DependencyEdge;
using detail::DependencyNode;
using detail::NodeKind;

std::string Utf8(const wstring& text) {
    return LodeUtil::Utf8FromUtf16(text);
}

std::string NativeOf(const wstring& path) {
    std::optional<std::string> native = LodeUtil::NativePath(path);
    if (!native) throw PackError("not a name of a file on this system: " + Utf8(path));
    return *native;
}

const char* KindName(NodeKind kind) {
    switch (kind) {
        case NodeKind::Drawing:
            return "drawing";
        case NodeKind::DesignFile:
            return "design-file";
        case NodeKind::File:
            break;
    }
    return "file";
}

class Packer {
  public:
    Packer(std::vector<DependencyNode> nodes, const detail::ArchiveLayout& layout)
        : nodes_(std::move(nodes)), layout_(layout) {}

    // The path edge `edge` of node `node` gets in the archive. A path that found nothing
    // points where its file would lie in the archive when that is below the base; otherwise
    // it stays as stored.
    wstring ArchivedPath(size_t node, const DependencyEdge& edge) const {
        wstring place;
        if (edge.target >= 0) place = layout_.paths[static_cast<size_t>(edge.target)];
        else place = detail::PlaceBelowBase(layout_, edge.lookedFor);
        if (place.empty()) return edge.stored.path;
        const wstring from = LodeUtil::Path::GetDirectoryName(u"/" + layout_.paths[node]);
        const wstring to = u"/" + place;
        return RelativePathBetween(from, to, SeparatorStyleOf(edge.stored.path))
            .value_or(edge.stored.path);
    }

    bool NeedsRewrite(size_t node) const {
        if (nodes_[node].kind != NodeKind::Drawing) return false;
        for (const DependencyEdge& edge : nodes_[node].edges)
            if (ArchivedPath(node, edge) != edge.stored.path) return true;
        return false;
    }

    // Reads the drawing again, rewrites its paths and saves it as `staged`, in its own
    // generation (the file name is the original's, so the kind of file is kept).
    void Rewrite(size_t node, const std::string& staged) const {
        const DependencyNode& drawingNode = nodes_[node];
        PwDbDatabase drawing(false, true);
        try {
            LodeQDBUtil::ReadFileToDatabase(drawingNode.path, drawing, true, false);
        } catch (const lode::LodeException& error) {
            throw PackError("can't read " + Utf8(drawingNode.path) + " again (" +
                            lode::ExceptionClassName(error) + "): was it changed while packing?");
        }
        const std::vector<StoredPath> stored = ListStoredPaths(drawing);
        for (const DependencyEdge& edge : drawingNode.edges) {
            if (edge.position >= stored.size() || stored[edge.position].path != edge.stored.path ||
                stored[edge.position].kind != edge.stored.kind)
                throw PackError(Utf8(drawingNode.path) + " was changed while it was packed");
            const wstring path = ArchivedPath(node, edge);
            if (path == edge.stored.path) continue;
            if (const auto status = SetStoredPath(stored[edge.position], path))
                throw PackError("can't change a path in " + Utf8(drawingNode.path) +
                                ": status " + std::to_string(status));
        }
        const wstring target = LodeUtil::Utf16FromNative(staged);
        if (const auto status = LodeQDBUtil::DbSaveAsOriginalVersion(drawing, target))
            throw PackError("can't save " + Utf8(drawingNode.path) + " for the archive: status " +
                            std::to_string(status));
    }

    PackReport Run(const wstring& output, const std::string& nativeOutput) {
        PackReport report;
        report.output = output;
        report.baseFolder = layout_.base;
        report.root = detail::EntryName(layout_.paths[0]);
        detail::StagingFolder staging(nativeOutput);
        detail::ZipWriter zip(nativeOutput);
        for (size_t i = 0; i < nodes_.size(); ++i) {
            const DependencyNode& node = nodes_[i];
            PackedFile file;
            file.original = node.path;
            file.archivePath = detail::EntryName(layout_.paths[i]);
            file.kind = KindName(node.kind);
            file.note = node.note;
            const std::string staged = staging.SubfolderFor(i) + "/" +
                                       NativeOf(LodeUtil::Path::GetFileName(node.path));
            detail::Fingerprint print;
            if (NeedsRewrite(i)) {
                Rewrite(i, staged);
                print = detail::HashFile(staged);
                file.rewritten = true;
            } else {
                print = detail::CopyHashing(NativeOf(node.path), staged);
            }
            file.size = print.size;
            file.sha256 = print.sha256;
            zip.AddFile(file.archivePath, staged);
            for (const DependencyEdge& edge : node.edges) {
                if (edge.target >= 0) continue;
                report.missing.push_back(
                    {file.archivePath, edge.stored.kind, edge.stored.name, edge.stored.path});
            }
            report.files.push_back(std::move(file));
        }
        zip.AddBytes("manifest.json", Manifest(report));
        zip.Commit();
        return report;
    }

    static std::string Manifest(const PackReport& report) {
        nlohmann::json files = nlohmann::json::array();
        for (const PackedFile& file : report.files) {
            nlohmann::json entry = {{"path", file.archivePath},  {"original", Utf8(file.original)},
                                    {"kind", file.kind},         {"size", file.size},
                                    {"sha256", file.sha256},     {"rewritten", file.rewritten}};
            if (!file.note.empty()) entry["note"] = file.note;
            files.push_back(std::move(entry));
        }
        nlohmann::json missing = nlohmann::json::array();
        for (const MissingFile& gone : report.missing)
            missing.push_back({{"referrer", gone.referrer},
                               {"kind", StoredPathKindName(gone.kind)},
                               {"name", Utf8(gone.name)},
                               {"storedPath", Utf8(gone.storedPath)}});
        const nlohmann::json manifest = {{"root", report.root},
                                         {"baseFolder", Utf8(report.baseFolder)},
                                         {"files", files},
                                         {"missing", missing}};
        return manifest.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) + "\n";
    }

  private:
    std::vector<DependencyNode> nodes_;
    const detail::ArchiveLayout& layout_;
};

}  // namespace

PackReport Pack(const wstring& root, const wstring& output) {
    const wstring outputFull = LodeUtil::AbsoluteFilePath(output).FullPath();
    const std::string nativeOutput = NativeOf(outputFull);
    std::vector<DependencyNode> nodes = detail::WalkDependencies(root);
    try {
        std::vector<wstring> paths;
        for (const DependencyNode& node : nodes) paths.push_back(node.path);
        const detail::ArchiveLayout layout = detail::LayOutArchive(paths);
        return Packer(std::move(nodes), layout).Run(outputFull, nativeOutput);
    } catch (const PackError&) {
        throw;
    } catch (const std::runtime_error& error) {
        throw PackError(error.what());
    }
}

}  // namespace LodeQDBRelocate
