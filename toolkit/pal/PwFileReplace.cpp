// Replacing a file's contents atomically: a temporary beside the file that is really written
// (symbolic links followed), given the old file's mode and owner, flushed and renamed over it;
// temporaries of savers that died are removed by the next save of the same file.
//
// Temporaries are named ".<name>.<pid>.<attempt>.tmp" beside the file <name>. While its saver
// runs, a temporary is held under an exclusive lock; a save removes a temporary of its own
// file only when its saver's process is gone and the lock can be taken, so the file of a
// saver that still runs (in this process, another one, or another PID namespace) is never
// removed. A temporary whose PID was reused by a new process stays until that process ends.
#include <dirent.h>
#include <fcntl.h>
#include <signal.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <charconv>
#include <optional>
#include <string>

#include <lodeqdb/lodeutil/FileSystem.h>
#include "toolkit/pal/PwFileDescriptors.h"
#include <lodeqdb/toolkit/pal/PwFileIO.h>
#include "toolkit/pal/PwFileLocks.h"
#include "toolkit/pal/PwFileSystemCalls.h"

namespace Morvane::Plotwright::PAL::FileIO {
namespace {

using ::Plotwright::ErrorStatus;

// Symbolic links are followed this many times at most, as the system does for a path.
constexpr int kMaxLinks = 40;
constexpr char kTemporarySuffix[] = ".tmp";

std::string DirectoryOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    return path.substr(path.find_last_of('/') + 1);
}

// The path a save of `path` really writes: through every symbolic link, to the file it ends
// at, which need not exist yet (a dangling link makes its target). Empty for a loop of links.
std::string WrittenPath(std::string path) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    for (int followed = 0; followed <= kMaxLinks; ++followed) {
        struct stat status {};
        if (calls.lstat(path.c_str(), &status) != 0 || !S_ISLNK(status.st_mode)) return path;
        std::string target(4096, '\0');
        const ssize_t length = calls.readlink(path.c_str(), target.data(), target.size());
        if (length <= 0 || static_cast<size_t>(length) >= target.size()) return std::string();
        target.resize(static_cast<size_t>(length));
        path = target.front() == '/' ? target : DirectoryOf(path) + "/" + target;
    }
    return std::string();
}

// The PID of a temporary of `name`'s saves, from its file name; none for any other name.
std::optional<pid_t> SaverOf(const std::string& entry, const std::string& name) {
    const std::string prefix = "." + name + ".";
    const std::string_view suffix = kTemporarySuffix;
    if (entry.size() <= prefix.size() + suffix.size() || !entry.starts_with(prefix) ||
        !entry.ends_with(suffix))
        return std::nullopt;
    const std::string_view middle =
        std::string_view(entry).substr(prefix.size(), entry.size() - prefix.size() - suffix.size());
    const size_t dot = middle.find('.');
    if (dot == std::string_view::npos) return std::nullopt;
    pid_t pid = 0;
    unsigned attempt = 0;
    const auto [pidEnd, pidError] = std::from_chars(middle.data(), middle.data() + dot, pid);
    const auto [attemptEnd, attemptError] =
        std::from_chars(middle.data() + dot + 1, middle.data() + middle.size(), attempt);
    if (pidError != std::errc() || pidEnd != middle.data() + dot || attemptError != std::errc() ||
        attemptEnd != middle.data() + middle.size() || pid <= 0)
        return std::nullopt;
    return pid;
}

// Removes the temporaries that savers of `path` left when they died before finishing.
void RemoveAbandonedTemporaries(const std::string& path) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    const std::string folder = DirectoryOf(path);
    const std::string name = NameOf(path);
    DIR* listing = ::opendir(folder.c_str());
    if (listing == nullptr) return;
    while (const dirent* entry = ::readdir(listing)) {
        const std::optional<pid_t> saver = SaverOf(entry->d_name, name);
        if (!saver || *saver == ::getpid()) continue;
        if (::kill(*saver, 0) == 0 || errno != ESRCH) continue;  // that saver may still run
        const std::string temporary = folder + "/" + entry->d_name;
        const int fd =
            calls.open(temporary.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC, 0);
        if (fd < 0) continue;
        // A saver holds its temporary's lock until it is done; taking it proves it is gone.
        if (calls.flock(fd, LOCK_EX | LOCK_NB) == 0) calls.unlink(temporary.c_str());
        calls.close(fd);
    }
    ::closedir(listing);
}

