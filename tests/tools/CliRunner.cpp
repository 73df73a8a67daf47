#include "CliRunner.h"

#include <sys/wait.h>

#include <cstdlib>
#include <fstream>
#include <sstream>

namespace lodeqdbclitest {

namespace {

std::string Quoted(const std::string& argument) {
    std::string quoted = "'";
    for (char c : argument) quoted += c == '\'' ? std::string("'\\''") : std::string(1, c);
    return quoted + "'";
}

std::string Slurp(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream all;
    all << in.rdbuf();
    return all.str();
}

}  // namespace

namespace {

CliResult RunCommand(std::string command, const std::vector<std::string>& arguments,
                     const std::string& scratchFolder) {
    command += Quoted(LODEQDB_CLI);
    for (const std::string& argument : arguments) {
        command += ' ';
        command += Quoted(argument);
    }
    const std::string out = scratchFolder + "/cli.out";
    const std::string err = scratchFolder + "/cli.err";
    command += " >";
    command += Quoted(out);
    command += " 2>";
    command += Quoted(err);
    const int status = std::system(command.c_str());
    CliResult result;
    result.exitCode = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    result.out = Slurp(out);
    result.err = Slurp(err);
    return result;
}

}  // namespace

CliResult RunCli(const std::vector<std::string>& arguments, const std::string& scratchFolder) {
    return RunCommand("", arguments, scratchFolder);
}

CliResult RunCliWithin(int seconds, const std::vector<std::string>& arguments,
                       const std::string& scratchFolder) {
    return RunCommand("timeout -s KILL " + std::to_string(seconds) + " ", arguments, scratchFolder);
}

CliResult RunCliAsUser(unsigned uid, const std::vector<std::string>& arguments,
                       const std::string& scratchFolder) {
    const std::string id = std::to_string(uid);
    return RunCommand("setpriv --reuid=" + id + " --regid=" + id + " --clear-groups ", arguments,
                      scratchFolder);
}

std::vector<std::string> Lines(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream in(text);
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::vector<std::vector<std::string>> TableRows(const std::string& text) {
    std::vector<std::vector<std::string>> rows;
    for (const std::string& line : Lines(text)) {
        std::vector<std::string> cells;
        size_t at = 0;
        while (at < line.size()) {
            size_t gap = line.find("  ", at);
            if (gap == std::string::npos) gap = line.size();
            cells.push_back(line.substr(at, gap - at));
            at = line.find_first_not_of(' ', gap);
            if (at == std::string::npos) break;
        }
        rows.push_back(std::move(cells));
    }
    return rows;
}

}  // namespace lodeqdbclitest
