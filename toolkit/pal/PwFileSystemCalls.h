// The toolkit's one table of file-system calls. Every file the toolkit reads or writes goes
// through it, so that a test can replace a call, for instance make the third write fail, and
// see that a failed save loses nothing.
//
//   PwFileSystemCalls calls = pwFileSystemCalls();
//   calls.write = [](int fd, const void* data, size_t size) -> ssize_t { ... };
//   PwFileSystemCalls saved = pwReplaceFileSystemCallsForTesting(calls);
//   ...
//   pwReplaceFileSystemCallsForTesting(saved);
#pragma once

#include <sys/types.h>

#include <cstddef>

struct PwFileSystemCalls {
    int (*open)(const char* path, int flags, mode_t mode);
    int (*close)(int fd);
    ssize_t (*read)(int fd, void* buffer, size_t size);
    ssize_t (*write)(int fd, const void* data, size_t size);
    off_t (*lseek)(int fd, off_t offset, int whence);
    int (*fsync)(int fd);
    int (*rename)(const char* from, const char* to);
    int (*unlink)(const char* path);
    /// flock(2): LOCK_SH, LOCK_EX, LOCK_UN, with LOCK_NB.
    int (*flock)(int fd, int operation);
    int (*fstat)(int fd, struct stat* status);
    int (*lstat)(const char* path, struct stat* status);
    ssize_t (*readlink)(const char* path, char* buffer, size_t size);
    int (*fchmod)(int fd, mode_t mode);
    int (*fchown)(int fd, uid_t owner, gid_t group);
};

/// The calls in force; the operating system's own unless a test replaced them.
const PwFileSystemCalls& pwFileSystemCalls();

/// Replaces the calls (a null member means the system's own) and gives back those replaced.
/// Not thread-safe: only for tests, while no other thread uses files.
PwFileSystemCalls pwReplaceFileSystemCallsForTesting(const PwFileSystemCalls& calls);
