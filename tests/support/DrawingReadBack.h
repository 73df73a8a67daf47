// Reading a drawing back in tests: the entities of a block, names of records and classes, the
// layers of a drawing; and the host's root folder set for the length of a test.
#pragma once

#include <vector>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/db/PwDbDatabase.h>
#include <lodeqdb/toolkit/db/PwDbObjectId.h>

namespace lodeqdbtest {

/// The ids of the live entities of `block`, in order.
std::vector<PwDbObjectId> Entities(PwDbObjectId block);
/// The id of the block `name` of `drawing`; null when it has none.
PwDbObjectId BlockNamed(const PwDbDatabase& drawing, const wstring& name);
/// The name of a layer or block record.
wstring RecordName(PwDbObjectId record);
/// The run-time class name of the object `id`.
wstring ClassName(PwDbObjectId id);
/// The names of the drawing's layers, in table order.
std::vector<wstring> LayerNames(const PwDbDatabase& drawing);

/// Sets the root folder of the process's host services for the object's life.
class ScopedRootFolder {
  public:
    explicit ScopedRootFolder(const wstring& folder);
    ~ScopedRootFolder();
    ScopedRootFolder(const ScopedRootFolder&) = delete;
    ScopedRootFolder& operator=(const ScopedRootFolder&) = delete;

  private:
    wstring m_previous;
};

}  // namespace lodeqdbtest
