// Error reporting and locale choice shared by the client's subcommands.
#include "tools/Output.h"

#include <CLI/CLI.hpp>
#include <iostream>
#include <typeinfo>

#include "lodeutil/AbsoluteFilePath.h"
#include "lodeutil/Utf.h"
#include "platform/LodeExceptions.h"
#include "toolkit/pal/PwLocale.h"
#include "toolkit/rx/PwRxDictionary.h"
#include "toolkit/rx/PwRxDynamicLinker.h"

namespace lodeqdb::cli {
namespace {

std::string ExceptionClassName(const lode::LodeException& error) {
    if (dynamic_cast<const lode::PlotwrightException*>(&error)) return "PlotwrightException";
    if (dynamic_cast<const lode::ReadError*>(&error)) return "ReadError";
    if (dynamic_cast<const lode::NotFound*>(&error)) return "NotFound";
    if (dynamic_cast<const lode::InvalidFormat*>(&error)) return "InvalidFormat";
    if (dynamic_cast<const lode::SecurityError*>(&error)) return "SecurityError";
    if (dynamic_cast<const lode::FileError*>(&error)) return "FileError";
    if (dynamic_cast<const lode::NoAppInfo*>(&error)) return "NoAppInfo";
    if (dynamic_cast<const lode::NoOwnerInfo*>(&error)) return "NoOwnerInfo";
    if (dynamic_cast<const lode::NoPlwCreatorName*>(&error)) return "NoPlwCreatorName";
    if (dynamic_cast<const lode::InkstoneError*>(&error)) return "InkstoneError";
    return "LodeException";
}

}  // namespace

std::string Narrow(const wstring& text) {
    return LodeUtil::Utf8FromUtf16(text);
}

int RunReportingErrors(const std::function<int()>& command) {
    try {
        return command();
    } catch (const lode::PlotwrightException& error) {
        std::cerr << "lodeqdb: PlotwrightException (code " << error.code() << ", status "
                  << static_cast<int>(error.status()) << ")\n";
    } catch (const lode::LodeException& error) {
        std::cerr << "lodeqdb: " << ExceptionClassName(error) << " (code " << error.code() << ")";
        if (!error.message().empty()) std::cerr << ": " << Narrow(error.message());
        std::cerr << '\n';
    } catch (const std::exception& error) {
        std::cerr << "lodeqdb: " << error.what() << '\n';
    }
    return ExitFailure;
}

bool ChooseLocale(const std::string& tag) {
    const PwLocale locale = PwLocale::fromTag(LodeUtil::Utf16FromUtf8(tag));
    if (!locale.isValid()) {
        std::cerr << "lodeqdb: unknown locale \"" << tag << "\" (expected a tag like de-DE)\n";
        return false;
    }
    auto* linker = PwRxDynamicLinker::cast(pwrxSysRegistry()->at(u"DynamicLinker"));
    if (linker == nullptr) {
        std::cerr << "lodeqdb: the toolkit has no dynamic linker\n";
        return false;
    }
    linker->setProductLocale(locale);
    return true;
}

void EndWith(int code) {
    if (code != ExitSuccess) throw CLI::RuntimeError(code);
}

wstring FullPath(const std::string& path) {
    return LodeUtil::AbsoluteFilePath(LodeUtil::Utf16FromUtf8(path)).FullPath();
}

}  // namespace lodeqdb::cli
