// Zip extraction, file digests and folder snapshots for the relocation tests.
#include "support/Archives.h"

#include <gtest/gtest.h>
#include <openssl/evp.h>
#include <zip.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace lodeqdbtest {

std::vector<std::string> ExtractZip(const std::string& zipPath, const std::string& folder) {
    std::vector<std::string> names;
    int error = 0;
    zip_t* archive = zip_open(zipPath.c_str(), ZIP_RDONLY, &error);
    if (archive == nullptr) {
        ADD_FAILURE() << "can't open " << zipPath << " (libzip error " << error << ")";
        return names;
    }
    const zip_int64_t count = zip_get_num_entries(archive, 0);
    for (zip_int64_t i = 0; i < count; ++i) {
        const char* name = zip_get_name(archive, static_cast<zip_uint64_t>(i), ZIP_FL_ENC_RAW);
        zip_stat_t status;
        zip_file_t* entry = zip_fopen_index(archive, static_cast<zip_uint64_t>(i), 0);
        if (name == nullptr || entry == nullptr ||
            zip_stat_index(archive, static_cast<zip_uint64_t>(i), 0, &status) != 0) {
            ADD_FAILURE() << "can't read entry " << i << " of " << zipPath;
            if (entry != nullptr) zip_fclose(entry);
            continue;
        }
        std::string bytes(static_cast<size_t>(status.size), '\0');
        const zip_int64_t got = zip_fread(entry, bytes.data(), status.size);
        zip_fclose(entry);
        EXPECT_EQ(got, static_cast<zip_int64_t>(status.size)) << name;
        const std::filesystem::path target = std::filesystem::path(folder) / name;
        std::filesystem::create_directories(target.parent_path());
        std::ofstream(target, std::ios::binary) << bytes;
        names.emplace_back(name);
    }
    zip_close(archive);
    return names;
}

std::string FileSha256(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    if (!in) return {};
    std::stringstream all;
    all << in.rdbuf();
    const std::string bytes = all.str();
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha256(), nullptr) != 1)
        return {};
    static const char digits[] = "0123456789abcdef";
    std::string hex;
    for (unsigned int i = 0; i < length; ++i) {
        hex += digits[digest[i] >> 4];
        hex += digits[digest[i] & 15];
    }
    return hex;
}

std::vector<std::pair<std::string, std::string>> FilesBelow(const std::string& folder) {
    std::vector<std::pair<std::string, std::string>> files;
    for (const auto& item : std::filesystem::recursive_directory_iterator(folder)) {
        if (!item.is_regular_file()) continue;
        std::ifstream in(item.path(), std::ios::binary);
        std::stringstream all;
        all << in.rdbuf();
        files.emplace_back(std::filesystem::relative(item.path(), folder).string(), all.str());
    }
    std::sort(files.begin(), files.end());
    return files;
}

}  // namespace lodeqdbtest
