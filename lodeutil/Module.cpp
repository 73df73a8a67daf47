// Modules through the dynamic loader (dlopen and friends).
#include <lodeqdb/lodeutil/Module.h>

#include <dlfcn.h>
#include <link.h>
#include <unistd.h>

#include <climits>
#include <optional>
#include <string>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil::Module {
namespace {

wstring ExecutablePath() {
    std::string buffer(PATH_MAX, '\0');
    const ssize_t length = readlink("/proc/self/exe", buffer.data(), buffer.size());
    if (length <= 0) return {};
    buffer.resize(static_cast<size_t>(length));
    return Utf16FromNative(buffer);
}

}  // namespace

ModuleHandle Load(const wstring& path) {
    const std::optional<std::string> native = NativePath(path);
    if (!native) return nullptr;
    return dlopen(native->c_str(), RTLD_NOW | RTLD_LOCAL);
}

bool Free(ModuleHandle module) {
    return module != nullptr && dlclose(module) == 0;
}

void* Symbol(ModuleHandle module, const char* name) {
    if (module == nullptr || name == nullptr) return nullptr;
    return dlsym(module, name);
}

wstring FileName(ModuleHandle module) {
    if (module == nullptr) return {};
    link_map* map = nullptr;
    if (dlinfo(module, RTLD_DI_LINKMAP, &map) != 0 || map == nullptr) return {};
    // The main program's entry has no name of its own.
    if (map->l_name == nullptr || map->l_name[0] == '\0') return ExecutablePath();
    return Utf16FromNative(map->l_name);
}

ModuleHandle Containing(const void* address) {
    Dl_info info{};
    if (address == nullptr || dladdr(address, &info) == 0 || info.dli_fname == nullptr) {
        return nullptr;
    }
    ModuleHandle module = dlopen(info.dli_fname, RTLD_LAZY | RTLD_NOLOAD);
    if (module == nullptr) module = dlopen(nullptr, RTLD_LAZY);
    // The lookup counted as a load; give it back so that the caller owns nothing.
    if (module != nullptr) dlclose(module);
    return module;
}

wstring LastError() {
    const char* text = dlerror();
    return text ? Utf16FromUtf8(text) : wstring();
}

}  // namespace LodeUtil::Module
