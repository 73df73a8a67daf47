// The nested and parent walks: depth first in pre-order, their way down kept on the heap, and
// a failure anywhere ending the walk with what was found.
#include <lodeqdb/service/TreeWalks.h>

#include <exception>
#include <memory>
#include <optional>
#include <set>

#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/readsave/ReadIntoDatabase.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/service/ChildrenQuery.h>
#include <lodeqdb/service/DgnChildren.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>

namespace LodeQDBService::Request {

namespace {

// The names a walk has met, in plain code-unit order.
using VisitedNames = std::set<wstring>;

// The parent walk's equality of file names: LodeUtil::Order in code-unit order, ignoring case,
// is 0 exactly when the case-folded names are equal, so names are folded once and compared as
// they are.
wstring ComparableName(const wstring& name) {
    return LodeUtil::FoldCase(name);
}

// Folded names, for the parent walk.
using FoldedNames = std::set<wstring>;

bool AnyIsTarget(const std::vector<FileData>& children, const FoldedNames& targets) {
    for (const FileData& child : children) {
        if (targets.count(ComparableName(child.GetFullname())) != 0) return true;
    }
    return false;
}

// Describes in `stop` the failure that ends a walk while `file`'s dependencies were asked for.
void Describe(const std::exception& error, const wstring& file, WalkStop& stop) {
    stop.stopped = true;
    stop.exceptionClass = lode::ExceptionClassName(error);
    stop.file = file;
    if (const auto* lodeError = dynamic_cast<const lode::LodeException*>(&error)) {
        stop.code = lodeError->code();
        stop.message = lodeError->message();
    } else {
        stop.code = 0;
        stop.message = LodeUtil::Utf16FromUtf8(error.what());
    }
}

// One level of a walk's way down: the records of one file, and which of them comes next.
struct Level {
    std::vector<FileData> records;
    size_t next = 0;
    // Where the records' own dependencies are asked: the drawing that has them loaded (null
    // when they are to be read from their files), and whether they came from a file read
    // for them rather than from a drawing the root has loaded.
    PwDbDatabase* database = nullptr;
    bool fromFile = false;
    // A drawing read for this level, kept while the walk is below it.
    std::unique_ptr<PwDbDatabase> owned;
};

// The next record of a walk's way down, in pre-order: levels that are done are left first.
// Null when the way is done. The record stays valid until the way changes.
const FileData* NextRecord(std::vector<Level>& way) {
    while (!way.empty() && way.back().next == way.back().records.size()) way.pop_back();
    if (way.empty()) return nullptr;
    Level& level = way.back();
    return &level.records[level.next++];
}

class NestedCollector {
  public:
    NestedCollector(bool followDgn, WalkStop& stop, const WalkObserver* observer = nullptr)
        : followDgn_(followDgn), stop_(stop), observer_(observer) {}

    std::vector<FileData> Walk(PwDbDatabase& root, const wstring& rootName) {
        stop_ = WalkStop();
        wstring asking;  // whose dependencies are being asked for; empty for the root
        try {
            VisitedNames visited;
            std::vector<Level> way;
            way.push_back(Level{PlotwrightChildren(root, nullptr), 0, &root, false, nullptr});
            visited.insert(rootName);
            while (const FileData* record = NextRecord(way)) {
                const wstring name = record->GetFullname();
                const bool metBefore = !visited.insert(name).second;
                if (observer_ != nullptr) (*observer_)(WalkStep{*record, way.size(), metBefore});
                if (metBefore) continue;
                children_.push_back(*record);
                asking = name;
                if (std::optional<Level> below = Below(*record, way.back()))
                    way.push_back(std::move(*below));
            }
        } catch (const std::exception& error) {
            // The walk ends here; what was found stays, and the stop says why.
            Describe(error, asking, stop_);
        }
        return std::move(children_);
    }

  private:
    // The level below `record`, met in `level`: the dependencies of a resolved drawing, or
    // with followDgn those of a DGN file; none for anything else.
    std::optional<Level> Below(const FileData& record, const Level& level) {
        const wstring name = record.GetFullname();
        if (record.GetType() == lode::Plw) {
            if (record.GetXrefStatus() != PwDb::XrefResolved) return std::nullopt;
            if (level.fromFile) {
                auto drawing = std::make_unique<PwDbDatabase>(false, true);
                LodeQDBUtil::ReadFileToDatabase(name, *drawing, true, true);
                Level below{PlotwrightChildren(*drawing, nullptr), 0, drawing.get(), false,
                            nullptr};
                below.owned = std::move(drawing);
                return below;
            }
            return Level{PlotwrightChildren(*level.database, record.PwdbObjectId(), nullptr), 0,
                         level.database, false, nullptr};
        }
        if (record.GetType() == lode::Dgn && followDgn_)
            return Level{DGNChildren(name), 0, level.database, true, nullptr};
        return std::nullopt;
    }

