// Drawing a walk as a tree: which line is the last of its siblings is known only from the
// lines after it, so the lines are drawn once all are there.
#include "tools/TreeOutput.h"

#include <lodeqdb/lodeutil/Path.h>
#include "tools/EnumNames.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

// `name` relative to `folder` when it lies inside it, else as it is.
wstring Shown(const wstring& name, const wstring& folder) {
    if (folder.empty() || name.size() <= folder.size() + 1 ||
        name.compare(0, folder.size(), folder) != 0)
        return name;
    const char16_t separator = name[folder.size()];
    if (separator != u'/' && separator != u'\\') return name;
    return name.substr(folder.size() + 1);
}

// For each line, whether another line of its parent follows it. Going backwards, a line at a
// depth is a later sibling of the line before it at that depth unless a shallower line, which
// clears what was seen below it, stands between them.
std::vector<bool> HasLaterSibling(const std::vector<TreeLine>& lines) {
    std::vector<bool> later(lines.size(), false);
    std::vector<bool> seen;  // by depth: a line at that depth follows, under the same parent
    for (size_t i = lines.size(); i-- > 0;) {
        const size_t depth = lines[i].depth;
        if (seen.size() < depth + 1) seen.resize(depth + 1, false);
        later[i] = seen[depth];
        seen.resize(depth + 1);
        seen[depth] = true;
    }
    return later;
}

// Deeper than this, bars would fill the line: the depth is written as a number instead.
constexpr size_t kDrawnDepth = 32;

}  // namespace

void PrintTree(std::ostream& out, const wstring& rootPath, const std::vector<TreeLine>& lines) {
    const wstring folder = LodeUtil::Path::GetDirectoryName(rootPath);
    out << Narrow(Shown(rootPath, folder)) << '\n';
    const std::vector<bool> later = HasLaterSibling(lines);
    // Whether the line open at each depth has a later sibling: it draws the bar below it.
    std::vector<bool> open;
    for (size_t i = 0; i < lines.size(); ++i) {
        const TreeLine& line = lines[i];
        std::string prefix;
        if (line.depth > kDrawnDepth) {
            prefix = "[depth " + std::to_string(line.depth) + "] ";
        } else {
            open.resize(line.depth);
            for (size_t depth = 1; depth < line.depth; ++depth)
                prefix += open[depth - 1] ? "│   " : "    ";
            open[line.depth - 1] = later[i];
        }
        prefix += later[i] ? "├── " : "└── ";
        out << prefix << Narrow(Shown(line.record.GetFullname(), folder)) << "  ";
        if (line.metBefore) {
            out << "(already listed above)\n";
            continue;
        }
        out << FileTypeWords(line.record.GetType());
        if (line.record.GetType() == lode::Plw)
            out << ", " << XrefStatusWords(line.record.GetXrefStatus());
        out << '\n';
    }
}

}  // namespace lodeqdb::cli
