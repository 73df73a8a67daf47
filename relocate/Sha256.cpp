// SHA-256 through OpenSSL's EVP digest interface.
#include "relocate/Sha256.h"

#include <openssl/evp.h>

#include <stdexcept>

namespace LodeQDBRelocate::detail {

struct Sha256::State {
    EVP_MD_CTX* context = nullptr;
};

Sha256::Sha256() : state_(std::make_unique<State>()) {
    state_->context = EVP_MD_CTX_new();
    if (state_->context == nullptr ||
        EVP_DigestInit_ex(state_->context, EVP_sha256(), nullptr) != 1) {
        EVP_MD_CTX_free(state_->context);
        throw std::runtime_error("SHA-256 is not available");
    }
}

Sha256::~Sha256() {
    EVP_MD_CTX_free(state_->context);
}

void Sha256::Update(const void* data, std::size_t size) {
    if (size != 0 && EVP_DigestUpdate(state_->context, data, size) != 1)
        throw std::runtime_error("SHA-256 failed");
}

std::string Sha256::HexDigest() {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_DigestFinal_ex(state_->context, digest, &length) != 1)
        throw std::runtime_error("SHA-256 failed");
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned int i = 0; i < length; ++i) {
        hex += digits[digest[i] >> 4];
        hex += digits[digest[i] & 15];
    }
    return hex;
}

std::string Sha256Hex(const std::string& bytes) {
    Sha256 digest;
    digest.Update(bytes.data(), bytes.size());
    return digest.HexDigest();
}

}  // namespace LodeQDBRelocate::detail
