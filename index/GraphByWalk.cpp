// The dependency graph below a drawing, by the library's nested walk.
#include <lodeqdb/index/DependencyGraph.h>

#include <sys/stat.h>

#include <algorithm>
#include <map>

#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/service/TreeWalks.h>

namespace LodeQDBIndex {
namespace {

std::string Native(const wstring& name) {
    return LodeUtil::NativeFromUtf16(name).value_or(LodeUtil::Utf8FromUtf16(name));
}

bool Exists(std::string path) {
    // At the file system a backslash counts as '/', as the library's own lookups take it.
    std::replace(path.begin(), path.end(), '\\', '/');
    struct stat info {};
    return ::stat(path.c_str(), &info) == 0;
}

}  // namespace

DependencyGraph GraphByWalk(const std::string& root, bool* stopped) {
    DependencyGraph graph;
    std::map<std::string, size_t> nodeOf;
    graph.nodes.push_back({root, 1, !Exists(root)});
    nodeOf[root] = 0;
    // The node of the record met last at each depth: a record at depth d hangs below the one
    // at depth d - 1 (the walk enters a record right after meeting it).
    std::vector<size_t> above{0};
    const LodeQDBService::Request::WalkObserver observe =
        [&](const LodeQDBService::Request::WalkStep& step) {
            const std::string name = Native(step.record.GetFullname());
            const int type = step.record.GetType();
            const int status = step.record.GetXrefStatus();
            auto [node, added] = nodeOf.emplace(name, graph.nodes.size());
            if (added) {
                const bool missing = (type == 1 && status == 4) || !Exists(name);
                graph.nodes.push_back({name, type, missing});
            }
            const size_t depth = step.depth < above.size() ? step.depth : above.size();
            graph.edges.push_back({above[depth - 1], node->second, status});
            above.resize(depth);
            above.push_back(node->second);
        };
    LodeQDBService::Request::WalkStop stop;
    LodeQDBService::Request::PlotwrightNestedChildren(LodeUtil::Utf16FromNative(root), true, stop,
                                                      observe);
    if (stopped != nullptr) *stopped = stop.stopped;
    return graph;
}

}  // namespace LodeQDBIndex
