// The toolkit's files: Morvane::Plotwright::PAL::FileIO::File, a small value that stands for
// an open file or for none, and the atomic replacement of a file's contents.
//
//   using namespace Morvane::Plotwright::PAL::FileIO;
//   File file = File::openFile(u"/srv/a.plw", kWideChars, kOpenForRead, kShareRead,
//                              kOpenExisting);
//   if (file.openStatus() == ::Plotwright::StatusOk) {
//       uint32_t got = 0;
//       file.readFromFile(buffer, sizeof buffer, got);
//   }                                           // the last copy closes the file
//
// Sharing between processes rests on advisory locks (flock), which every reader and writer of
// the toolkit takes: kShareExclusive holds an exclusive lock, kShareRead a shared one, and
// kShareAll none. An open whose lock another process's lock forbids waits for it a short,
// bounded time (kPwLockWaitMilliseconds, two seconds: a read or a save holds its lock for
// that long at most) and then fails with StatusSecurityAccessDenied. Only regular files are
// opened: a folder, a pipe or a device gives StatusFileIOError, and never makes the open
// wait. Paths are UTF-16; a backslash counts as '/'.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include <lodeqdb/lodeutil/WideString.h>
#include <lodeqdb/toolkit/pal/PwErrorStatus.h>

namespace Morvane::Plotwright::PAL::FileIO {

/// How the name is given: only wide names (UTF-16) are taken.
enum FileCharType { kNarrowChars = 0, kWideChars = 1 };
enum FileOpenMode { kOpenForRead = 1, kOpenForWrite = 2, kOpenForReadWrite = 3 };
/// What others may do while this file is open: nothing (an exclusive lock), read (a shared
/// lock; value 1 is taken alike), or anything (no lock).
enum FileShareMode { kShareExclusive = 0, kShareReadOnly = 1, kShareRead = 2, kShareAll = 3 };
enum FileCreationMode { kOpenExisting = 0, kCreateAlways = 1, kCreateNew = 2 };
enum FileSeekAnchor { kSeekFromStart = 0, kSeekFromCurrent = 1, kSeekFromEnd = 2 };

class File {
  public:
    /// The null file.
    File();

    /// Opens `path`. Failure shows in openStatus(): StatusFileNotFound for a missing file
    /// (kOpenExisting), StatusSecurityAccessDenied when permission or another process's lock
    /// forbids it, StatusInvalidInput for a name no file can have here, StatusFileIOError
    /// for anything but a regular file, and otherwise.
    static File openFile(const char16_t* path, FileCharType charType, FileOpenMode openMode,
                         FileShareMode shareMode, FileCreationMode creationMode);
    /// A file that stands for no file: reads and writes on it fail.
    static File nullFile();

    /// StatusOk while the object stands for an open file.
    ::Plotwright::ErrorStatus openStatus() const { return m_status; }

    /// Reads up to `maxCount` bytes from the current position; `readCount` says how many.
    /// False on a failure (the count is then 0); the end of the file gives true and 0.
    bool readFromFile(void* destination, uint32_t maxCount, uint32_t& readCount) const;
    /// Writes all `count` bytes at the current position; false when not all could be.
    bool writeToFile(const void* source, uint32_t count) const;
    /// Sets the position; false for a null file or a refused position.
    bool seek(int64_t offset, FileSeekAnchor anchor) const;
    /// The file's size in bytes; -1 for a null file.
    int64_t size() const;
    /// Reads exactly `count` bytes at `offset`, leaving the position as it was; false when
    /// they aren't all there or the read fails.
    bool readAt(uint64_t offset, void* destination, size_t count) const;
    /// What tells one state of a file from another: its device and inode, its size and the
    /// time it was last written, to the nanosecond.
    struct Identity {
        uint64_t device = 0;
        uint64_t inode = 0;
        int64_t size = -1;
        int64_t modifiedNanoseconds = 0;
        bool operator==(const Identity&) const = default;
    };
    /// The identity of the open file; false for a null file or a failed fstat.
    bool identity(Identity& identity) const;
    /// Forces what was written to the disk.
    bool flush() const;

  private:
    struct Handle;
    std::shared_ptr<Handle> m_handle;
    ::Plotwright::ErrorStatus m_status = ::Plotwright::StatusInvalidInput;
};

/// Reads the whole file at `path` into `bytes` under `shareMode`. With `keepOpen` the file
/// stays open there (and so does its lock) until that File goes. Statuses as for openFile,
/// and StatusFileIOError for a failed read. Files larger than `maxSize` are refused with
/// StatusBadFileFormat before anything is read.
::Plotwright::ErrorStatus ReadWholeFile(const char16_t* path, FileShareMode shareMode,
                                        std::string& bytes, File* keepOpen = nullptr,
                                        uint64_t maxSize = uint64_t{1} << 34);

/// Judges the first bytes of a file (at most the number asked for, fewer when the file is
/// shorter) and the file's whole size: true when the file may be what the caller reads.
using StartCheck = std::function<bool(std::string_view start, uint64_t fileSize)>;

/// ReadWholeFile that first reads the first `startBytes` and asks `startsWell` (when given)
/// about them: a file it refuses gives StatusBadFileFormat, and what was read for it stays
/// small whatever the file's size.
::Plotwright::ErrorStatus ReadWholeFileIfItStartsWell(const char16_t* path, FileShareMode shareMode,
                                                      size_t startBytes,
                                                      const StartCheck& startsWell,
                                                      std::string& bytes, File* keepOpen = nullptr,
                                                      uint64_t maxSize = uint64_t{1} << 34);

/// Reads at most the first `maxBytes` of `path` (under a shared lock) into `bytes`, fewer when
/// the file is shorter. With `keepOpen` the file stays open there. StatusFileNotFound for
/// anything but an existing regular file (a folder, a pipe, a device); otherwise the statuses
/// of ReadWholeFile.
::Plotwright::ErrorStatus ReadFileStart(const char16_t* path, size_t maxBytes, std::string& bytes,
                                        File* keepOpen = nullptr);

/// Replaces the contents of `path` by `bytes` so that at every moment the file holds either
/// its old contents or all the new ones: the bytes go to a new file in the same folder, are
/// flushed, and that file is renamed over `path`. When anything fails the new file is removed
/// and `path` is left as it was. A symbolic link stays a link: the file it leads to (through
/// any chain of links; made when the link dangles) is the one replaced. The new file keeps the
/// old one's permission bits, and its owner and group as far as the process may set them; a
/// new file gets the mode the umask gives. Temporaries left by savers of the same file that
/// died are removed (the rule is in PwFileReplace.cpp). StatusFileInUse when another holder
/// keeps `path` under a lock past the wait of kPwLockWaitMilliseconds; StatusInvalidInput for
/// a name no file can have here; StatusFileIOError for a failed write, flush or rename, a
/// loop of links, or a target that isn't a regular file; StatusSecurityAccessDenied when
/// permission is refused.
::Plotwright::ErrorStatus ReplaceFileAtomically(const char16_t* path, std::string_view bytes);

/// True when `a` and `b` name the same existing file (same device and inode).
bool SameFile(const char16_t* a, const char16_t* b);

/// The canonical path of an existing file (absolute, symbolic links and `.`/`..` resolved),
/// the same for every spelling of its path and kept when the file is replaced by a save;
/// empty when `path` names no file that can be reached.
std::string FileIdentity(const char16_t* path);

}  // namespace Morvane::Plotwright::PAL::FileIO
