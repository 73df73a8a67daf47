// Files over the operating system, through the replaceable table of file-system calls.
#include <lodeqdb/toolkit/pal/PwFileIO.h>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <memory>
#include <optional>

#include <lodeqdb/lodeutil/FileSystem.h>
#include "toolkit/pal/PwFileDescriptors.h"
#include "toolkit/pal/PwFileLocks.h"
#include "toolkit/pal/PwFileSystemCalls.h"

namespace Morvane::Plotwright::PAL::FileIO {
namespace {

using ::Plotwright::ErrorStatus;

int OpenFlags(FileOpenMode openMode, FileCreationMode creationMode) {
    int flags = O_CLOEXEC;
    if (openMode == kOpenForRead)
        flags |= O_RDONLY;
    else if (openMode == kOpenForWrite)
        flags |= O_WRONLY;
    else
        flags |= O_RDWR;
    if (creationMode == kCreateAlways) flags |= O_CREAT | O_TRUNC;
    if (creationMode == kCreateNew) flags |= O_CREAT | O_EXCL;
    return flags;
}

std::optional<int> LockOperation(FileShareMode shareMode) {
    if (shareMode == kShareAll) return std::nullopt;
    return shareMode == kShareExclusive ? LOCK_EX : LOCK_SH;
}

}  // namespace

struct File::Handle {
    int fd = -1;
    ~Handle() {
        // Closing the descriptor also releases its lock.
        if (fd >= 0) pwFileSystemCalls().close(fd);
    }
};

File::File() = default;

File File::nullFile() {
    return File();
}

File File::openFile(const char16_t* path, FileCharType charType, FileOpenMode openMode,
                    FileShareMode shareMode, FileCreationMode creationMode) {
    File file;
    const std::optional<std::string> native =
        path != nullptr ? LodeUtil::NativePath(path) : std::nullopt;
    if (charType != kWideChars || !native) return file;
    const PwFileSystemCalls& calls = pwFileSystemCalls();
    auto handle = std::make_shared<Handle>();
    // O_NONBLOCK: opening a pipe without a writer, or some devices, would wait for ever. On a
    // regular file, the only kind taken, it changes nothing.
    handle->fd = calls.open(native->c_str(), OpenFlags(openMode, creationMode) | O_NONBLOCK, 0666);
    if (handle->fd < 0) {
        file.m_status = pwStatusOfErrno(errno);
        return file;
    }
    struct stat status {};
    if (calls.fstat(handle->fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        file.m_status = ::Plotwright::StatusFileIOError;
        return file;
    }
    if (const std::optional<int> lock = LockOperation(shareMode)) {
        if (pwLockWithinBound(handle->fd, *lock) != 0) {
            file.m_status = pwStatusOfErrno(errno);
            return file;
        }
    }
    file.m_handle = std::move(handle);
    file.m_status = ::Plotwright::StatusOk;
    return file;
}

bool File::readFromFile(void* destination, uint32_t maxCount, uint32_t& readCount) const {
    readCount = 0;
    if (!m_handle || (destination == nullptr && maxCount > 0)) return false;
    ssize_t got;
    do {
        got = pwFileSystemCalls().read(m_handle->fd, destination, maxCount);
    } while (got < 0 && errno == EINTR);
    if (got < 0) return false;
    readCount = static_cast<uint32_t>(got);
    return true;
}

bool File::writeToFile(const void* source, uint32_t count) const {
    if (!m_handle || (source == nullptr && count > 0)) return false;
    return pwWriteAll(m_handle->fd, std::string_view(static_cast<const char*>(source), count));
}

bool File::seek(int64_t offset, FileSeekAnchor anchor) const {
    if (!m_handle) return false;
    const int whence = anchor == kSeekFromStart ? SEEK_SET
                       : anchor == kSeekFromEnd ? SEEK_END
                                                : SEEK_CUR;
    return pwFileSystemCalls().lseek(m_handle->fd, static_cast<off_t>(offset), whence) >= 0;
}

int64_t File::size() const {
    struct stat status {};
    if (!m_handle || pwFileSystemCalls().fstat(m_handle->fd, &status) != 0) return -1;
    return static_cast<int64_t>(status.st_size);
}

bool File::readAt(uint64_t offset, void* destination, size_t count) const {
    if (!m_handle || (destination == nullptr && count > 0)) return false;
    auto* next = static_cast<char*>(destination);
    while (count > 0) {
        const ssize_t got = ::pread(m_handle->fd, next, count, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        next += got;
        offset += static_cast<uint64_t>(got);
        count -= static_cast<size_t>(got);
    }
    return true;
}

bool File::identity(Identity& identity) const {
    struct stat status {};
    if (!m_handle || pwFileSystemCalls().fstat(m_handle->fd, &status) != 0) return false;
    identity.device = static_cast<uint64_t>(status.st_dev);
    identity.inode = static_cast<uint64_t>(status.st_ino);
    identity.size = static_cast<int64_t>(status.st_size);
    identity.modifiedNanoseconds =
        static_cast<int64_t>(status.st_mtim.tv_sec) * 1000000000 + status.st_mtim.tv_nsec;
    return true;
}

bool File::flush() const {
    return m_handle && pwFileSystemCalls().fsync(m_handle->fd) == 0;
}

namespace {

// Reads from where `file` stands into `content` from position `filled` on, until it is full
// or the file ends; `content` keeps what was read.
ErrorStatus ReadInto(const File& file, std::string& content, size_t filled = 0) {
    while (filled < content.size()) {
        uint32_t got = 0;
        const size_t wanted = std::min<size_t>(content.size() - filled, uint32_t{1} << 30);
        if (!file.readFromFile(content.data() + filled, static_cast<uint32_t>(wanted), got)) {
            return ::Plotwright::StatusFileIOError;
        }
        if (got == 0) break;  // the file ended, or shrank while being read
        filled += got;
    }
    content.resize(filled);
    return ::Plotwright::StatusOk;
}

}  // namespace

ErrorStatus ReadWholeFile(const char16_t* path, FileShareMode shareMode, std::string& bytes,
                          File* keepOpen, uint64_t maxSize) {
    return ReadWholeFileIfItStartsWell(path, shareMode, 0, {}, bytes, keepOpen, maxSize);
}

ErrorStatus ReadWholeFileIfItStartsWell(const char16_t* path, FileShareMode shareMode,
                                        size_t startBytes, const StartCheck& startsWell,
                                        std::string& bytes, File* keepOpen, uint64_t maxSize) {
    File file = File::openFile(path, kWideChars, kOpenForRead, shareMode, kOpenExisting);
    if (file.openStatus() != ::Plotwright::StatusOk) return file.openStatus();
    const int64_t size = file.size();
    if (size < 0) return ::Plotwright::StatusFileIOError;
    if (static_cast<uint64_t>(size) > maxSize) return ::Plotwright::StatusBadFileFormat;
    // The start is read and judged first, so that a large file that isn't what the caller
    // reads costs a few bytes, not its size.
    std::string start(std::min<uint64_t>(startBytes, static_cast<uint64_t>(size)), '\0');
    if (auto status = ReadInto(file, start)) return status;
    if (startsWell && !startsWell(start, static_cast<uint64_t>(size)))
        return ::Plotwright::StatusBadFileFormat;
    std::string content = std::move(start);
    const size_t filled = content.size();
    content.resize(static_cast<size_t>(size));
    if (auto status = ReadInto(file, content, filled)) return status;
    bytes.swap(content);
    if (keepOpen != nullptr) *keepOpen = file;
    return ::Plotwright::StatusOk;
}

ErrorStatus ReadFileStart(const char16_t* path, size_t maxBytes, std::string& bytes,
                          File* keepOpen) {
    // Only regular files: a folder has no bytes, and opening a pipe or a device could wait
    // for ever.
    if (path == nullptr || !LodeUtil::File::Exists(path)) return ::Plotwright::StatusFileNotFound;
    File file = File::openFile(path, kWideChars, kOpenForRead, kShareRead, kOpenExisting);
    if (file.openStatus() != ::Plotwright::StatusOk) return file.openStatus();
    std::string content(maxBytes, '\0');
    if (auto status = ReadInto(file, content)) return status;
    bytes.swap(content);
    if (keepOpen != nullptr) *keepOpen = file;
    return ::Plotwright::StatusOk;
}

std::string FileIdentity(const char16_t* path) {
    const std::optional<std::string> native = path ? LodeUtil::NativePath(path) : std::nullopt;
    if (!native) return std::string();
    std::unique_ptr<char, decltype(&std::free)> resolved(::realpath(native->c_str(), nullptr),
                                                         &std::free);
    return resolved ? std::string(resolved.get()) : std::string();
}

bool SameFile(const char16_t* a, const char16_t* b) {
    const std::optional<std::string> first = a ? LodeUtil::NativePath(a) : std::nullopt;
    const std::optional<std::string> second = b ? LodeUtil::NativePath(b) : std::nullopt;
    struct stat one {
    }, two{};
    return first && second && ::stat(first->c_str(), &one) == 0 &&
           ::stat(second->c_str(), &two) == 0 && one.st_dev == two.st_dev &&
           one.st_ino == two.st_ino;
}

}  // namespace Morvane::Plotwright::PAL::FileIO
