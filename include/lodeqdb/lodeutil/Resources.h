// Message texts kept in resource modules, one module per locale, found beside the module
// that uses them.
//
//   wstring name = LodeUtil::GetResDLLName(libraryModule, false);   // .../lib/LodeQDBRes.qrs
//   wstring path = LodeUtil::AddLocaleFolderToResDLLPath(name, 1031); //
//   .../lib/de-DE/LodeQDBRes.qrs LodeUtil::ModuleHandle texts = LodeUtil::Module::Load(path);
//   wstring format = LodeUtil::LoadStrW(texts, 101);
//
// A resource module is a loadable module that exports
//     extern "C" const char16_t* lodeMessageText(unsigned number);
// giving the zero-terminated text of a number, or null for a number it doesn't hold.
#pragma once

#include <lodeqdb/lodeutil/Module.h>
#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// The symbol every resource module exports.
inline constexpr char kMessageTextSymbol[] = "lodeMessageText";

/// The text numbered `number` in the resource module `module`. Empty when the module is
/// null, isn't a resource module, or doesn't hold that number.
wstring LoadStrW(ModuleHandle module, unsigned number);

/// The resource module's file name for `module`: its stem without "lib" and the ".so"
/// suffixes, followed by "Res.qrs" ("libLodeQDB.so.0" gives "LodeQDBRes.qrs").
/// With `bareName` false the result is a full path in the folder of `module`; with true it
/// is the file name alone. Empty for a null module.
wstring GetResDLLName(ModuleHandle module, bool bareName);

/// The path of the resource module `resourcePath` inside the folder of the locale
/// `localeId`: the folder named by the locale's tag ("de-DE") between the directory and the
/// file name. When that file doesn't exist, the language's usual locale ("de-AT" falls back
/// to "de-DE") and then "en-US" are tried; when none exists, the path for the asked locale is
/// returned, so that loading it fails.
wstring AddLocaleFolderToResDLLPath(const wstring& resourcePath, int localeId);

}  // namespace LodeUtil
