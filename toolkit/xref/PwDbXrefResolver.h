// The resolution of one host's references; internal to the toolkit (see PwDbXrefs.h for
// what it does).
#pragma once

#include <set>
#include <string>
#include <unordered_set>
#include <vector>

#include <lodeqdb/lodeutil/WideString.h>

#include <lodeqdb/toolkit/pal/PwErrorStatus.h>
#include <lodeqdb/toolkit/db/PwDb.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

class PwDbBlockTableRecord;
class PwDbDatabase;

class PwDbXrefResolver {
  public:
    /// Resolves the tree of `database`'s host. With `rereadResolved`, each loaded reference
    /// drawing is read again from disk once.
    static void resolveTree(PwDbDatabase& database, bool rereadResolved);
    /// Prepares the reference `block` of `holder` for loading again (see pwdbReloadXrefs);
    /// the caller resolves the host's tree afterwards.
    static Plotwright::ErrorStatus prepareReload(PwDbObjectId block);
    /// The host that owns `database`'s references: the one it was loaded for, or itself.
    static PwDbDatabase& hostOf(PwDbDatabase& database);
    static const wstring& originalPath(const PwDbDatabase& database);
    static PwDbDatabase* loadedFor(const PwDbDatabase& database);

    /// The reference blocks of `database`, not erased, in block table order.
    static std::vector<PwDbBlockTableRecord*> referenceBlocks(const PwDbDatabase& database);

  private:
    PwDbXrefResolver(PwDbDatabase& host, bool rereadResolved);

    /// Resolves the references of `holder` and, depth first, of every drawing they load; an
    /// explicit stack, so that no depth of references can exhaust the thread's stack.
    void resolveReferencesOf(PwDbDatabase& holder, const std::string& holderIdentity);
    bool inProgress(const std::string& identity) const { return m_inProgress.count(identity) != 0; }
    /// Finds and loads (or shares) the drawing of an unresolved reference; null when it
    /// stays unresolved.
    PwDbDatabase* resolve(PwDbDatabase& holder, PwDbBlockTableRecord& block);
    PwDbDatabase* load(const wstring& path, const std::string& identity, PwDb::XrefStatus& status);
    void reread(PwDbDatabase& loaded);
    /// Destroys the loaded drawings that no reference reachable from the host uses.
    void dropUnused();

    static void setResolution(PwDbBlockTableRecord& block, PwDbDatabase* loaded,
                              PwDb::XrefStatus status);

    PwDbDatabase& m_host;
    bool m_rereadResolved;
    // The files on the way from the host to the drawing being resolved.
    std::unordered_set<std::string> m_inProgress;
    std::set<std::string> m_finished;
    std::set<std::string> m_unreadable;
};
