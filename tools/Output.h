// Shared pieces of the client: UTF-8 output, errors on stderr, exit codes.
#pragma once

#include <functional>
#include <string>

#include "lodeutil/WideString.h"

namespace lodeqdb::cli {

/// Exit codes of every subcommand.
enum ExitCode : int {
    ExitSuccess = 0,
    /// The library reported a failure (an exception); details went to stderr.
    ExitFailure = 1,
    /// The command line was wrong.
    ExitUsage = 2,
};

/// UTF-8 text for the terminal.
std::string Narrow(const wstring& text);

/// Runs `command`, turning a library exception into its class, code and message on stderr
/// and ExitFailure.
int RunReportingErrors(const std::function<int()>& command);

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
