#include "service/TreeWalks.h"

#include <exception>
#include <set>

#include "lodeutil/Strings.h"
#include "readsave/ReadIntoDatabase.h"
#include "references/PathQuestions.h"
#include "service/ChildrenQuery.h"
#include "service/DgnChildren.h"
#include "toolkit/db/PwDbDatabase.h"

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

class NestedCollector {
  public:
    explicit NestedCollector(bool followDgn) : followDgn_(followDgn) {}

    std::vector<FileData> Walk(PwDbDatabase& root, const wstring& rootName) {
        try {
            VisitedNames visited;
            const std::vector<FileData> children = PlotwrightChildren(root, nullptr);
            visited.insert(rootName);
            for (const FileData& child : children) VisitChild(visited, root, child, false);
        } catch (const std::exception&) {
            // The walk ends here; what was found stays.
        }
        return std::move(children_);
    }

  private:
    void VisitChild(VisitedNames& visited, PwDbDatabase& database, const FileData& record,
                    bool fromFile) {
        const wstring name = record.GetFullname();
        if (visited.count(name) != 0) return;
        children_.push_back(record);
        visited.insert(name);
        if (record.GetType() == lode::Plw) {
            if (record.GetXrefStatus() != PwDb::XrefResolved) return;
            if (fromFile) {
                PwDbDatabase drawing(false, true);
                LodeQDBUtil::ReadFileToDatabase(name, drawing, true, true);
                for (const FileData& child : PlotwrightChildren(drawing, nullptr))
                    VisitChild(visited, drawing, child, false);
            } else {
                for (const FileData& child :
                     PlotwrightChildren(database, record.PwdbObjectId(), nullptr))
                    VisitChild(visited, database, child, false);
            }
        } else if (record.GetType() == lode::Dgn && followDgn_) {
            for (const FileData& child : DGNChildren(name))
                VisitChild(visited, database, child, true);
        }
    }

    std::vector<FileData> children_;
    bool followDgn_;
};

class ParentCollector {
  public:
    ParentCollector(const wstring& path, const std::vector<wstring>& targets) : path_(path) {
        for (const wstring& target : targets) targets_.insert(ComparableName(target));
    }

    std::vector<FileData> Walk(PwDbDatabase& root) {
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
            for (const FileData& child : children) VisitChild(visited, &root, child, false);
        } catch (const std::exception&) {
            // The walk ends here; what was found stays.
        }
        return std::move(parents_);
    }

  private:
    void VisitChild(FoldedNames& visited, PwDbDatabase* database, const FileData& record,
                    bool fromFile) {
        const wstring name = record.GetFullname();
        if (!visited.insert(ComparableName(name)).second) return;
        std::vector<FileData> children;
        bool childrenFromFile = false;
        if (record.GetType() == lode::Plw && record.GetXrefStatus() == PwDb::XrefResolved) {
            if (fromFile) {
                // Read and let go again: the lookup below then finds nothing loaded and reads
                // the file itself, and no deeper level uses a drawing of this one.
                {
                    PwDbDatabase drawing(false, true);
                    LodeQDBUtil::ReadFileToDatabase(name, drawing, true, true);
                }
                database = nullptr;
            }
            if (database != nullptr) {
                children = PlotwrightChildren(*database, name, nullptr);
            } else {
                children = PlotwrightChildren(name, nullptr);
            }
        } else if (record.GetType() == lode::Dgn && followDgn_) {
            children = DGNChildren(name);
            childrenFromFile = true;
        }
        if (AnyIsTarget(children, targets_)) parents_.push_back(record);
        for (const FileData& child : children)
            VisitChild(visited, database, child, childrenFromFile);
    }

    std::vector<FileData> parents_;
    wstring path_;
    FoldedNames targets_;
    bool followDgn_ = true;
};

}  // namespace

std::vector<FileData> PlotwrightNestedChildren(PwDbDatabase& root, bool followDgn) {
    return NestedCollector(followDgn).Walk(root, LodeQDBUtil::GetDatabasePath(root));
}

std::vector<FileData> PlotwrightNestedChildren(const wstring& path, bool followDgn) {
    PwDbDatabase root(false, true);
    LodeQDBUtil::ReadFileToDatabase(path, root, true, true);
    return NestedCollector(followDgn).Walk(root, path);
}

std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const std::vector<wstring>& targets) {
    return ParentCollector(rootPath, targets).Walk(root);
}

std::vector<FileData> PlotwrightParents(const wstring& rootPath, PwDbDatabase& root,
                                        const wstring& target) {
    return PlotwrightParents(rootPath, root, std::vector<wstring>{target});
}

}  // namespace LodeQDBService::Request
