// Loading the resource module of the product's locale, and the library's own module handle.
#include <lodeqdb/platform/MessageTexts.h>

#include <lodeqdb/lodeutil/Resources.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>

namespace LodeQDBUtil {
namespace {

// Taken while the library is being loaded, so that the resource module is always looked
// for beside the file this code came from.
const LodeUtil::ModuleHandle kLibraryModule =
    LodeUtil::Module::Containing(reinterpret_cast<const void*>(&LibraryModule));

int ProductLocaleId() {
    PwRxDynamicLinker* linker = pwrxDynamicLinker();
    // A registry without its linker would be a broken toolkit; fall back to the process's
    // locale rather than fail every message.
    return linker ? linker->productLocale().id() : PwLocale().id();
}

}  // namespace

LodeUtil::ModuleHandle LibraryModule() {
    return kLibraryModule;
}

ResourceModule& ResourceModule::Instance() {
    static ResourceModule holder;
    return holder;
}

ResourceModule::~ResourceModule() {
    if (LodeUtil::ModuleHandle held = module_.exchange(nullptr)) LodeUtil::Module::Free(held);
}

LodeUtil::ModuleHandle ResourceModule::Get() {
    if (LodeUtil::ModuleHandle held = module_.load()) return held;
    const wstring name = LodeUtil::GetResDLLName(LibraryModule(), false);
    const wstring path = LodeUtil::AddLocaleFolderToResDLLPath(name, ProductLocaleId());
    LodeUtil::ModuleHandle loaded = LodeUtil::Module::Load(path);
    // A failed load stores nothing, so the next text asked for tries again.
    if (loaded == nullptr) return module_.load();
    LodeUtil::ModuleHandle previous = module_.exchange(loaded);
    // Another thread stored a module meanwhile: the holder keeps one load, not two.
    if (previous != nullptr) LodeUtil::Module::Free(previous);
    return loaded;
}

LodeUtil::ModuleHandle ResourceModule::Held() const {
    return module_.load();
}

wstring LoadMessageText(int number) {
    if (number < 0) return {};
    return LodeUtil::LoadStrW(ResourceModule::Instance().Get(), static_cast<unsigned>(number));
}

}  // namespace LodeQDBUtil
