// The operating-system boundary for files: native path text, existence tests, directory making.
//
// Defines LodeUtil::NativePath, LodeUtil::File::Exists, LodeUtil::Directory::{Exists,
// CreateDirectory} and, for tests, the replaceable system calls in LodeUtil::detail.
//
//   if (!Directory::CreateDirectory(u"/tmp/out\\cache")) return false;  // mkdir -p
//   if (File::Exists(u"/tmp/out\\cache\\host.plw")) { /* ... */ }
//   std::optional<std::string> native = NativePath(u"sub\\x.plw");     // "sub/x.plw"
//
// Every file-system call of this library goes through detail::FileSystemCalls, so that a test
// can stand in for stat, mkdir or getcwd. None of these functions throws for a bad path, a
// missing file or a failing call; they answer false (or nullopt) instead.
#pragma once

#include <optional>
#include <string>

#include <lodeqdb/lodeutil/WideString.h>

namespace LodeUtil {

/// The UTF-8 text handed to the operating system for `path`, with every '\' turned into '/'
/// (a stored `sub\x.plw` is `sub/x.plw` here, so no file name of ours contains a backslash).
/// Relative paths stay relative, to the process's current directory.
/// std::nullopt for text that cannot name a file on this system: an empty path, a path with a
/// drive (`C:\a`, `C:a`), a UNC path (`\\srv\share`, `//srv/share`), a `\\?\` or `\\.\` device
/// path, text containing U+0000, and ill-formed UTF-16 (a lone surrogate has no UTF-8 form;
/// replacing it would name a different file).
std::optional<std::string> NativePath(const wstring& path);

namespace File {

/// True when `path` names an existing regular file, following symbolic links. False for a
/// directory, a device or socket, a missing file, a file that cannot be examined, and any
/// path NativePath rejects.
bool Exists(const wstring& path);

}  // namespace File

namespace Directory {

/// True when `path` names an existing directory, following symbolic links; false otherwise,
/// including for every path NativePath rejects.
bool Exists(const wstring& path);

/// Makes the directory `path` and every missing directory above it (as `mkdir -p`, mode 0777
/// less the umask). True when `path` is a directory afterwards, whether or not this call made
/// it; false when it is not: a component is a file, permission is denied, a mkdir failed, or
/// NativePath rejects `path`. Directories made before a failure are left in place.
bool CreateDirectory(const wstring& path);

}  // namespace Directory

namespace detail {

/// What a path names, as far as the functions above care.
enum class NodeKind { Missing, RegularFile, Directory, Other };

/// The system calls behind this library's file functions. Each takes UTF-8 native text.
struct FileSystemCalls {
    /// What `path` names after following symbolic links; Missing when it cannot be examined.
    NodeKind (*kindOf)(const char* path);
    /// Makes one directory with mode 0777; 0 on success, otherwise an errno value.
    int (*makeDirectory)(const char* path);
    /// Stores the process's current directory in `out`; false when it cannot be had.
    bool (*currentDirectory)(std::string& out);
};

/// The calls that go straight to the operating system (stat, mkdir, getcwd).
FileSystemCalls SystemFileSystemCalls();

/// The calls in use now.
const FileSystemCalls& ActiveFileSystemCalls();

/// For tests only: makes `calls` the calls in use and returns those it replaces. A null
/// member means the system call. Not safe while another thread uses the functions above.
FileSystemCalls ReplaceFileSystemCallsForTesting(const FileSystemCalls& calls);

/// The process's current directory as UTF-16 (invalid UTF-8 becomes U+FFFD), or nullopt when
/// the operating system cannot give it (it was removed, or is unreachable).
std::optional<wstring> CurrentDirectory();

}  // namespace detail
}  // namespace LodeUtil
