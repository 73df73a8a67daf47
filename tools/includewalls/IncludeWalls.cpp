// include_walls: checks, before anything is compiled, that the sources keep to the layering that
// cmake/IncludeWalls.txt states: no include reaches up a layer or across to a neighbour, no
// public header includes an internal one, and no circle runs through the includes of files.
//
//   include_walls SOURCE_ROOT RULES_FILE STAMP_FILE
//
// Every violation is printed as "file:line: error: ..." (as compilers print them, so editors
// jump to it); the exit status is then 1 and the stamp isn't written.
#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <map>
#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr const char* kPublicRoot = "include/lodeqdb/";
constexpr const char* kUmbrellaFolder = "lodeqdb";

struct Rules {
    /// Each folder and the folders right below it.
    std::map<std::string, std::vector<std::string>> below;
    /// Folders whose files stand outside the walls (tests, benchmarks).
    std::vector<std::string> outside;
};

struct Include {
    std::string target;  // the included file, relative to the source root
    int line;
};

struct SourceFile {
    std::string folder;
    bool isPublic = false;
    std::vector<Include> includes;
};

int g_errors = 0;

void Report(const std::string& where, const std::string& what) {
    std::cerr << where << ": error: " << what << '\n';
    ++g_errors;
}

std::string Trim(const std::string& text) {
    const auto first = text.find_first_not_of(" \t\r");
    if (first == std::string::npos) return "";
    return text.substr(first, text.find_last_not_of(" \t\r") - first + 1);
}

bool ReadRules(const fs::path& path, Rules& rules) {
    std::ifstream in(path);
    if (!in) {
        Report(path.string(), "can't read the rules");
        return false;
    }
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        line = Trim(line.substr(0, line.find('#')));
        if (line.empty()) continue;
        const auto colon = line.find(':');
        if (colon == std::string::npos) {
            Report(path.string() + ":" + std::to_string(number), "expected \"folder: folders\"");
            continue;
        }
        const std::string folder = Trim(line.substr(0, colon));
        std::istringstream names(line.substr(colon + 1));
        std::vector<std::string> list;
        for (std::string name; names >> name;) list.push_back(name);
        if (folder == "outside") {
            rules.outside.insert(rules.outside.end(), list.begin(), list.end());
        } else if (!rules.below.emplace(folder, list).second) {
            Report(path.string() + ":" + std::to_string(number), folder + " is named twice");
        }
    }
    for (const auto& [folder, list] : rules.below) {
        for (const std::string& name : list) {
            if (rules.below.count(name) == 0) {
                Report(path.string(), folder + " stands on " + name + ", which has no line");
            }
        }
    }
    return true;
}

// Every folder each folder may reach, and a report of any circle among the rules.
std::map<std::string, std::set<std::string>> Reach(const Rules& rules) {
    std::map<std::string, std::set<std::string>> reach;
    for (const auto& [start, ignored] : rules.below) {
        std::set<std::string>& seen = reach[start];
        std::vector<std::string> pending = rules.below.at(start);
        while (!pending.empty()) {
            const std::string folder = pending.back();
            pending.pop_back();
            if (folder == start) {
                Report("cmake/IncludeWalls.txt", "the folders form a circle through " + start);
                break;
            }
            if (!seen.insert(folder).second) continue;
            const auto found = rules.below.find(folder);
            if (found != rules.below.end()) {
                pending.insert(pending.end(), found->second.begin(), found->second.end());
            }
        }
    }
    return reach;
}

bool IsOutside(const Rules& rules, const std::string& relative) {
    for (const std::string& prefix : rules.outside) {
        if (relative == prefix || relative.rfind(prefix + "/", 0) == 0) return true;
    }
    return false;
}

// The folder a file belongs to: its directory, or for a public header the directory below
// include/lodeqdb/ (the umbrella header's is "lodeqdb").
std::string FolderOf(const std::string& relative, bool& isPublic) {
    isPublic = relative.rfind(kPublicRoot, 0) == 0;
    const std::string rest = isPublic ? relative.substr(std::string(kPublicRoot).size()) : relative;
    const auto slash = rest.rfind('/');
    if (slash == std::string::npos) return isPublic ? kUmbrellaFolder : "";
    return rest.substr(0, slash);
}

