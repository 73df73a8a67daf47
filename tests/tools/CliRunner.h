// Runs the command-line client as users do, capturing its output and exit code.
#pragma once

#include <string>
#include <vector>

namespace lodeqdbclitest {

struct CliResult {
    int exitCode = -1;
    std::string out;
    std::string err;
};

/// Runs `lodeqdb` with `arguments` (each quoted for the shell), files for its output in
/// `scratchFolder`.
CliResult RunCli(const std::vector<std::string>& arguments, const std::string& scratchFolder);

/// RunCli as another user (numeric `uid`, its group the same number), for tests of files that
/// user may not read; the output files are opened by the caller.
CliResult RunCliAsUser(unsigned uid, const std::vector<std::string>& arguments,
                       const std::string& scratchFolder);

/// RunCli, ended after `seconds` (exit code 124 then), for commands that must not wait.
CliResult RunCliWithin(int seconds, const std::vector<std::string>& arguments,
                       const std::string& scratchFolder);

/// The lines of `text`, without their line ends.
std::vector<std::string> Lines(const std::string& text);

/// The rows of a table the client printed under headings: each line cut into its cells where
/// two or more spaces stand between them; the headings are the first row.
std::vector<std::vector<std::string>> TableRows(const std::string& text);

}  // namespace lodeqdbclitest
