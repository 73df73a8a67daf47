// Shared pieces of the client: UTF-8 output, errors on stderr, exit codes.
#pragma once

#include <functional>
#include <string>

#include <lodeqdb/lodeutil/WideString.h>

namespace lodeqdb::cli {

/// Exit codes of every subcommand.
enum ExitCode : int {
    ExitSuccess = 0,
    /// The library reported a failure (an exception); details went to stderr.
    ExitFailure = 1,
    /// The command line was wrong.
    ExitUsage = 2,
    /// A walk (tree, parents) stopped early: what it found was printed, stderr says why.
    ExitIncomplete = 3,
};

/// Text for the terminal: UTF-8, and a file name's own bytes where they aren't UTF-8.
std::string Narrow(const wstring& text);
/// A command-line argument (a file name, as a rule) as the library takes it: its bytes
/// carried losslessly, also when they aren't UTF-8 (LodeUtil::Utf16FromNative).
wstring Wide(const std::string& argument);

/// Runs `command`, turning a library exception into its class, code and message on stderr
/// and ExitFailure.
int RunReportingErrors(const std::function<int()>& command);
/// The same for a command about `file`: the line names the file, and a file error whose
/// message was made without a name (the library leaves the name out where a file was read
/// under another name than the caller's) gets its message again with `file` in it.
int RunReportingErrors(const std::function<int()>& command, const std::string& file);
/// Throws the file error a reader would give when `file` can't be opened for reading:
/// lode::NotFound when it isn't there, lode::SecurityError when access is refused,
/// lode::ReadError when it isn't a regular file (a folder, a pipe, a device). For commands
/// whose library call answers such a file with something less precise.
void RequireReadableFile(const std::string& file);

/// Ends a subcommand's callback with `code` unless it is ExitSuccess (CLI11 then exits with it).
void EndWith(int code);

/// The full path of a file named on the command line: the library reports names relative to
/// the file asked about, so the client asks with full paths, and what it prints can be used
/// from anywhere.
wstring FullPath(const std::string& path);

/// Makes `tag` the product locale for every text loaded after this call. False (with a
/// message on stderr) when the tag names no known locale.
bool ChooseLocale(const std::string& tag);

}  // namespace lodeqdb::cli
