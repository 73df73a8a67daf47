// Laying out a pack's files below one base folder.
#include "relocate/ArchiveLayout.h"

#include <set>
#include <stdexcept>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeQDBRelocate::detail {
namespace {

std::vector<wstring> Components(const wstring& path) {
    std::vector<wstring> parts;
    wstring part;
    for (const char16_t unit : path) {
        if (LodeUtil::Path::IsSeparator(unit)) {
            if (!part.empty()) parts.push_back(std::move(part));
            part.clear();
        } else {
            part += unit;
        }
    }
    if (!part.empty()) parts.push_back(std::move(part));
    return parts;
}

wstring Joined(const std::vector<wstring>& parts, size_t from) {
    wstring joined;
    for (size_t i = from; i < parts.size(); ++i) {
        if (!joined.empty()) joined += u'/';
        joined += parts[i];
    }
    return joined;
}

}  // namespace

ArchiveLayout LayOutArchive(const std::vector<wstring>& files) {
    ArchiveLayout layout;
    if (files.empty()) return layout;
    std::vector<std::vector<wstring>> parts;
    for (const wstring& file : files) parts.push_back(Components(file));
    // The base starts as the root's folder and shrinks to hold every file near the root.
    std::vector<wstring> base(parts[0].begin(), parts[0].end() - (parts[0].empty() ? 0 : 1));
    for (const auto& file : parts) {
        const bool near = base.empty() || (file.size() > 1 && file[0] == base[0]);
        if (!near) continue;
        size_t common = 0;
        while (common < base.size() && common + 1 < file.size() && file[common] == base[common])
            ++common;
        base.resize(common);
    }
    layout.base = u"/" + Joined(base, 0);
    std::set<wstring> taken;
    for (const auto& file : parts) {
        bool inside = file.size() > base.size();
        for (size_t i = 0; inside && i < base.size(); ++i) inside = file[i] == base[i];
        const wstring path = inside ? Joined(file, base.size())
                                    : wstring(kOutsideFolder) + u"/" + Joined(file, 0);
        if (path == u"manifest.json")
            throw std::runtime_error("a file of the pack is named manifest.json at the top: " +
                                     LodeUtil::Utf8FromUtf16(path));
        if (!taken.insert(path).second)
            throw std::runtime_error("two files of the pack would be " +
                                     LodeUtil::Utf8FromUtf16(path));
        layout.paths.push_back(path);
    }
    return layout;
}

wstring PlaceBelowBase(const ArchiveLayout& layout, const wstring& file) {
    const std::vector<wstring> base = Components(layout.base);
    const std::vector<wstring> parts = Components(file);
    if (file.empty() || file[0] != u'/' || parts.size() <= base.size()) return {};
    for (size_t i = 0; i < base.size(); ++i)
        if (parts[i] != base[i]) return {};
    return Joined(parts, base.size());
}

std::string EntryName(const wstring& path) {
    if (std::optional<std::string> native = LodeUtil::NativeFromUtf16(path)) return *native;
    return LodeUtil::Utf8FromUtf16(path);
}

}  // namespace LodeQDBRelocate::detail
