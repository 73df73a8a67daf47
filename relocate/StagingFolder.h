// A scratch folder beside a pack's output for the files the archive takes, removed with all
// it holds when the pack ends, however it ends.
#pragma once

#include <cstdint>
#include <string>

namespace LodeQDBRelocate::detail {

class StagingFolder {
  public:
    /// Makes a new folder beside `nativeOutput`. Throws std::runtime_error when it can't.
    explicit StagingFolder(const std::string& nativeOutput);
    ~StagingFolder();
    StagingFolder(const StagingFolder&) = delete;
    StagingFolder& operator=(const StagingFolder&) = delete;

    /// The native path of a new subfolder for entry `index`, made now.
    std::string SubfolderFor(size_t index) const;

    const std::string& path() const { return path_; }

  private:
    std::string path_;
};

/// What a copy or a hash found: the byte count and the SHA-256 in hexadecimal.
struct Fingerprint {
    uint64_t size = 0;
    std::string sha256;
};

/// Copies `nativeSource` to `nativeTarget`, hashing what it copies. Throws std::runtime_error
/// naming the file and the system's reason.
Fingerprint CopyHashing(const std::string& nativeSource, const std::string& nativeTarget);

/// The size and SHA-256 of `nativePath`. Throws std::runtime_error.
Fingerprint HashFile(const std::string& nativePath);

}  // namespace LodeQDBRelocate::detail
