// The system's file calls, behind a table that tests may replace.
#include "toolkit/pal/PwFileSystemCalls.h"

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>

namespace {

PwFileSystemCalls SystemCalls() {
    PwFileSystemCalls calls{};
    calls.open = [](const char* path, int flags, mode_t mode) { return ::open(path, flags, mode); };
    calls.close = ::close;
    calls.read = ::read;
    calls.write = ::write;
    calls.lseek = ::lseek;
    calls.fsync = ::fsync;
    calls.rename = std::rename;
    calls.unlink = ::unlink;
    calls.flock = ::flock;
    calls.fstat = [](int fd, struct stat* status) { return ::fstat(fd, status); };
    calls.lstat = [](const char* path, struct stat* status) { return ::lstat(path, status); };
    calls.readlink = ::readlink;
    calls.fchmod = ::fchmod;
    calls.fchown = ::fchown;
    return calls;
}

PwFileSystemCalls& ActiveCalls() {
    static PwFileSystemCalls calls = SystemCalls();
    return calls;
}

template <class Call>
void Fill(Call& target, Call replacement, Call system) {
    target = replacement != nullptr ? replacement : system;
}

}  // namespace

const PwFileSystemCalls& pwFileSystemCalls() {
    return ActiveCalls();
}

PwFileSystemCalls pwReplaceFileSystemCallsForTesting(const PwFileSystemCalls& calls) {
    const PwFileSystemCalls system = SystemCalls();
    PwFileSystemCalls& active = ActiveCalls();
    const PwFileSystemCalls previous = active;
    Fill(active.open, calls.open, system.open);
    Fill(active.close, calls.close, system.close);
    Fill(active.read, calls.read, system.read);
    Fill(active.write, calls.write, system.write);
    Fill(active.lseek, calls.lseek, system.lseek);
    Fill(active.fsync, calls.fsync, system.fsync);
    Fill(active.rename, calls.rename, system.rename);
    Fill(active.unlink, calls.unlink, system.unlink);
    Fill(active.flock, calls.flock, system.flock);
    Fill(active.fstat, calls.fstat, system.fstat);
    Fill(active.lstat, calls.lstat, system.lstat);
    Fill(active.readlink, calls.readlink, system.readlink);
    Fill(active.fchmod, calls.fchmod, system.fchmod);
    Fill(active.fchown, calls.fchown, system.fchown);
    return previous;
}
