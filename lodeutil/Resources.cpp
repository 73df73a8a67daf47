// Finding resource modules and reading their texts.
#include <lodeqdb/lodeutil/Resources.h>

#include <vector>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/LocaleId.h>
#include <lodeqdb/lodeutil/Path.h>

namespace LodeUtil {
namespace {

using MessageTextFunction = const char16_t* (*)(unsigned);

constexpr int kFallbackLocaleId = 1033;

wstring ResourceStem(const wstring& moduleFileName) {
    wstring stem = moduleFileName.substr(0, moduleFileName.find(u".so"));
    if (stem.size() > 3 && stem.compare(0, 3, u"lib") == 0) stem.erase(0, 3);
    if (stem.empty()) stem = moduleFileName;
    return stem;
}

wstring InLocaleFolder(const wstring& directory, const wstring& tag, const wstring& file) {
    return CombineRelative(CombineRelative(directory, tag), file);
}

}  // namespace

wstring LoadStrW(ModuleHandle module, unsigned number) {
    auto text = reinterpret_cast<MessageTextFunction>(Module::Symbol(module, kMessageTextSymbol));
    if (text == nullptr) return {};
    const char16_t* found = text(number);
    return found ? wstring(found) : wstring();
}

wstring GetResDLLName(ModuleHandle module, bool bareName) {
    const wstring modulePath = Module::FileName(module);
    if (modulePath.empty()) return {};
    const wstring name = ResourceStem(Path::GetFileName(modulePath)) + u"Res.qrs";
    if (bareName) return name;
    return CombineRelative(Path::GetDirectoryName(modulePath), name);
}

wstring AddLocaleFolderToResDLLPath(const wstring& resourcePath, int localeId) {
    const wstring directory = Path::GetDirectoryName(resourcePath);
    const wstring file = Path::GetFileName(resourcePath);
    const wstring asked = LocaleTagFromId(localeId);

    std::vector<wstring> tags;
    if (!asked.empty()) {
        tags.push_back(asked);
        tags.push_back(LikelyTagForLanguageOf(asked));
    }
    tags.push_back(LocaleTagFromId(kFallbackLocaleId));
    for (const wstring& tag : tags) {
        if (tag.empty()) continue;
        const wstring candidate = InLocaleFolder(directory, tag, file);
        if (File::Exists(candidate)) return candidate;
    }
    return InLocaleFolder(directory, asked.empty() ? tags.back() : asked, file);
}

}  // namespace LodeUtil
