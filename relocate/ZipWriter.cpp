// The zip writer over libzip, which writes a new file beside the archive and renames it over
// the archive's path at zip_close, so an archive is there whole or not at all.
#include "relocate/ZipWriter.h"

#include <zip.h>

#include <stdexcept>

namespace LodeQDBRelocate::detail {

namespace {

zip_t* Archive(void* archive) {
    return static_cast<zip_t*>(archive);
}

std::string Reason(zip_t* archive) {
    const char* text = zip_error_strerror(zip_get_error(archive));
    return text != nullptr ? text : "unknown error";
}

}  // namespace

ZipWriter::ZipWriter(const std::string& nativePath) : path_(nativePath) {
    int error = 0;
    archive_ = zip_open(nativePath.c_str(), ZIP_CREATE | ZIP_TRUNCATE, &error);
    if (archive_ == nullptr) {
        zip_error_t reason;
        zip_error_init_with_code(&reason, error);
        const std::string text = zip_error_strerror(&reason);
        zip_error_fini(&reason);
        throw std::runtime_error("can't write " + nativePath + ": " + text);
    }
}

ZipWriter::~ZipWriter() {
    if (archive_ != nullptr) zip_discard(Archive(archive_));
}

void ZipWriter::AddFile(const std::string& name, const std::string& nativeSource) {
    AddSource(name, zip_source_file(Archive(archive_), nativeSource.c_str(), 0, -1));
}

void ZipWriter::AddBytes(const std::string& name, const std::string& bytes) {
    const std::string& held = buffers_.emplace_back(bytes);
    AddSource(name, zip_source_buffer(Archive(archive_), held.data(), held.size(), 0));
}

void ZipWriter::AddSource(const std::string& name, void* made) {
    auto* source = static_cast<zip_source_t*>(made);
    if (source == nullptr)
        throw std::runtime_error("can't add " + name + " to " + path_ + ": " +
                                 Reason(Archive(archive_)));
    if (zip_file_add(Archive(archive_), name.c_str(), source, ZIP_FL_ENC_GUESS) < 0) {
        zip_source_free(source);
        throw std::runtime_error("can't add " + name + " to " + path_ + ": " +
                                 Reason(Archive(archive_)));
    }
}

void ZipWriter::Commit() {
    if (zip_close(Archive(archive_)) != 0) {
        const std::string reason = Reason(Archive(archive_));
        throw std::runtime_error("can't write " + path_ + ": " + reason);
    }
    archive_ = nullptr;
}

}  // namespace LodeQDBRelocate::detail
