// Plotwright::ErrorStatus, the toolkit's 32-bit status: 0 is success, anything else a failure.
//
//   Plotwright::ErrorStatus status = pwutNewString(u"text", buffer);
//   if (status != Plotwright::StatusOk) return status;
//
// Values not named here may still come from the toolkit and are passed on unexamined.
#pragma once

#include <cstdint>

namespace Plotwright {

enum ErrorStatus : int32_t {
    StatusOk = 0,
    /// A file name with neither the drawing nor the exchange extension.
    StatusUnhandledFileKind = 3,
    /// An argument outside what the operation accepts.
    StatusInvalidInput = 5,
    /// The heap could not supply a block.
    StatusOutOfMemory = 6,
    /// A null database, a null object pointer or an empty smart pointer.
    StatusNullDatabase = 15,
    /// A null object id.
    StatusNullObjectId = 16,
    /// The file does not exist.
    StatusFileNotFound = 76,
    /// The file is not in a format the toolkit can read.
    StatusBadFileFormat = 314,
    /// The reference-opening service could not be had.
    StatusXopenUnavailable = 364,
    /// A file format or extension that cannot be written.
    StatusNoSuchVersion = 434,
    /// A guarded call that did not come back.
    StatusCallNotReturned = 503,
    /// The process has no host application services.
    StatusNoHostServices = 506,

    // The security group: a protected, encrypted or signed file that could not be opened.
    StatusSecurityInitFailed = 1001,
    StatusSecurityDecryptFailed = 1002,
    StatusSecurityEncryptFailed = 1003,
    StatusSecurityBadCertificate = 1101,
    StatusSecurityUntrustedIssuer = 1102,
    StatusSecurityExpiredCertificate = 1103,
    StatusSecurityBadSignature = 1104,
    StatusSecurityPasswordRequired = 1201,
    StatusSecurityWrongPassword = 1202,
    StatusSecurityAccessDenied = 1203,
};

/// True for exactly the ten values of the security group; the neighbouring numbers
/// (1004 to 1100, 1105 to 1200) are not security failures.
constexpr bool IsSecurityStatus(ErrorStatus status) {
    switch (status) {
        case StatusSecurityInitFailed:
        case StatusSecurityDecryptFailed:
        case StatusSecurityEncryptFailed:
        case StatusSecurityBadCertificate:
        case StatusSecurityUntrustedIssuer:
        case StatusSecurityExpiredCertificate:
        case StatusSecurityBadSignature:
        case StatusSecurityPasswordRequired:
        case StatusSecurityWrongPassword:
        case StatusSecurityAccessDenied:
            return true;
        default:
            return false;
    }
}

}  // namespace Plotwright
