// Extension tests: an ASCII-only case fold against short fixed lists.
#include <lodeqdb/lodeutil/FileUtil.h>

#include <algorithm>
#include <array>
#include <string_view>

#include <lodeqdb/lodeutil/Path.h>

namespace LodeUtil {
namespace FileUtil {
namespace {

char16_t AsciiLower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit - u'A' + u'a') : unit;
}

/// True when `extension`, less one optional leading dot, equals the lower-case ASCII `name`
/// ignoring ASCII case. Folding only ASCII letters keeps non-ASCII units unequal to any
/// entry, which is what the all-ASCII lists need.
bool MatchesExtension(const wstring& extension, std::u16string_view name) {
    std::u16string_view bare(extension);
    if (!bare.empty() && bare.front() == u'.') bare.remove_prefix(1);
    if (bare.size() != name.size()) return false;
    return std::equal(bare.begin(), bare.end(), name.begin(),
                      [](char16_t unit, char16_t wanted) { return AsciiLower(unit) == wanted; });
}

}  // namespace

wstring GetFileExtension(const wstring& path) {
    return Path::GetExtension(path);
}

bool IsPLWFile(const wstring& extension) {
    return MatchesExtension(extension, u"plw");
}

bool IsPLXFile(const wstring& extension) {
    return MatchesExtension(extension, u"plx");
}

bool IsPDFFile(const wstring& extension) {
    return MatchesExtension(extension, u"pdf");
}

bool IsImageFile(const wstring& extension) {
    static constexpr std::array<std::u16string_view, 15> kImages = {
        u"bmp", u"dib", u"gif",  u"jpg", u"jpeg", u"jpe",  u"jp2", u"j2k",
        u"png", u"tif", u"tiff", u"pcx", u"tga",  u"webp", u"jfif"};
    return std::any_of(kImages.begin(), kImages.end(),
                       [&](std::u16string_view name) { return MatchesExtension(extension, name); });
}

}  // namespace FileUtil
}  // namespace LodeUtil
