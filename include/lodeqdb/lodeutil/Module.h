// Loadable modules at the operating-system boundary: load, release, symbol lookup, and which
// module holds a given address.
//
//   LodeUtil::ModuleHandle module = LodeUtil::Module::Load(u"/opt/lib/de-DE/LodeQDBRes.qrs");
//   if (module) {
//       auto* entry = LodeUtil::Module::Symbol(module, "lodeMessageText");
//       LodeUtil::Module::Free(module);
//   }
#pragma once

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// An opaque handle of a loaded module; null is no module.
using ModuleHandle = void*;

namespace Module {

/// Loads the module at `path` (a backslash counts as '/'), resolving all its symbols now.
/// Each successful Load must be balanced by one Free. Null when it can't be loaded.
ModuleHandle Load(const wstring& path);

/// Releases one load of `module`. False for a null handle or when the system refuses.
bool Free(ModuleHandle module);

/// The address of the exported symbol `name` in `module`; null when there is none.
void* Symbol(ModuleHandle module, const char* name);

/// The full path of the file `module` was loaded from; empty for a null handle.
wstring FileName(ModuleHandle module);

/// The module that contains `address` (a function or object of that module), without
/// adding a load: the handle stays valid while that module stays loaded. Null when no
/// module holds it.
ModuleHandle Containing(const void* address);

/// The system's text for the last failed Load or Symbol, for diagnostics.
wstring LastError();

}  // namespace Module
}  // namespace LodeUtil
