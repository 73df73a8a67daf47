// Reading and writing section-and-key settings files.
#include <lodeqdb/lodeutil/ProfileFile.h>

#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <iterator>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Strings.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil::Profile {

namespace {

bool HoldsLineBreak(const wstring& text) {
    return text.find_first_of(u"\r\n") != wstring::npos;
}

// The text of a line without its line end and the blanks around it.
wstring Trimmed(const std::string& line) {
    wstring text = Utf16FromUtf8(line);
    PathUtil::TrimString(text);
    return text;
}

bool SameName(const wstring& a, const wstring& b) {
    return FoldCase(a) == FoldCase(b);
}

// The lines of `content`, each with its own line end.
std::vector<std::string> Lines(const std::string& content) {
    std::vector<std::string> lines;
    size_t start = 0;
    while (start < content.size()) {
        size_t end = content.find('\n', start);
        end = end == std::string::npos ? content.size() : end + 1;
        lines.push_back(content.substr(start, end - start));
        start = end;
    }
    return lines;
}

// Whether `line` opens a section, and which.
bool SectionOf(const std::string& line, wstring& name) {
    const wstring text = Trimmed(line);
    if (text.empty() || text.front() != u'[') return false;
    const size_t close = text.find(u']');
    if (close == wstring::npos) return false;
    name = text.substr(1, close - 1);
    PathUtil::TrimString(name);
    return true;
}

bool IsKeyLine(const std::string& line, const wstring& key) {
    const wstring text = Trimmed(line);
    if (text.empty() || text.front() == u';') return false;
    const size_t equals = text.find(u'=');
    if (equals == wstring::npos) return false;
    wstring name = text.substr(0, equals);
    PathUtil::TrimString(name);
    return SameName(name, key);
}

std::string WithLineEnd(std::string line) {
    if (!line.empty() && line.back() != '\n') line += '\n';
    return line;
}

std::string Joined(const std::vector<std::string>& lines) {
    std::string joined;
    for (const std::string& line : lines) joined += line;
    return joined;
}

bool WriteReplacing(const std::string& native, const std::string& content) {
    const std::string sibling = native + ".new" + std::to_string(::getpid());
    {
        std::ofstream out(sibling, std::ios::binary | std::ios::trunc);
        out << content;
        out.flush();
        if (!out) {
            std::remove(sibling.c_str());
            return false;
        }
    }
    if (std::rename(sibling.c_str(), native.c_str()) != 0) {
        std::remove(sibling.c_str());
        return false;
    }
    return true;
}

}  // namespace

bool WriteString(const wstring& section, const wstring& key, const wstring& value,
                 const wstring& path) {
    if (section.empty() || key.empty() || HoldsLineBreak(section) || HoldsLineBreak(key) ||
        HoldsLineBreak(value) || key.find(u'=') != wstring::npos ||
        section.find(u']') != wstring::npos)
        return false;
    const std::optional<std::string> native = NativePath(path);
    if (!native) return false;
    std::string content;
    if (File::Exists(path)) {
        std::ifstream in(*native, std::ios::binary);
        if (!in) return false;
        content.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
        if (in.bad()) return false;
    }
    const std::string entry = Utf8FromUtf16(key) + "=" + Utf8FromUtf16(value) + "\n";
    std::vector<std::string> lines = Lines(content);
    std::optional<size_t> sectionStart;
    size_t insertAt = 0;  // after the section's last line that isn't blank
    for (size_t i = 0; i < lines.size(); ++i) {
        wstring name;
        if (SectionOf(lines[i], name)) {
            if (sectionStart) break;
            if (SameName(name, section)) sectionStart = insertAt = i + 1;
            continue;
        }
        if (!sectionStart) continue;
        if (IsKeyLine(lines[i], key)) {
            lines[i] = entry;
            return WriteReplacing(*native, Joined(lines));
        }
        if (!Trimmed(lines[i]).empty()) insertAt = i + 1;
    }
    if (sectionStart) {
        lines[insertAt - 1] = WithLineEnd(lines[insertAt - 1]);
        lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(insertAt), entry);
    } else {
        if (!lines.empty()) lines.back() = WithLineEnd(lines.back());
        // Appended: g++ 12 at -O3 warns falsely (-Wrestrict) of "literal" + string.
        std::string header = "[";
        header += Utf8FromUtf16(section);
        header += "]\n";
        lines.push_back(std::move(header));
        lines.push_back(entry);
    }
    return WriteReplacing(*native, Joined(lines));
}

}  // namespace LodeUtil::Profile