    std::vector<FileData> children_;
    bool followDgn_;
    WalkStop& stop_;
    const WalkObserver* observer_;
};

class ParentCollector {
  public:
    ParentCollector(const wstring& path, const std::vector<wstring>& targets, WalkStop& stop)
        : path_(path), stop_(stop) {
        for (const wstring& target : targets) targets_.insert(ComparableName(target));
    }

    std::vector<FileData> Walk(PwDbDatabase& root) {
        stop_ = WalkStop();
        wstring asking;
        try {
            FoldedNames visited;
            const std::vector<FileData> children = PlotwrightChildren(root, nullptr);
            visited.insert(ComparableName(path_));
            if (AnyIsTarget(children, targets_)) {
                FileData self(path_);
                self.SetType(lode::Plw);
                self.SetXrefStatus(PwDb::XrefResolved);
                parents_.push_back(self);
            }
            std::vector<Level> way;
            way.push_back(Level{children, 0, &root, false, nullptr});
            while (const FileData* record = NextRecord(way)) {
                const wstring name = record->GetFullname();
                if (!visited.insert(ComparableName(name)).second) continue;
                asking = name;
                Level below = Below(*record, way.back());
                if (AnyIsTarget(below.records, targets_)) parents_.push_back(*record);
                if (!below.records.empty()) way.push_back(std::move(below));
            }
        } catch (const std::exception& error) {
            // The walk ends here; what was found stays, and the stop says why.
            Describe(error, asking, stop_);
        }
        return std::move(parents_);
    }

  private:
    // The records one level below `record`, met in `level`, and where theirs are asked.
    Level Below(const FileData& record, const Level& level) {
        const wstring name = record.GetFullname();
        PwDbDatabase* database = level.database;
        if (record.GetType() == lode::Plw && record.GetXrefStatus() == PwDb::XrefResolved) {
            if (level.fromFile) {
                // Read and let go again: the lookup below then finds nothing loaded and reads
                // the file itself, and no deeper level uses a drawing of this one.
                {
                    PwDbDatabase drawing(false, true);
                    LodeQDBUtil::ReadFileToDatabase(name, drawing, true, true);
                }
                database = nullptr;
            }
            std::vector<FileData> children = database != nullptr
                                                 ? PlotwrightChildren(*database, name, nullptr)
                                                 : PlotwrightChildren(name, nullptr);
            return Level{std::move(children), 0, database, false, nullptr};
        }
        if (record.GetType() == lode::Dgn && followDgn_)
            return Level{DGNChildren(name), 0, database, true, nullptr};
        return Level{{}, 0, database, false, nullptr};
    }

    std::vector<FileData> parents_;
    wstring path_;
    FoldedNames targets_;
    bool followDgn_ = true;
    WalkStop& stop_;
};

}  // namespace

std::vector<FileData> PlotwrightNestedChildren(PwDbDatabase& root, bool followDgn, WalkStop& stop) {
    return NestedCollector(followDgn, stop).Walk(root, LodeQDBUtil::GetDatabasePath(root));
}

std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn,
                                               WalkStop& stop) {
    PwDbDatabase root(false, true);
    LodeQDBUtil::ReadFileToDatabase(path, root, true, true);
    return NestedCollector(followDgn, stop).Walk(root, path);
}

std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn, WalkStop& stop,
                                               const WalkObserver& observer) {
    PwDbDatabase root(false, true);
    LodeQDBUtil::ReadFileToDatabase(path, root, true, true);
    return NestedCollector(followDgn, stop, &observer).Walk(root, path);
}

std::vector<FileData> PlotwrightNestedChildren(PwDbDatabase& root, bool followDgn) {
    WalkStop ignored;
    return PlotwrightNestedChildren(root, followDgn, ignored);
}

std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn) {
    WalkStop ignored;
    return PlotwrightNestedChildren(path, followDgn, ignored);
}

std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const std::vector<wstring>& targets, WalkStop& stop) {
    return ParentCollector(rootPath, targets, stop).Walk(root);
}

std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const std::vector<wstring>& targets) {
    WalkStop ignored;
    return PlotwrightParents(rootPath, root, targets, ignored);
}

std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const wstring& target) {
    return PlotwrightParents(rootPath, root, std::vector<wstring>{target});
}

}  // namespace LodeQDBService::Request
