// File existence and directory making over stat, mkdir and getcwd, reached through one seam.
#include <lodeqdb/lodeutil/FileSystem.h>

#include <sys/stat.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include <lodeqdb/lodeutil/Path.h>
#include <lodeqdb/lodeutil/Utf.h>

namespace LodeUtil {
namespace detail {
namespace {

NodeKind SystemKindOf(const char* path) {
    struct stat status {};
    if (::stat(path, &status) != 0) return NodeKind::Missing;
    if (S_ISREG(status.st_mode)) return NodeKind::RegularFile;
    if (S_ISDIR(status.st_mode)) return NodeKind::Directory;
    return NodeKind::Other;
}

int SystemMakeDirectory(const char* path) {
    if (::mkdir(path, 0777) == 0) return 0;
    return errno != 0 ? errno : EIO;
}

bool SystemCurrentDirectory(std::string& out) {
    // No path limit is assumed: the buffer grows while getcwd reports it as too small, up to a
    // bound that keeps a misbehaving call from growing it for ever.
    constexpr std::size_t kLargest = std::size_t{1} << 20;
    std::string buffer(256, '\0');
    while (::getcwd(buffer.data(), buffer.size()) == nullptr) {
        if (errno != ERANGE || buffer.size() >= kLargest) return false;
        buffer.resize(buffer.size() * 2);
    }
    buffer.resize(std::strlen(buffer.c_str()));
    out = std::move(buffer);
    return true;
}

FileSystemCalls& Active() {
    static FileSystemCalls calls = SystemFileSystemCalls();
    return calls;
}

}  // namespace

FileSystemCalls SystemFileSystemCalls() {
    return {&SystemKindOf, &SystemMakeDirectory, &SystemCurrentDirectory};
}

const FileSystemCalls& ActiveFileSystemCalls() {
    return Active();
}

FileSystemCalls ReplaceFileSystemCallsForTesting(const FileSystemCalls& calls) {
    const FileSystemCalls system = SystemFileSystemCalls();
    const FileSystemCalls previous = Active();
    Active() = {
        calls.kindOf != nullptr ? calls.kindOf : system.kindOf,
        calls.makeDirectory != nullptr ? calls.makeDirectory : system.makeDirectory,
        calls.currentDirectory != nullptr ? calls.currentDirectory : system.currentDirectory};
    return previous;
}

std::optional<wstring> CurrentDirectory() {
    std::string native;
    if (!Active().currentDirectory(native)) return std::nullopt;
    return Utf16FromNative(native);
}

}  // namespace detail

using detail::NodeKind;

namespace {

NodeKind KindOf(const wstring& path) {
    const std::optional<std::string> native = NativePath(path);
    if (!native) return NodeKind::Missing;
    return detail::ActiveFileSystemCalls().kindOf(native->c_str());
}

/// Makes one directory; an existing directory (made by anyone, at any time) is as good.
bool EnsureDirectory(const std::string& native) {
    const detail::FileSystemCalls& calls = detail::ActiveFileSystemCalls();
    if (calls.makeDirectory(native.c_str()) == 0) return true;
    // Whatever mkdir reported (EEXIST, or EACCES/EROFS for a parent that exists), only what
    // is there now matters.
    return calls.kindOf(native.c_str()) == NodeKind::Directory;
}

}  // namespace

std::optional<std::string> NativePath(const wstring& path) {
    if (path.empty() || path.find(u'\0') != wstring::npos) return std::nullopt;
    const Path::RootKind root = Path::ParseRoot(path).kind;
    if (root != Path::RootKind::None && root != Path::RootKind::Separator) return std::nullopt;
    // Lossless: bytes of a name that aren't UTF-8 come back as they were (Utf16FromNative).
    std::optional<std::string> converted = NativeFromUtf16(path);
    if (!converted) return std::nullopt;
    std::string native = std::move(*converted);
    for (char& byte : native) {
        if (byte == '\\') byte = '/';
    }
    return native;
}

namespace File {

bool Exists(const wstring& path) {
    return KindOf(path) == NodeKind::RegularFile;
}

}  // namespace File

namespace Directory {

bool Exists(const wstring& path) {
    return KindOf(path) == NodeKind::Directory;
}

bool CreateDirectory(const wstring& path) {
    const std::optional<std::string> native = NativePath(path);
    if (!native) return false;
    const detail::FileSystemCalls& calls = detail::ActiveFileSystemCalls();
    if (calls.kindOf(native->c_str()) == NodeKind::Directory) return true;
    // Each prefix that ends just before a run of separators names one directory to ensure;
    // position 0 is skipped so that "/" itself is never made.
    for (std::size_t i = 1; i < native->size(); ++i) {
        if ((*native)[i] != '/' || (*native)[i - 1] == '/') continue;
        if (!EnsureDirectory(native->substr(0, i))) return false;
    }
    if (native->back() != '/' && !EnsureDirectory(*native)) return false;
    return calls.kindOf(native->c_str()) == NodeKind::Directory;
}

}  // namespace Directory
}  // namespace LodeUtil
