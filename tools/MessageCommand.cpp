// `lodeqdb message`: shows one of the library's message texts.
#include <iostream>
#include <nlohmann/json.hpp>
#include <string>

#include <lodeqdb/lodeutil/Format.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/MessageTexts.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>
#include "tools/Commands.h"
#include "tools/Json.h"
#include "tools/Output.h"

namespace lodeqdb::cli {
namespace {

struct MessageOptions {
    int number = 0;
    std::string argument;
    std::string locale;
    bool json = false;
};

int ShowMessage(const MessageOptions& options) {
    if (!options.locale.empty() && !ChooseLocale(options.locale)) return ExitUsage;
    const wstring format = LodeQDBUtil::LoadMessageText(options.number);
    if (format.empty()) {
        std::cerr << "lodeqdb: no message text numbered " << options.number << '\n';
        return ExitFailure;
    }
    wstring text;
    LodeUtil::FormatMsg1(text, format, Wide(options.argument));
    PwRxDynamicLinker* linker = pwrxDynamicLinker();
    const std::string locale = linker ? Narrow(linker->productLocale().tag()) : std::string();
    if (options.json) {
        const nlohmann::json record = {
            {"number", options.number}, {"locale", locale}, {"text", Narrow(text)}};
        std::cout << DumpJson(record) << '\n';
    } else {
        std::cout << Narrow(text) << '\n';
    }
    return ExitSuccess;
}

}  // namespace

void AddMessageCommand(CLI::App& app) {
    auto options = std::make_shared<MessageOptions>();
    CLI::App* command = app.add_subcommand(
        "message", "Show a message text of the library (101-104 file errors, 105 table title)");
    command->add_option("number", options->number, "Text number")->required();
    command->add_option("argument", options->argument, "Text put in place of %1, as a rule a path");
    command->add_option("--locale", options->locale, "Locale tag such as en-US or de-DE");
    command->add_flag("--json", options->json, "One JSON object on stdout");
    command->callback([options] {
        const int code = RunReportingErrors([&] { return ShowMessage(*options); });
        if (code != ExitSuccess) throw CLI::RuntimeError(code);
    });
}

}  // namespace lodeqdb::cli