std::vector<Include> ReadIncludes(const fs::path& root, const std::string& relative) {
    static const std::regex include(R"(^\s*#\s*include\s*([<"])([^>"]+)[>"])");
    std::vector<Include> includes;
    std::ifstream in(root / relative);
    std::string line;
    int number = 0;
    while (std::getline(in, line)) {
        ++number;
        if (line.find("include") == std::string::npos) continue;
        std::smatch match;
        if (!std::regex_search(line, match, include)) continue;
        const std::string name = match[2];
        if (match[1] == "<") {
            // Of the angle-bracket includes only the public interface is ours.
            if (name.rfind("lodeqdb/", 0) != 0) continue;
            includes.push_back({"include/" + name, number});
            continue;
        }
        if (fs::exists(root / name)) {
            includes.push_back({name, number});
            continue;
        }
        const fs::path beside = fs::path(relative).parent_path() / name;
        if (fs::exists(root / beside)) {
            includes.push_back({beside.lexically_normal().generic_string(), number});
        }
    }
    return includes;
}

// Reports one circle of includes among the files, if there is any, as its chain of files.
void CheckForCircles(const std::map<std::string, SourceFile>& files) {
    enum class Mark { None, OnWay, Done };
    std::map<std::string, Mark> marks;
    for (const auto& [start, ignored] : files) {
        if (marks[start] != Mark::None) continue;
        // Depth first, iteratively: each level is a file and the next include to follow.
        std::vector<std::pair<std::string, size_t>> way{{start, 0}};
        marks[start] = Mark::OnWay;
        while (!way.empty()) {
            auto& [file, next] = way.back();
            const std::vector<Include>& includes = files.at(file).includes;
            if (next == includes.size()) {
                marks[file] = Mark::Done;
                way.pop_back();
                continue;
            }
            const Include& include = includes[next++];
            if (files.count(include.target) == 0) continue;
            const Mark mark = marks[include.target];
            if (mark == Mark::OnWay) {
                std::string chain;
                bool inCircle = false;
                for (const auto& level : way) {
                    if (level.first == include.target) inCircle = true;
                    if (inCircle) chain += level.first + " -> ";
                }
                Report(file + ":" + std::to_string(include.line),
                       "a circle of includes: " + chain + include.target);
                return;
            }
            if (mark == Mark::None) {
                marks[include.target] = Mark::OnWay;
                way.push_back({include.target, 0});
            }
        }
    }
}

}  // namespace

int main(int argc, char** argv) {
    if (argc != 4) {
        std::cerr << "usage: include_walls SOURCE_ROOT RULES_FILE STAMP_FILE\n";
        return 2;
    }
    const fs::path root = argv[1];
    Rules rules;
    if (!ReadRules(argv[2], rules)) return 1;
    const auto reach = Reach(rules);

    std::map<std::string, SourceFile> files;
    for (auto entry = fs::recursive_directory_iterator(root); entry != fs::end(entry); ++entry) {
        const std::string relative = fs::relative(entry->path(), root).generic_string();
        const std::string name = entry->path().filename().string();
        if (entry->is_directory()) {
            // Hidden folders, build trees and what stands outside the walls aren't looked at.
            if (name[0] == '.' || name.rfind("build", 0) == 0 || IsOutside(rules, relative) ||
                fs::exists(entry->path() / "CMakeCache.txt")) {
                entry.disable_recursion_pending();
            }
            continue;
        }
        const std::string extension = entry->path().extension().string();
        if (extension != ".h" && extension != ".cpp") continue;
        SourceFile file;
        file.folder = FolderOf(relative, file.isPublic);
        if (file.folder.empty()) continue;
        if (rules.below.count(file.folder) == 0) {
            Report(relative, "the folder " + file.folder + " has no place in the include walls");
            continue;
        }
        file.includes = ReadIncludes(root, relative);
        files.emplace(relative, std::move(file));
    }

    for (const auto& [relative, file] : files) {
        for (const Include& include : file.includes) {
            const std::string where = relative + ":" + std::to_string(include.line);
            bool targetIsPublic = false;
            const std::string target = FolderOf(include.target, targetIsPublic);
            if (file.isPublic && !targetIsPublic) {
                Report(where, "a public header includes the internal header " + include.target);
            }
            if (target == file.folder || target.empty()) continue;
            const auto allowed = reach.find(file.folder);
            if (allowed == reach.end() || allowed->second.count(target) == 0) {
                Report(where, file.folder + " may not include " + include.target + " (" + target +
                                  " isn't below " + file.folder + " in the include walls)");
            }
        }
    }
    CheckForCircles(files);

    if (g_errors > 0) {
        std::cerr << "include walls: " << g_errors << " error(s) in " << files.size()
                  << " files\n";
        return 1;
    }
    std::ofstream(argv[3]) << files.size() << " files within their walls\n";
    return 0;
}
