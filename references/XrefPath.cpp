// The full path of a reference's drawing in the context of its host.
#include <lodeqdb/references/XrefPath.h>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/references/PathQuestions.h>
#include <lodeqdb/toolkit/db/PwDbBlockTable.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectPointer.h>

namespace LodeQDBUtil {

namespace {

// A path that counts as absolute and starts with exactly one backslash: "\dir\file".
bool IsRootRelative(const wstring& path) {
    return path.compare(0, 1, u"\\") == 0 && path.compare(0, 2, u"\\\\") != 0;
}

// Drops every "\.." of a combined path, keeping the directory name before it: the text that
// CombineRelative left is not evaluated, so "C:\a\..\b" becomes "C:\a\b".
wstring DropParentSteps(wstring path) {
    static const wstring kParentStep = u"\\..\\";
    for (size_t at; path.size() >= 4 && (at = path.find(kParentStep)) != wstring::npos;)
        path.erase(at, 3);
    return path;
}

wstring StoredPath(const PwDbBlockTableRecord& block) {
    return LodeUtil::MakeWideString(block.pathName());
}

}  // namespace

wstring GetXrefPath(const PwDbDatabase& host, const PwDbBlockTableRecord* block,
                    const wstring& hostPath, bool storedPathOnly) {
    const PwDbDatabase* owner = block->database();
    PwDbObjectPointer<PwDbBlockTableRecord> counterpart;
    if (!storedPathOnly) {
        if (const PwDbDatabase* loaded = block->xrefDatabase(true))
            return pwdb::OriginalXrefFullPathFor(*loaded);
        if (owner != &host) {
            const char16_t* name = nullptr;
            block->getName(name);
            PwDbObjectId id;
            bool found = false;
            {
                PwDbSymbolTablePointer<PwDbBlockTable> table(const_cast<PwDbDatabase*>(&host),
                                                             PwDb::OpenForRead);
                found = table.openStatus() == Plotwright::StatusOk && name != nullptr &&
                        table->getIdAt(name, id, true) == Plotwright::StatusOk;
            }
            if (found) {
                counterpart = PwDbObjectPointer<PwDbBlockTableRecord>(id, PwDb::OpenForRead, true);
                if (counterpart.openStatus() == Plotwright::StatusOk) {
                    if (const PwDbDatabase* loaded = counterpart->xrefDatabase(true))
                        return pwdb::OriginalXrefFullPathFor(*loaded);
                }
            }
        }
    }

    wstring path = StoredPath(*block);
    bool absolute = IsPathAbsolute(path);
    if (absolute && !IsRootRelative(path)) return path;
    if (counterpart.openStatus() == Plotwright::StatusOk) {
        path = StoredPath(*counterpart);
        absolute = IsPathAbsolute(path);
        if (absolute && !IsRootRelative(path)) return path;
    }
    if (absolute) return LodeUtil::Path::GetPathRoot(hostPath) + path.substr(1);
    return DropParentSteps(
        LodeUtil::CombineRelative(LodeUtil::Path::GetDirectoryName(hostPath), path));
}

}  // namespace LodeQDBUtil
