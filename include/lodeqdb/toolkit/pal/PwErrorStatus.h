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

    // Objects, their opening and their containers.
    /// The operation needs the object open for read (or write), and it isn't.
    StatusNotOpenForRead = 20,
    /// The operation needs the object open for write, and it isn't.
    StatusNotOpenForWrite = 21,
    /// Refused: the object is open for read by another holder (a write open, or an upgrade
    /// while other readers hold it).
    StatusWasOpenForRead = 22,
    /// Refused: the object is open for write.
    StatusWasOpenForWrite = 23,
    /// The object is erased and erased objects were not asked for.
    StatusWasErased = 24,
    /// The object is not of the class asked for.
    StatusNotThatKindOfClass = 25,
    /// No entry has that name or key.
    StatusKeyNotFound = 26,
    /// An entry of that name or key exists already.
    StatusDuplicateKey = 27,
    /// The name or key is not allowed (empty, or holding a character names may not hold).
    StatusInvalidKey = 28,
    /// The object is not in a database.
    StatusNotInDatabase = 29,
    /// The object is in a database already.
    StatusAlreadyInDatabase = 30,
    /// The id or object belongs to another database.
    StatusWrongDatabase = 31,
    /// The iterator stands at its end.
    StatusIteratorDone = 32,
    /// The operation does not apply to this object.
    StatusNotApplicable = 33,
    /// The data a filer holds doesn't match what is read from it (or has run out).
    StatusFilerError = 35,
    /// No transaction is in progress.
    StatusNoActiveTransaction = 36,
    /// No module of that name could be loaded.
    StatusModuleNotFound = 37,
    /// No module has registered that service, or it lacks that function.
    StatusServiceNotFound = 38,
    /// The object id does not name a live object (its database is gone or never held it).
    StatusInvalidObjectId = 39,
    /// Another holder has the file open in a way that forbids this use (a save over a file
    /// that is being read under a lock).
    StatusFileInUse = 40,
    /// The operating system failed a read, write, flush or rename.
    StatusFileIOError = 41,
    /// A row, column or other position outside the object's range.
    StatusInvalidIndex = 42,
    /// The cell's state forbids the change (its content or format is locked).
    StatusCellLocked = 43,
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
