// The library's message texts: numbered texts in a resource module of the product's locale.
//
//   wstring title = LodeQDBUtil::LoadMessageText(LodeQDBUtil::RevisionTableTitleText);
//
// The resource module is found beside the library (lib/<locale>/LodeQDBRes.qrs), loaded at
// the first text asked for and kept until the library is unloaded. The locale is the
// toolkit's product locale at that moment; a later change of it doesn't reload the texts.
#pragma once

#include <atomic>

#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/WideString.h>

namespace LodeQDBUtil {

/// Text numbers of the library's resource modules beyond the error codes 101 to 104.
enum MessageTextNumber : int {
    RevisionTableTitleText = 105,
};

/// The text `number` of the resource module; empty when the module could not be loaded or
/// lacks the number.
wstring LoadMessageText(int number);

/// The handle of the library's own module, stored when the process loaded it.
LodeUtil::ModuleHandle LibraryModule();

/// Holds the resource module. Created once, thread-safely, on first use; releases the
/// module when the library is unloaded.
class ResourceModule {
  public:
    static ResourceModule& Instance();

    /// The held module, loading it first when none is held. Null when the load failed; the
    /// next call tries again. Not locked: two threads that find it empty may both load, and
    /// the second to store releases the first one's handle.
    LodeUtil::ModuleHandle Get();

    /// The held module without loading one; null before the first text and after a failed
    /// load.
    LodeUtil::ModuleHandle Held() const;

    ResourceModule(const ResourceModule&) = delete;
    ResourceModule& operator=(const ResourceModule&) = delete;

  private:
    ResourceModule() = default;
    ~ResourceModule();

    std::atomic<LodeUtil::ModuleHandle> module_{nullptr};
};

}  // namespace LodeQDBUtil
