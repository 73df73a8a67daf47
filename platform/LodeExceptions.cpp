// The exception classes; file errors take their message from the resource module.
#include "platform/LodeExceptions.h"

#include "lodeutil/Format.h"
#include "platform/MessageTexts.h"

namespace {
// The text every exception of the library gives through what(). The C++ runtime's own
// default differs between platforms, so the library states it once, here.
constexpr char kUnknownException[] = "Unknown exception";
}  // namespace

namespace lode {

LodeException::LodeException(const int32_t& code) : m_code(code) {}

LodeException::~LodeException() = default;

const char* LodeException::what() const noexcept {
    return kUnknownException;
}

PlotwrightException::PlotwrightException(const Plotwright::ErrorStatus& status)
    : LodeException(PlotwrightErrorCode), m_status(status) {}

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

}  // namespace lode

const char* TypeNotFoundException::what() const noexcept {
    return kUnknownException;
}
