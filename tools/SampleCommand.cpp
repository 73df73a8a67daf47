// `lodeqdb sample DIR [--drawings N]`: writes a sample project of drawings and prints its
// root, or a large folder of N drawings in the shape of a real store.
#include <iostream>
#include <string>

#include "tools/Commands.h"
#include "tools/Output.h"
#include "tools/SampleProject.h"
#include "tools/samplefolder/SampleFolder.h"

namespace lodeqdb::cli {

void AddSampleCommand(CLI::App& app) {
    auto folder = std::make_shared<std::string>();
    auto drawings = std::make_shared<size_t>(0);
    CLI::App* command = app.add_subcommand(
        "sample", "Write a sample project of drawings into DIR; the last line is its root drawing");
    command->add_option("dir", *folder, "Folder to write into (made when missing)")
        ->required()
        ->check([](const std::string& dir) {
            // An empty name would put the project's folders at the file system's root.
            return dir.empty() ? std::string("DIR must not be empty") : std::string();
        });
    command
        ->add_option("--drawings", *drawings,
                     "Write a folder of N drawings instead, in projects with shared title blocks "
                     "and libraries, images, PDFs, design files, missing and cyclic references")
        ->check(CLI::Range(size_t(1), size_t(10000000)));
    command->callback([folder, drawings] {
        const int code = RunReportingErrors([&] {
            if (*drawings != 0) {
                const samples::SampleFolderCounts counts =
                    samples::WriteSampleFolder(*folder, *drawings);
                std::cout << "sample folder written to " << *folder << ": " << counts.drawings
                          << " drawings, " << counts.images << " images, " << counts.pdfs
                          << " PDFs, " << counts.designFiles << " design files, "
                          << counts.missingReferences << " missing references, "
                          << counts.cycles << " cycles\n";
                return ExitSuccess;
            }
            const std::string root = WriteSampleProject(*folder);
            std::cout << "sample project written to " << *folder << '\n' << root << '\n';
            return ExitSuccess;
        });
        if (code != ExitSuccess) throw CLI::RuntimeError(code);
    });
}

}  // namespace lodeqdb::cli
