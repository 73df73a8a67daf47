// SHA-256 of a stream of bytes, for the manifest of a pack (OpenSSL's digest underneath).
#pragma once

#include <cstddef>
#include <memory>
#include <string>

namespace LodeQDBRelocate::detail {

class Sha256 {
  public:
    /// Throws std::runtime_error when the digest can't be set up.
    Sha256();
    ~Sha256();
    Sha256(const Sha256&) = delete;
    Sha256& operator=(const Sha256&) = delete;

    void Update(const void* data, std::size_t size);
    /// The digest in lower-case hexadecimal; the object is spent afterwards.
    std::string HexDigest();

  private:
    struct State;
    std::unique_ptr<State> state_;
};

/// The digest of `bytes` in lower-case hexadecimal.
std::string Sha256Hex(const std::string& bytes);

}  // namespace LodeQDBRelocate::detail
