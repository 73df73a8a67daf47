// The staging folder of a pack, and copying files into it with their digests.
#include "relocate/StagingFolder.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <stdexcept>
#include <vector>

#include "relocate/Sha256.h"

namespace LodeQDBRelocate::detail {
namespace {

std::runtime_error SystemError(const std::string& what, const std::string& path) {
    return std::runtime_error(what + " " + path + ": " + std::strerror(errno));
}

// Closes a descriptor on every way out.
struct Descriptor {
    int fd = -1;
    ~Descriptor() {
        if (fd >= 0) ::close(fd);
    }
};

std::string FolderOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    if (slash == std::string::npos) return ".";
    return slash == 0 ? "/" : path.substr(0, slash);
}

std::string NameOf(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    return slash == std::string::npos ? path : path.substr(slash + 1);
}

// Reads all of `fd` in pieces, giving each to `use`.
template <class Use>
uint64_t ReadAll(int fd, const std::string& path, Use use) {
    std::vector<char> buffer(1 << 20);
    uint64_t total = 0;
    for (;;) {
        const ssize_t got = ::read(fd, buffer.data(), buffer.size());
        if (got < 0) {
            if (errno == EINTR) continue;
            throw SystemError("can't read", path);
        }
        if (got == 0) return total;
        use(buffer.data(), static_cast<size_t>(got));
        total += static_cast<uint64_t>(got);
    }
}

int OpenForReading(const std::string& path) {
    // O_NONBLOCK: a pipe put where a file was expected must not make the pack wait.
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) throw SystemError("can't read", path);
    struct stat status {};
    if (::fstat(fd, &status) != 0 || !S_ISREG(status.st_mode)) {
        ::close(fd);
        errno = EINVAL;
        throw SystemError("not a regular file:", path);
    }
    return fd;
}

}  // namespace

StagingFolder::StagingFolder(const std::string& nativeOutput) {
    std::string pattern = FolderOf(nativeOutput) + "/." + NameOf(nativeOutput) + ".staging-XXXXXX";
    if (::mkdtemp(pattern.data()) == nullptr) throw SystemError("can't make", pattern);
    path_ = pattern;
}

StagingFolder::~StagingFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string StagingFolder::SubfolderFor(size_t index) const {
    const std::string folder = path_ + "/" + std::to_string(index);
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST) throw SystemError("can't make", folder);
    return folder;
}

Fingerprint CopyHashing(const std::string& nativeSource, const std::string& nativeTarget) {
    Descriptor in{OpenForReading(nativeSource)};
    Descriptor out{::open(nativeTarget.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)};
    if (out.fd < 0) throw SystemError("can't write", nativeTarget);
    Sha256 digest;
    Fingerprint print;
    print.size = ReadAll(in.fd, nativeSource, [&](const char* data, size_t size) {
        digest.Update(data, size);
        while (size > 0) {
            const ssize_t put = ::write(out.fd, data, size);
            if (put < 0) {
                if (errno == EINTR) continue;
                throw SystemError("can't write", nativeTarget);
            }
            data += put;
            size -= static_cast<size_t>(put);
        }
    });
    print.sha256 = digest.HexDigest();
    return print;
}

Fingerprint HashFile(const std::string& nativePath) {
    Descriptor in{OpenForReading(nativePath)};
    Sha256 digest;
    Fingerprint print;
    print.size =
        ReadAll(in.fd, nativePath, [&](const char* data, size_t size) { digest.Update(data, size); });
    print.sha256 = digest.HexDigest();
    return print;
}

}  // namespace LodeQDBRelocate::detail
