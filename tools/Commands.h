// The subcommands of the lodeqdb client; each registers itself on the application.
#pragma once

#include <CLI/CLI.hpp>

namespace lodeqdb::cli {

/// `lodeqdb message NUMBER [ARGUMENT] [--locale TAG] [--json]`: one message text of the
/// library, formatted with its argument, in the chosen or the environment's locale.
void AddMessageCommand(CLI::App& app);

/// `lodeqdb type FILE... [--header | --database] [--json]`, `lodeqdb creator FILE`,
/// `lodeqdb format FILE [--json]`: the kind of application that made drawings, the creator's
/// name, the format generation.
void AddIdentifyCommands(CLI::App& app);

/// `lodeqdb save FILE OUT [--format N | --original | --plx [--format N]] [--json]`: writes a
/// drawing and prints the status; exits 1 on a non-zero status.
void AddSaveCommand(CLI::App& app);

/// `lodeqdb children FILE [--json]`, `lodeqdb tree FILE [--dgn] [--json]`,
/// `lodeqdb parents ROOT TARGET... [--json]`: one record a line (type, reference status, full
/// name), or one JSON array of objects with "name", "type", "typeName", "status", "refId".
/// Files given relative to the working directory are asked about by their full paths.
void AddDependencyCommands(CLI::App& app);

/// `lodeqdb dgn-models FILE` (one model name a line), `lodeqdb dgn-refs FILE [--json]` (the
/// design file's references, printed as the dependency subcommands print records),
/// `lodeqdb dgn-convert FILE OUT [--model NAME] [--json]` (translates, saves, and reports per
/// element type what became which entity class and what was left out).
void AddDgnCommands(CLI::App& app);

/// `lodeqdb layers FILE [--json]`, `lodeqdb layouts FILE [--sort] [--paper-only]
/// [--collection model|paper|all] [--json]`, `lodeqdb plotsettings FILE [--collection ...]
/// [--json]`: a drawing's layers, layouts and named plot settings, one a line, or one JSON
/// array of objects.
void AddContentsCommands(CLI::App& app);

/// `lodeqdb revtable show FILE [--json]`, `lodeqdb revtable update FILE --rows ROWS.json
/// --key NAME,... --columns NAME,... [--template T.plw] [--insert X,Y,SCALE] [--headers NAME,...]
/// [--output OUT] [--json]`, `lodeqdb revtable headers FILE NAME... [--output OUT] [--json]`: a
/// drawing's revision table shown, brought to wanted rows, or given its column names.
void AddRevtableCommand(CLI::App& app);

/// `lodeqdb repath FILE... (--from OLD --to NEW | --relative | both) [--dry-run] [--json]`:
/// rewrites the stored paths of drawings and saves each changed one in its own generation;
/// one block per drawing (its changes, whether it was written), or one JSON array. Exits 1
/// when any drawing couldn't be read or saved.
void AddRepathCommand(CLI::App& app);

/// `lodeqdb pack ROOT --output OUT.zip [--json]`: ROOT and everything it depends on in one zip
/// archive with a manifest.json; prints the files and what was missing, or one JSON object.
void AddPackCommand(CLI::App& app);

/// `lodeqdb sample DIR [--drawings N]`: a sample project of drawings, its root's full path on
/// the last line; with --drawings, a large folder of N drawings (tools/samplefolder).
void AddSampleCommand(CLI::App& app);

/// `lodeqdb index DIR [--db FILE] [--jobs N] [--quiet] [--json] [--follow-links]`,
/// `lodeqdb where-used FILE [--direct] [--db FILE] [--json]`, `lodeqdb broken [--db FILE]
/// [--json]`, `lodeqdb stats [--db FILE] [--json]`: the persistent index of a folder of
/// drawings (the library LodeQDBIndex) and the questions asked of it.
void AddIndexCommands(CLI::App& app);

/// `lodeqdb graph ROOT [--db FILE] [--format dot|svg|json] [--output FILE]`: the dependency
/// graph below a drawing.
void AddGraphCommand(CLI::App& app);

}  // namespace lodeqdb::cli
