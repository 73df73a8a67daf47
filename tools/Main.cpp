// lodeqdb: the command-line client of the LodeQDB library.
#include <CLI/CLI.hpp>

#include "tools/Commands.h"
#include "tools/Output.h"

int main(int argc, char** argv) {
    CLI::App app{"lodeqdb: what drawings depend on, what they are and what they hold"};
    app.require_subcommand(1);
    lodeqdb::cli::AddMessageCommand(app);
    lodeqdb::cli::AddIdentifyCommands(app);
    lodeqdb::cli::AddSaveCommand(app);
    lodeqdb::cli::AddDependencyCommands(app);
    lodeqdb::cli::AddDgnCommands(app);
    lodeqdb::cli::AddContentsCommands(app);
    lodeqdb::cli::AddRevtableCommand(app);
    lodeqdb::cli::AddRepathCommand(app);
    lodeqdb::cli::AddPackCommand(app);
    lodeqdb::cli::AddSampleCommand(app);
    lodeqdb::cli::AddIndexCommands(app);
    lodeqdb::cli::AddGraphCommand(app);
    try {
        app.parse(argc, argv);
    } catch (const CLI::RuntimeError& failure) {
        return failure.get_exit_code();
    } catch (const CLI::CallForHelp& help) {
        return app.exit(help);
    } catch (const CLI::CallForAllHelp& help) {
        return app.exit(help);
    } catch (const CLI::ParseError& error) {
        app.exit(error);
        return lodeqdb::cli::ExitUsage;
    }
    return lodeqdb::cli::ExitSuccess;
}
