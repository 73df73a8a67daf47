// Error reporting and locale choice shared by the client's subcommands.
#include "tools/Output.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <CLI/CLI.hpp>
#include <cerrno>
#include <iostream>
#include <optional>
#include <typeinfo>

#include <lodeqdb/lodeutil/AbsoluteFilePath.h>
#include <lodeqdb/lodeutil/FileSystem.h>
#include <lodeqdb/lodeutil/Format.h>
#include <lodeqdb/lodeutil/Utf.h>
#include <lodeqdb/platform/LodeExceptions.h>
#include <lodeqdb/platform/MessageTexts.h>
#include <lodeqdb/toolkit/pal/PwLocale.h>
#include <lodeqdb/toolkit/rx/PwRxDictionary.h>
#include <lodeqdb/toolkit/rx/PwRxDynamicLinker.h>

namespace lodeqdb::cli {
std::string Narrow(const wstring& text) {
    // A name's bytes as they are on disk, also when they aren't UTF-8.
    if (std::optional<std::string> native = LodeUtil::NativeFromUtf16(text)) return *native;
    return LodeUtil::Utf8FromUtf16(text);
}

wstring Wide(const std::string& argument) {
    return LodeUtil::Utf16FromNative(argument);
}

namespace {

// The message of `error`, with `file` put in when the library made it with an empty name.
wstring MessageNaming(const lode::LodeException& error, const std::optional<std::string>& file) {
    if (!file || dynamic_cast<const lode::FileError*>(&error) == nullptr) return error.message();
    const wstring text = LodeQDBUtil::LoadMessageText(error.code());
    wstring nameless;
    LodeUtil::FormatMsg1(nameless, text, wstring());
    if (error.message() != nameless) return error.message();
    wstring named;
    LodeUtil::FormatMsg1(named, text, Wide(*file));
    return named;
}

int ReportErrors(const std::function<int()>& command, const std::optional<std::string>& file) {
    const std::string prefix = file ? "lodeqdb: " + *file + ": " : "lodeqdb: ";
    try {
        return command();
    } catch (const lode::PlotwrightException& error) {
        std::cerr << prefix << "PlotwrightException (code " << error.code() << ", status "
                  << static_cast<int>(error.status()) << ")\n";
    } catch (const lode::LodeException& error) {
        std::cerr << prefix << lode::ExceptionClassName(error) << " (code " << error.code() << ")";
        const wstring message = MessageNaming(error, file);
        if (!message.empty()) std::cerr << ": " << Narrow(message);
        std::cerr << '\n';
    } catch (const std::exception& error) {
        std::cerr << prefix << error.what() << '\n';
    }
    return ExitFailure;
}

}  // namespace

int RunReportingErrors(const std::function<int()>& command) {
    return ReportErrors(command, std::nullopt);
}

int RunReportingErrors(const std::function<int()>& command, const std::string& file) {
    return ReportErrors(command, file);
}

void RequireReadableFile(const std::string& file) {
    const wstring path = FullPath(file);
    const std::optional<std::string> native = LodeUtil::NativePath(path);
    if (!native) throw lode::NotFound(path);
    // O_NONBLOCK: opening a pipe that has no writer must not wait.
    const int fd = ::open(native->c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
    if (fd < 0) {
        if (errno == EACCES || errno == EPERM) throw lode::SecurityError(path);
        if (errno == ENOENT || errno == ENOTDIR) throw lode::NotFound(path);
        throw lode::ReadError(path);
    }
    struct stat status {};
    const bool regular = ::fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
    ::close(fd);
    if (!regular) throw lode::ReadError(path);
}

bool ChooseLocale(const std::string& tag) {
    const PwLocale locale = PwLocale::fromTag(LodeUtil::Utf16FromUtf8(tag));
    if (!locale.isValid()) {
        std::cerr << "lodeqdb: unknown locale \"" << tag << "\" (expected a tag like de-DE)\n";
        return false;
    }
    PwRxDynamicLinker* linker = pwrxDynamicLinker();
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
    return LodeUtil::AbsoluteFilePath(Wide(path)).FullPath();
}

}  // namespace lodeqdb::cli
