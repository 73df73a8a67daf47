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

/// Makes `tag` the product locale for every text loaded after this call. False (with a
/// message on stderr) when the tag names no known locale.
bool ChooseLocale(const std::string& tag);

}  // namespace lodeqdb::cli
