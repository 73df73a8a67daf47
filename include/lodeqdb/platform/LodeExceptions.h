// The exceptions that the library throws to its callers, rooted at lode::LodeException.
//
//   try {
//       LodeQDBUtil::ThrowLodeExceptionOnFile(status, path);
//   } catch (const lode::NotFound& error) {
//       show(error.message());            // text 102 in the product's language, with the path
//   } catch (const lode::LodeException& error) {
//       log(error.code());
//   }
//
// Callers tell errors apart by type, code(), status() and message(). what() gives
// "Unknown exception" for every class of the tree: the narrow text carries nothing.
//
//   class                        base                code   message
//   lode::LodeException          std::exception      given  empty
//   lode::PlotwrightException    LodeException       301    empty (adds status())
//   lode::FileError              LodeException       given  the formatted message text
//   lode::ReadError              FileError           101    text 101 with the argument
//   lode::NotFound               FileError           102    text 102 with the argument
//   lode::InvalidFormat          FileError           103    text 103 with the argument
//   lode::SecurityError          FileError           104    text 104 with the argument
//   lode::NoAppInfo              LodeException       201    empty
//   lode::NoOwnerInfo            LodeException       202    empty
//   lode::NoPlwCreatorName       LodeException       203    empty
//   lode::InkstoneError          LodeException       0      empty (a failure all the same)
#pragma once

#include <cstdint>
#include <exception>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

namespace lode {

/// Error numbers carried in LodeException::code().
enum ErrorCode : int32_t {
    InkstoneErrorCode = 0,
    ReadErrorCode = 101,
    NotFoundCode = 102,
    InvalidFormatCode = 103,
    SecurityErrorCode = 104,
    NoAppInfoCode = 201,
    NoOwnerInfoCode = 202,
    NoPlwCreatorNameCode = 203,
    PlotwrightErrorCode = 301,
};

/// The root of the library's exceptions: a code and, for file errors, a message.
/// Copyable; thrown by value and caught by reference.
class LodeException : public std::exception {
  public:
    explicit LodeException(const int32_t& code);
    LodeException(const LodeException&) = default;
    LodeException& operator=(const LodeException&) = default;
    ~LodeException() override;

    /// Always "Unknown exception"; no class below overrides it.
    const char* what() const noexcept final;

    int32_t code() const { return code_; }
    const wstring& message() const { return m_message; }

  protected:
    void setMessage(wstring message) { m_message = std::move(message); }

  private:
    int32_t code_;
    wstring m_message;
};

/// A toolkit status that the caller could not handle; code 301.
class PlotwrightException : public LodeException {
  public:
    explicit PlotwrightException(const Plotwright::ErrorStatus& status);
    Plotwright::ErrorStatus status() const { return status_; }

  private:
    Plotwright::ErrorStatus status_;
};

/// A failure concerning a file. Its message is the text `textNumber` of the product's
/// locale with `argument` (as a rule the file's path) in place of %1.
class FileError : public LodeException {
  public:
    FileError(const int32_t& code, const int32_t& textNumber, const wstring& argument);
};

/// The file could not be read; code 101.
class ReadError : public FileError {
  public:
    explicit ReadError(const wstring& argument);
};

/// The file (or, for a DGN file, the model) does not exist; code 102.
class NotFound : public FileError {
  public:
    explicit NotFound(const wstring& argument);
};

/// The file is not in a format that can be read; code 103.
class InvalidFormat : public FileError {
  public:
    explicit InvalidFormat(const wstring& argument);
};

/// The file is protected and could not be opened; code 104.
class SecurityError : public FileError {
  public:
    explicit SecurityError(const wstring& argument);
};

/// A drawing file without application information; code 201.
class NoAppInfo : public LodeException {
  public:
    NoAppInfo();
};

/// Application information without an owner entry; code 202.
class NoOwnerInfo : public LodeException {
  public:
    NoOwnerInfo();
};

/// Application information without a creator name; code 203.
class NoPlwCreatorName : public LodeException {
  public:
    NoPlwCreatorName();
};

/// The DGN reader module could not be bound. Its code is 0 although it reports a failure.
class InkstoneError : public LodeException {
  public:
    InkstoneError();
};

/// The name of `error`'s class for people and logs: the most derived class of the library's
/// tree ("NotFound", "PlotwrightException", ...), "bad_alloc" for memory running out, else
/// "exception".
const char* ExceptionClassName(const std::exception& error);

}  // namespace lode

/// Raised and caught inside the library when a file's creator kind can't be told; it never
/// reaches a caller. Outside the lode tree on purpose.
class TypeNotFoundException : public std::exception {
  public:
    /// Always "Unknown exception", like the lode tree.
    const char* what() const noexcept override;
};
