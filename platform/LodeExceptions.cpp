// The exception classes; file errors take their message from the resource module.
#include <lodeqdb/platform/LodeExceptions.h>

#include <new>

#include <lodeqdb/lodeutil/Format.h>
#include <lodeqdb/platform/MessageTexts.h>

namespace {
// The text every exception of the library gives through what(). The C++ runtime's own
// default differs between platforms, so the library states it once, here.
constexpr char kUnknownException[] = "Unknown exception";
}  // namespace

namespace lode {

LodeException::LodeException(const int32_t& code) : code_(code) {}

LodeException::~LodeException() = default;

const char* LodeException::what() const noexcept {
    return kUnknownException;
}

PlotwrightException::PlotwrightException(const Plotwright::ErrorStatus& status)
    : LodeException(PlotwrightErrorCode), status_(status) {}

FileError::FileError(const int32_t& code, const int32_t& textNumber, const wstring& argument)
    : LodeException(code) {
    wstring message;
    LodeUtil::FormatMsg1(message, LodeQDBUtil::LoadMessageText(textNumber), argument);
    setMessage(std::move(message));
}

ReadError::ReadError(const wstring& argument) : FileError(ReadErrorCode, ReadErrorCode, argument) {}

NotFound::NotFound(const wstring& argument) : FileError(NotFoundCode, NotFoundCode, argument) {}

InvalidFormat::InvalidFormat(const wstring& argument)
    : FileError(InvalidFormatCode, InvalidFormatCode, argument) {}

SecurityError::SecurityError(const wstring& argument)
    : FileError(SecurityErrorCode, SecurityErrorCode, argument) {}

NoAppInfo::NoAppInfo() : LodeException(NoAppInfoCode) {}

NoOwnerInfo::NoOwnerInfo() : LodeException(NoOwnerInfoCode) {}

NoPlwCreatorName::NoPlwCreatorName() : LodeException(NoPlwCreatorNameCode) {}

InkstoneError::InkstoneError() : LodeException(InkstoneErrorCode) {}

const char* ExceptionClassName(const std::exception& error) {
    // Most derived first: a ReadError is a FileError is a LodeException.
    if (dynamic_cast<const PlotwrightException*>(&error)) return "PlotwrightException";
    if (dynamic_cast<const ReadError*>(&error)) return "ReadError";
    if (dynamic_cast<const NotFound*>(&error)) return "NotFound";
    if (dynamic_cast<const InvalidFormat*>(&error)) return "InvalidFormat";
    if (dynamic_cast<const SecurityError*>(&error)) return "SecurityError";
    if (dynamic_cast<const FileError*>(&error)) return "FileError";
    if (dynamic_cast<const NoAppInfo*>(&error)) return "NoAppInfo";
    if (dynamic_cast<const NoOwnerInfo*>(&error)) return "NoOwnerInfo";
    if (dynamic_cast<const NoPlwCreatorName*>(&error)) return "NoPlwCreatorName";
    if (dynamic_cast<const InkstoneError*>(&error)) return "InkstoneError";
    if (dynamic_cast<const LodeException*>(&error)) return "LodeException";
    if (dynamic_cast<const std::bad_alloc*>(&error)) return "bad_alloc";
    return "exception";
}

}  // namespace lode

const char* TypeNotFoundException::what() const noexcept {
    return kUnknownException;
}
