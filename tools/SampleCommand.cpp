// `lodeqdb sample DIR`: writes a sample project of drawings and prints its root.
#include <iostream>
#include <string>

#include "tools/Commands.h"
#include "tools/Output.h"
#include "tools/SampleProject.h"

namespace lodeqdb::cli {

void AddSampleCommand(CLI::App& app) {
    auto folder = std::make_shared<std::string>();
    CLI::App* command = app.add_subcommand(
        "sample", "Write a sample project of drawings into DIR; the last line is its root drawing");
    command->add_option("dir", *folder, "Folder to write into (made when missing)")
        ->required()
        ->check([](const std::string& dir) {
            // An empty name would put the project's folders at the file system's root.
            return dir.empty() ? std::string("DIR must not be empty") : std::string();
        });
    command->callback([folder] {
        const int code = RunReportingErrors([&] {
            const std::string root = WriteSampleProject(*folder);
            std::cout << "sample project written to " << *folder << '\n' << root << '\n';
            return ExitSuccess;
        });
        if (code != ExitSuccess) throw CLI::RuntimeError(code);
    });
}

}  // namespace lodeqdb::cli
