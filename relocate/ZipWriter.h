// Writing a zip archive with libzip: files and buffers are added, and the archive appears at
// its path, whole, only when it is committed; a writer that isn't committed leaves nothing.
#pragma once

#include <list>
#include <string>

namespace LodeQDBRelocate::detail {

class ZipWriter {
  public:
    /// Starts the archive `nativePath` (replacing any file there at commit). Throws
    /// std::runtime_error, naming the path and libzip's reason, when it can't be started.
    explicit ZipWriter(const std::string& nativePath);
    /// Discards the archive unless it was committed.
    ~ZipWriter();
    ZipWriter(const ZipWriter&) = delete;
    ZipWriter& operator=(const ZipWriter&) = delete;

    /// Adds the file `nativeSource` as `name` ('/' between names); it is read at commit, so it
    /// must stay until then. Throws std::runtime_error.
    void AddFile(const std::string& name, const std::string& nativeSource);
    /// Adds `bytes` as `name`. Throws std::runtime_error.
    void AddBytes(const std::string& name, const std::string& bytes);
    /// Writes the archive and puts it in place. Throws std::runtime_error, leaving nothing.
    void Commit();

  private:
    /// Adds `made` (a zip_source_t of this archive, null when making it failed) as `name`;
    /// throws as AddFile does.
    void AddSource(const std::string& name, void* made);

    std::string path_;
    void* archive_ = nullptr;
    // Buffers libzip reads at commit; a list, so that they never move.
    std::list<std::string> buffers_;
};

}  // namespace LodeQDBRelocate::detail
