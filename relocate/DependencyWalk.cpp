// Walking a root's dependencies breadth first, with a queue on the heap: any depth, and each
// file once, so cycles and shared files end the walk rather than repeat it.
#include "relocate/DependencyWalk.h"

#include <stdlib.h>

#include <deque>
#include <map>
#include <memory>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/FileUtil.h>
#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/service/FileClassification.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbDependentFiles.h>

namespace LodeQDBRelocate::detail {

bool IsDrawingName(const wstring& path) {
    const wstring extension = LodeUtil::FileUtil::GetFileExtension(path);
    return LodeUtil::FileUtil::IsPLWFile(extension) || LodeUtil::FileUtil::IsPLXFile(extension);
}

namespace {

// Where `stored`, kept in a file of the folder `folder`, points on this system.
wstring PointsTo(const wstring& stored, const wstring& folder) {
    const auto root = LodeUtil::Path::ParseRoot(stored);
    if (root.kind == LodeUtil::Path::RootKind::None)
        return LodeUtil::AbsoluteFilePath(LodeUtil::CombineRelative(folder, stored)).FullPath();
    if (root.kind == LodeUtil::Path::RootKind::Separator && stored[0] == u'/')
        return LodeUtil::AbsoluteFilePath(stored).FullPath();
    return {};
}

bool IsDesignFileName(const wstring& path) {
    return LodeUtil::FoldCase(LodeUtil::FileUtil::GetFileExtension(path)) == u".dgn";
}

// The key that tells files apart: the canonical path, or the lexical one when the system
// can't give it.
std::string KeyOf(const wstring& path) {
    const std::optional<std::string> native = LodeUtil::NativePath(path);
    if (!native) return LodeUtil::Utf8FromUtf16(path);
    char* canonical = ::realpath(native->c_str(), nullptr);
    if (canonical == nullptr) return *native;
    std::string key(canonical);
    ::free(canonical);
    return key;
}

class Walk {
  public:
    std::vector<DependencyNode> Run(const wstring& root) {
        const wstring full = LodeUtil::AbsoluteFilePath(root).FullPath();
        NodeKind kind = NodeKind::File;
        if (IsDrawingName(full)) kind = NodeKind::Drawing;
        else if (IsDesignFileName(full) ||
                 LodeQDBService::Request::GetFileType(full) == lode::Dgn)
            kind = NodeKind::DesignFile;
        Enqueue(full, kind);
        // The root must be what it says: its failures reach the caller.
        Visit(0, true);
        while (!queue_.empty()) {
            const size_t next = queue_.front();
            queue_.pop_front();
            Visit(next, false);
        }
        return std::move(nodes_);
    }

  private:
    long Enqueue(const wstring& path, NodeKind kind) {
        const std::string key = KeyOf(path);
        if (auto known = index_.find(key); known != index_.end()) return known->second;
        const long node = static_cast<long>(nodes_.size());
        DependencyNode added;
        added.path = path;
        added.kind = kind;
        nodes_.push_back(std::move(added));
        index_.emplace(key, node);
        if (node != 0) queue_.push_back(static_cast<size_t>(node));
        return node;
    }

    void Visit(size_t node, bool isRoot) {
        try {
            if (nodes_[node].kind == NodeKind::Drawing) VisitDrawing(node);
            else if (nodes_[node].kind == NodeKind::DesignFile) VisitDesignFile(node);
        } catch (const std::exception& error) {
            if (isRoot) throw;
            nodes_[node].edges.clear();
            nodes_[node].note = std::string("not read (") + lode::ExceptionClassName(error) +
                                "): packed as it is";
            nodes_[node].kind = NodeKind::File;
        }
    }

    static NodeKind KindFound(StoredPathKind kind, const wstring& found) {
        if (IsDrawingName(found)) return NodeKind::Drawing;
        if (kind == StoredPathKind::DgnUnderlay || kind == StoredPathKind::DgnAttachment ||
            IsDesignFileName(found))
            return NodeKind::DesignFile;
        return NodeKind::File;
    }

    void VisitDrawing(size_t node) {
        const wstring path = nodes_[node].path;
        PwDbDatabase drawing(false, true);
        LodeQDBUtil::ReadFileToDatabase(path, drawing, true, false);
        std::vector<DependencyEdge> edges;
        const std::vector<StoredPath> stored = ListStoredPaths(drawing);
        for (size_t i = 0; i < stored.size(); ++i) {
            if (!stored[i].inUse) continue;
            DependencyEdge edge;
            edge.stored = stored[i];
            edge.position = i;
            wstring found;
            if (pwdbFindDependentFile(found, stored[i].path, &drawing,
                                      FindHintFor(stored[i].kind)) == Plotwright::StatusOk)
                edge.target = Enqueue(found, KindFound(stored[i].kind, found));
            else
                edge.lookedFor = PointsTo(stored[i].path, LodeUtil::Path::GetDirectoryName(path));
            edges.push_back(std::move(edge));
        }
        nodes_[node].edges = std::move(edges);
    }

    void VisitDesignFile(size_t node) {
        const std::vector<DgnAttachment> attachments = ListDgnAttachments(nodes_[node].path);
        std::vector<DependencyEdge> edges;
        for (size_t i = 0; i < attachments.size(); ++i) {
            DependencyEdge edge;
            edge.stored = attachments[i].stored;
            edge.position = i;
            if (!attachments[i].found.empty() && LodeUtil::File::Exists(attachments[i].found)) {
                const wstring found = LodeUtil::AbsoluteFilePath(attachments[i].found).FullPath();
                edge.target = Enqueue(found, KindFound(StoredPathKind::DgnAttachment, found));
            } else {
                edge.lookedFor = PointsTo(attachments[i].stored.path,
                                          LodeUtil::Path::GetDirectoryName(nodes_[node].path));
            }
            edges.push_back(std::move(edge));
        }
        nodes_[node].edges = std::move(edges);
    }

    std::vector<DependencyNode> nodes_;
    std::map<std::string, long> index_;
    std::deque<size_t> queue_;
};

}  // namespace

std::vector<DependencyNode> WalkDependencies(const wstring& root) {
    return Walk().Run(root);
}

}  // namespace LodeQDBRelocate::detail
