// Statuses of failed file calls, and whole writes.
#include "toolkit/pal/PwFileDescriptors.h"

#include <cerrno>

#include "toolkit/pal/PwFileSystemCalls.h"

::Plotwright::ErrorStatus pwStatusOfErrno(int error) {
    switch (error) {
        case ENOENT:
        case ENOTDIR:
            return ::Plotwright::StatusFileNotFound;
        case EACCES:
        case EPERM:
        case EWOULDBLOCK:
            return ::Plotwright::StatusSecurityAccessDenied;
        case ENAMETOOLONG:
            return ::Plotwright::StatusInvalidInput;
        default:
            return ::Plotwright::StatusFileIOError;
    }
}

bool pwWriteAll(int fd, std::string_view bytes) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    while (!bytes.empty()) {
        const ssize_t written = calls.write(fd, bytes.data(), bytes.size());
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) return false;
        bytes.remove_prefix(static_cast<size_t>(written));
    }
    return true;
}