// A new file beside `target`, opened for writing and locked as a live saver's; its name goes
// to `name`.
int CreateSibling(const std::string& target, std::string& name) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    const std::string folder = DirectoryOf(target);
    const std::string base = NameOf(target);
    for (int attempt = 0; attempt < 100; ++attempt) {
        name = folder + "/." + base + "." + std::to_string(::getpid()) + "." +
               std::to_string(attempt) + kTemporarySuffix;
        const int fd = calls.open(name.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (fd < 0 && errno == EEXIST) continue;
        if (fd >= 0 && calls.flock(fd, LOCK_EX | LOCK_NB) != 0) {
            const int error = errno;
            calls.close(fd);
            calls.unlink(name.c_str());
            errno = error;
            return -1;
        }
        return fd;
    }
    errno = EEXIST;
    return -1;
}

// Gives the new file what the old one had: its permission bits, and its owner and group as
// far as this process may give them (an owner change needs privileges, a group change
// membership; the mode is kept either way).
void KeepModeAndOwner(int fd, const struct stat& old) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    if (calls.fchown(fd, old.st_uid, old.st_gid) != 0)
        calls.fchown(fd, static_cast<uid_t>(-1), old.st_gid);
    calls.fchmod(fd, old.st_mode & 07777);
}

void SyncFolderOf(const std::string& path) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    const int fd = calls.open(DirectoryOf(path).c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC, 0);
    if (fd < 0) return;
    calls.fsync(fd);
    calls.close(fd);
}

ErrorStatus Abandon(int fd, const std::string& temporary, ErrorStatus status) {
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    calls.unlink(temporary.c_str());
    calls.close(fd);
    return status;
}

}  // namespace

ErrorStatus ReplaceFileAtomically(const char16_t* path, std::string_view bytes) {
    const std::optional<std::string> named =
        path != nullptr ? LodeUtil::NativePath(path) : std::nullopt;
    if (!named) return ::Plotwright::StatusInvalidInput;
    const std::string target = WrittenPath(*named);
    if (target.empty()) return ::Plotwright::StatusFileIOError;
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    struct stat old {};
    const bool replaces = calls.lstat(target.c_str(), &old) == 0;
    // A folder, a pipe or a device is no file whose contents a save replaces.
    if (replaces && !S_ISREG(old.st_mode)) return ::Plotwright::StatusFileIOError;
    RemoveAbandonedTemporaries(target);

    std::string temporary;
    const int fd = CreateSibling(target, temporary);
    if (fd < 0) return pwStatusOfErrno(errno);
    if (replaces) KeepModeAndOwner(fd, old);
    if (!pwWriteAll(fd, bytes) || calls.fsync(fd) != 0)
        return Abandon(fd, temporary, ::Plotwright::StatusFileIOError);
    // A reader that holds the old file under a lock forbids replacing it; a read or a save
    // that holds it only while it works is waited for.
    const int held = calls.open(target.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC, 0);
    if (held >= 0 && pwLockWithinBound(held, LOCK_EX) != 0) {
        calls.close(held);
        return Abandon(fd, temporary, ::Plotwright::StatusFileInUse);
    }
    const bool renamed = calls.rename(temporary.c_str(), target.c_str()) == 0;
    const int renameError = errno;
    if (held >= 0) calls.close(held);
    if (!renamed) {
        return Abandon(fd, temporary,
                       pwStatusOfErrno(renameError) == ::Plotwright::StatusSecurityAccessDenied
                           ? ::Plotwright::StatusSecurityAccessDenied
                           : ::Plotwright::StatusFileIOError);
    }
    calls.close(fd);
    SyncFolderOf(target);
    return ::Plotwright::StatusOk;
}

}  // namespace Morvane::Plotwright::PAL::FileIO
