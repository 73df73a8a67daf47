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

bool SameFileName(const wstring& a, const wstring& b) {
    return LodeUtil::Order(a, b, LodeUtil::StringOrder::CodeUnit, LodeUtil::StringCase::Ignore) ==
           0;
}

bool AnyIsTarget(const std::vector<FileData>& children, const std::vector<wstring>& targets) {
    for (const FileData& child : children) {
        const wstring name = child.GetFullname();
        for (const wstring& target : targets)
            if (SameFileName(name, target)) return true;
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
    ParentCollector(const wstring& path, const std::vector<wstring>& targets)
        : path_(path), targets_(targets) {}

    std::vector<FileData> Walk(PwDbDatabase& root) {
        try {
            VisitedNames visited;
            const std::vector<FileData> children = PlotwrightChildren(root, nullptr);
            visited.insert(path_);
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
    void VisitChild(VisitedNames& visited, PwDbDatabase* database, const FileData& record,
                    bool fromFile) {
        const wstring name = record.GetFullname();
        for (const wstring& seen : visited)
            if (SameFileName(name, seen)) return;
        visited.insert(name);
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
    std::vector<wstring> targets_;
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
